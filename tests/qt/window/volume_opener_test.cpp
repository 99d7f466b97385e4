#include "qt/window/volume_opener.h"

#include <gmock/gmock.h>

#include <QDropEvent>
#include <QMessageBox>
#include <QMimeData>
#include <QTest>
#include <QTreeWidget>
#include <QUrl>

#include "qt/window/open_volume_dialog.h"
#include "tests/support/temporary_folder.h"

namespace pelmarix::test {
namespace {

class VolumeOpener : public testing::Test {
 protected:
  VolumeOpener() {
    qputenv("PELMARIX_TEST_STARTED_AGAIN", QByteArray::fromStdString(folder / "started"));
    window.show();
  }
  ~VolumeOpener() override {
    qunsetenv("PELMARIX_TEST_STARTED_AGAIN");
    qunsetenv("PELMARIX_VOLUME");
  }

  /// Drops it on the window; whether that was taken.
  bool drop(const QList<QUrl>& urls) {
    QMimeData data;
    if (!urls.isEmpty()) data.setUrls(urls);
    data.setText(QStringLiteral("a text"));
    QDragEnterEvent enter({5, 5}, Qt::MoveAction | Qt::CopyAction, &data, Qt::LeftButton, Qt::ShiftModifier);
    enter.ignore();
    QApplication::sendEvent(&window, &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent event({5, 5}, Qt::MoveAction | Qt::CopyAction, &data, Qt::LeftButton, Qt::ShiftModifier);
    QApplication::sendEvent(&window, &event);
    EXPECT_EQ(event.dropAction(), Qt::CopyAction);
    return event.isAccepted();
  }
  bool drop(const std::string& path) { return drop({QUrl::fromLocalFile(QString::fromStdString(path))}); }

  /// What the program was started with, once it is.
  std::string started() {
    const std::string file = folder / "started";
    EXPECT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(file); }, 30'000));
    return contentsOf(file);
  }
  std::string message() {
    auto* box = window.findChild<QMessageBox*>();
    if (box == nullptr || !box->isVisible()) return "no message";
    std::string text = box->text().toStdString();
    delete box;
    return text;
  }

  TemporaryFolder folder;
  QWidget window;
  bool isEmpty = true;
  qt::VolumeOpener opener{window, [this] { return isEmpty; }};
};

TEST_F(VolumeOpener, StartsTheProgramOnADroppedFolderAndAnEmptyWindowMakesWay) {
  const std::string mac = folder.addFolder("Macintosh HD");
  EXPECT_TRUE(drop(mac));
  EXPECT_EQ(started(), mac);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(VolumeOpener, LeavesAWindowWithSomethingInItAndItsOwnVolumeAsTheyAre) {
  isEmpty = false;
  qputenv("PELMARIX_VOLUME", "/mnt/mine");
  const std::string mac = folder.addFolder("mac");
  EXPECT_TRUE(drop(mac));
  EXPECT_EQ(started(), mac);
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(qgetenv("PELMARIX_VOLUME"), "/mnt/mine");
}

TEST_F(VolumeOpener, LeavesNoVolumeBehindWhereThereWasNone) {
  EXPECT_TRUE(drop(folder.addFolder("mac")));
  EXPECT_FALSE(qEnvironmentVariableIsSet("PELMARIX_VOLUME"));
  started();
}

TEST_F(VolumeOpener, OpensDroppedFoldersTogether) {
  const std::string system = folder.addFolder("system");
  const std::string data = folder.addFolder("data");
  EXPECT_TRUE(drop({QUrl::fromLocalFile(QString::fromStdString(system)),
                    QUrl::fromLocalFile(QString::fromStdString(data))}));
  EXPECT_EQ(started(), system + ":" + data);
}

TEST_F(VolumeOpener, ProposesWhatLiesBesideADroppedFolder) {
  const std::string data = folder.addFolder("Mac - Data");
  folder.addFolder("Mac");
  EXPECT_TRUE(drop(data + "/"));
  auto* dialog = window.findChild<qt::OpenVolumeDialog*>();
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_EQ(dialog->findChild<QTreeWidget*>()->currentItem()->text(1).toStdString(), data);
  dialog->accept();
  EXPECT_EQ(started(), folder / "Mac" + ":" + data);
}

TEST_F(VolumeOpener, OpensFoldersWithBlanksColonsLineEndsAndBytesThatAreNotUtf8) {
  const std::string odd = folder.addFolder("a b:c\nd\xFF%41");
  QByteArray address = "file://" + QByteArray::fromStdString(folder.path()) + "/a%20b%3Ac%0Ad%FF%2541";
  EXPECT_TRUE(drop({QUrl::fromEncoded(address)}));
  EXPECT_EQ(started(), odd);
}

TEST_F(VolumeOpener, TellsWhatIsWrongWithWhatWasDropped) {
  const std::string file = folder.addFile("disk.dmg");
  EXPECT_TRUE(drop(file));
  EXPECT_EQ(message(),
            file +
                " is a file. If it is the image of a disk, mount it and open the folder where it is "
                "mounted.");
  EXPECT_TRUE(drop(folder / "gone"));
  EXPECT_EQ(message(), folder / "gone" + " doesn't exist.");
  const std::string refused = " is an address. Only a folder of this machine can be opened.";
  EXPECT_TRUE(drop({QUrl(QStringLiteral("https://mac.example/a folder"))}));
  EXPECT_EQ(message(), "https://mac.example/a folder" + refused);
  EXPECT_TRUE(drop({QUrl(QStringLiteral("file://server/share"))}));
  EXPECT_EQ(message(), "file://server/share" + refused);
  EXPECT_TRUE(window.isVisible());
  EXPECT_FALSE(std::filesystem::exists(folder / "started"));
}

TEST_F(VolumeOpener, LeavesADroppedTextAlone) {
  EXPECT_FALSE(drop(QList<QUrl>()));
  EXPECT_EQ(message(), "no message");
}

TEST_F(VolumeOpener, OffersVolumesOverTheWindow) {
  opener.offerVolumes();
  const auto* dialog = window.findChild<qt::OpenVolumeDialog*>();
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_EQ(dialog->windowModality(), Qt::WindowModal);
}

}  // namespace
}  // namespace pelmarix::test
