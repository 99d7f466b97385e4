#include "qt/window/empty_places.h"

#include <QDialog>
#include <filesystem>

#include "posix/posix_file_manager.h"
#include "tests/qt/window/main_interface_fixture.h"
#include "tests/support/temporary_folder.h"

namespace pelmarix::test {
namespace {

/// The window over a folder that a test fills.
class EmptyPlaces : public MainInterface {
 protected:
  EmptyPlaces() {
    volume = posix::Volume(mac);
    services.services.fileManager = &files;
  }

  std::string history() { return qt::whyThereIsNoHistory(volume); }
  std::string receipts() { return qt::whyThereAreNoReceipts(volume); }
  QPushButton& historyButton() { return find<QPushButton>("openVolumeForHistory"); }
  QPushButton& receiptsButton() { return find<QPushButton>("openVolumeForReceipts"); }

  TemporaryFolder folder;
  const std::string mac = folder / "Mac";
  const std::string historyFolder = mac + "/Library/Receipts";
  const std::string historyFile = historyFolder + "/InstallHistory.plist";
  const std::string receiptsFolder = mac + "/System/Library/Receipts";
  posix::PosixFileManager files{posix::Volume(mac)};
};

TEST_F(EmptyPlaces, TellTheThreeWaysOfHavingNoHistoryApart) {
  EXPECT_EQ(history(), mac + " doesn't exist.");
  folder.addFolder("Mac/Library");
  EXPECT_EQ(history(), "There is no folder " + historyFolder + ".");
  folder.addFolder("Mac/Library/Receipts");
  EXPECT_EQ(history(), "There is no InstallHistory.plist in " + historyFolder + ".");
  folder.addFolder("Mac/Library/Receipts/InstallHistory.plist");
  EXPECT_EQ(history(), historyFile + " can't be read: Is a directory.");
  std::filesystem::remove(historyFile);
  folder.addFile("Mac/Library/Receipts/InstallHistory.plist", "no property list");
  EXPECT_EQ(history(), historyFile + " can't be read: it isn't an install history.");
  folder.addFile("Mac/Library/Receipts/InstallHistory.plist", installHistory({}));
  EXPECT_EQ(history(), "There are no entries in " + historyFile + ".");
}

TEST_F(EmptyPlaces, TellTheWaysOfHavingNoReceiptsApart) {
  EXPECT_EQ(receipts(), mac + " doesn't exist.");
  folder.addFile("Mac/System/Library/Receipts");
  EXPECT_EQ(receipts(), "There is no folder " + receiptsFolder + ".");  // a file isn't one
  std::filesystem::remove(receiptsFolder);
  folder.addFile("Mac/System/Library/Receipts/a.bom");
  EXPECT_EQ(receipts(), "There are no receipts in " + receiptsFolder + ".");
  folder.addFile("Mac/System/Library/Receipts/a.plist", "no property list");
  EXPECT_EQ(receipts(), "None of the receipts in " + receiptsFolder + " can be read.");
}

TEST_F(EmptyPlaces, TellThatRightsAreMissing) {
  const std::string file = folder.addFile("Mac/Library/Receipts/InstallHistory.plist", installHistory({}));
  const std::string closed = folder.addFolder("Mac/System/Library/Receipts");
  std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
  std::filesystem::permissions(file, std::filesystem::perms::none);
  std::filesystem::permissions(closed, std::filesystem::perms::none);
  EXPECT_EQ(withoutPrivileges([&] { return history(); }), file + " can't be read: Permission denied.");
  EXPECT_EQ(withoutPrivileges([&] { return receipts(); }), closed + " can't be opened: Permission denied.");
}

TEST_F(EmptyPlaces, TellThatAFolderCannotBeReadThoughNothingHindersIt) {
  folder.addFolder("Mac/System/Library/Receipts");
  fileManager.folders.clear();
  services.services.fileManager = &fileManager;
  EXPECT_EQ(receipts(), "The folder " + receiptsFolder + " can't be read.");
}

TEST_F(EmptyPlaces, TellItInTheFolderThatHasThePlaceOfTwo) {
  folder.addFolder("Mac");
  const std::string data = folder.addFolder("Data/Library/Receipts");
  volume = posix::Volume(mac + ":" + folder / "Data");
  EXPECT_EQ(history(), "There is no InstallHistory.plist in " + data + ".");
  volume = posix::Volume(mac + ":" + folder / "gone");
  EXPECT_EQ(history(), folder / "gone" + " doesn't exist.");
}

TEST_F(EmptyPlaces, AreHeardAsTheListsDescriptionsWithoutControlCharacters) {
  const std::string odd = folder.addFolder("a\nb");
  volume = posix::Volume(odd);
  show();
  const QString shown = QString::fromStdString(folder / "a\u240ab");
  EXPECT_EQ(outline().accessibleDescription(), "There is no folder " + shown + "/Library/Receipts.");
  EXPECT_EQ(table().accessibleDescription(), "There is no folder " + shown + "/System/Library/Receipts.");
}

TEST_F(EmptyPlaces, OfferVolumesByButtonsThatTheKeyboardReaches) {
  show();
  EXPECT_EQ(historyButton().text(), QStringLiteral("Open Volume…"));
  for (QPushButton* button : {&historyButton(), &receiptsButton()}) {
    QWidget& list = button == &historyButton() ? static_cast<QWidget&>(outline()) : table();
    EXPECT_EQ(window().childAt(button->mapTo(&window(), button->rect().center())), button) << "not in front";
    EXPECT_TRUE(list.geometry().contains(button->geometry()));
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Tab);
    EXPECT_TRUE(button->hasFocus());
    QTest::keyClick(button, Qt::Key_Space);
    auto* dialog = window().findChild<QDialog*>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->isVisible());
    delete dialog;
  }
}

TEST_F(EmptyPlaces, KeepTheirButtonsInsideWhenTheWindowChanges) {
  show();
  for (const QSize size : {QSize(640, 400), QSize(1500, 900)}) {
    window().resize(size);
    QApplication::processEvents();
    EXPECT_TRUE(outline().geometry().contains(historyButton().geometry()));
    EXPECT_LE(std::abs(outline().geometry().center().x() - historyButton().geometry().center().x()), 20);
  }
}

TEST_F(EmptyPlaces, AreNotWhereThereIsSomething) {
  folder.addFile("Mac/Library/Receipts/InstallHistory.plist", installHistory({{"macOS Mojave", "10.14"}}));
  show();
  EXPECT_FALSE(historyButton().isVisible());
  EXPECT_TRUE(outline().accessibleDescription().startsWith(QStringLiteral("System installs")));
  EXPECT_TRUE(receiptsButton().isVisible());
}

}  // namespace
}  // namespace pelmarix::test
