#include "qt/window/open_volume_dialog.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTreeView>
#include <QTreeWidget>

#include "tests/support/temporary_folder.h"

namespace pelmarix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OpenVolumeDialog : public testing::Test {
 protected:
  void show(const QList<qt::MacVolume>& volumes) {
    dialog = new qt::OpenVolumeDialog(&window, volumes, [this](const auto& folders, QWidget* front) {
      EXPECT_EQ(front, dialog);
      opened = folders;
      return isOpened;
    });
    dialog->open();
  }
  template <typename Widget>
  Widget& find(const char* name) {
    return *dialog->findChild<Widget*>(QLatin1String(name));
  }
  QTreeWidget& volumes() { return find<QTreeWidget>("volumes"); }
  QComboBox& partner() { return find<QComboBox>("partner"); }
  QPushButton& open() { return *find<QDialogButtonBox>("buttons").button(QDialogButtonBox::Open); }
  void choose(int row) { volumes().setCurrentItem(volumes().topLevelItem(row)); }

  QList<qt::MacVolume> threeVolumes{{QStringLiteral("Mac - Data"), QStringLiteral("/media/Mac - Data")},
                                    {QStringLiteral("Mac"), QStringLiteral("/media/Mac")},
                                    {QStringLiteral("Old"), QStringLiteral("/mnt/old")}};
  TemporaryFolder folder;
  QWidget window;
  QPointer<qt::OpenVolumeDialog> dialog;
  std::vector<std::string> opened;
  bool isOpened = true;
};

TEST_F(OpenVolumeDialog, ListsVolumesByNameAndPath) {
  show(threeVolumes);
  ASSERT_EQ(volumes().topLevelItemCount(), 3);
  EXPECT_EQ(volumes().topLevelItem(2)->text(0), QStringLiteral("Old"));
  EXPECT_EQ(volumes().topLevelItem(2)->text(1), QStringLiteral("/mnt/old"));
  EXPECT_FALSE(find<QLabel>("nothingMounted").isVisible());
}

TEST_F(OpenVolumeDialog, OpensTheSystemBeforeTheDataWhicheverIsChosen) {
  for (const int row : {0, 1}) {
    show(threeVolumes);
    choose(row);
    EXPECT_EQ(partner().currentText(), row == 0 ? QStringLiteral("Mac (/media/Mac)")
                                                : QStringLiteral("Mac - Data (/media/Mac - Data)"));
    open().click();
    EXPECT_THAT(opened, ElementsAre("/media/Mac", "/media/Mac - Data"));
    EXPECT_FALSE(dialog->isVisible());
  }
}

TEST_F(OpenVolumeDialog, OpensAVolumeWithoutAPartnerAlone) {
  show(threeVolumes);
  choose(2);
  EXPECT_EQ(partner().currentText(), QStringLiteral("No other volume"));
  QTest::keyClick(&volumes(), Qt::Key_Return);
  EXPECT_THAT(opened, ElementsAre("/mnt/old"));
}

TEST_F(OpenVolumeDialog, LeavesTheProposedPartnerOutWhenToldSo) {
  show(threeVolumes);
  choose(1);
  partner().setCurrentIndex(0);
  open().click();
  EXPECT_THAT(opened, ElementsAre("/media/Mac"));
}

TEST_F(OpenVolumeDialog, OpensAnyTwoTogetherTheChosenOneFirst) {
  show(threeVolumes);
  choose(2);
  partner().setCurrentText(QStringLiteral("Mac (/media/Mac)"));
  open().click();
  EXPECT_THAT(opened, ElementsAre("/mnt/old", "/media/Mac"));
}

TEST_F(OpenVolumeDialog, StaysWhenTheVolumeCannotBeOpened) {
  show(threeVolumes);
  choose(2);
  isOpened = false;
  open().click();
  EXPECT_THAT(opened, ElementsAre("/mnt/old"));
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_EQ(volumes().currentItem(), volumes().topLevelItem(2));
}

TEST_F(OpenVolumeDialog, SaysWhatToDoWhereNothingIsMounted) {
  show({});
  EXPECT_TRUE(find<QLabel>("nothingMounted").isVisible());
  EXPECT_FALSE(open().isEnabled());
  EXPECT_FALSE(partner().isEnabled());
  EXPECT_EQ(dialog->focusWidget(), &find<QPushButton>("chooseFolder"));
  dialog->accept();
  EXPECT_THAT(opened, IsEmpty());
  EXPECT_TRUE(dialog->isVisible());
}

TEST_F(OpenVolumeDialog, AddsAFolderThatIsChosenAndProposesTheOneBesideIt) {
  const std::string system = folder.addFolder("Mac");
  const std::string data = folder.addFolder("Mac - Data");
  show({});
  find<QPushButton>("chooseFolder").click();
  auto& panel = *dialog->findChild<QFileDialog*>();
  panel.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(QString::fromStdString(data));
  panel.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
  ASSERT_EQ(volumes().topLevelItemCount(), 2);
  EXPECT_EQ(volumes().currentItem()->text(0), QStringLiteral("Mac - Data"));
  EXPECT_FALSE(find<QLabel>("nothingMounted").isVisible());
  EXPECT_EQ(dialog->focusWidget(), &volumes()) << "so that Return opens it";
  open().click();
  EXPECT_THAT(opened, ElementsAre(system, data));
}

TEST_F(OpenVolumeDialog, AddsAFolderWithQuotesColonsOrLineEndsInItsName) {
  for (const char* const name : {"My \"Mac\"", "line\nend", "a:b"}) {
    const TemporaryFolder parent;
    const std::string mac = parent.addFolder(name);
    show({});
    find<QPushButton>("chooseFolder").click();
    auto& panel = *dialog->findChild<QFileDialog*>();
    panel.setDirectory(QString::fromStdString(parent.path()));
    auto& list = *panel.findChild<QTreeView*>(QStringLiteral("treeView"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return list.model()->rowCount(list.rootIndex()) == 1; }));
    list.setCurrentIndex(list.model()->index(0, 0, list.rootIndex()));
    panel.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
    open().click();
    EXPECT_THAT(opened, ElementsAre(mac));
  }
}

TEST_F(OpenVolumeDialog, HasAFolderOnce) {
  const QString path = QString::fromStdString(folder.addFolder("Mac"));
  show({{QStringLiteral("Old"), QStringLiteral("/mnt/old")}, {QStringLiteral("Mac"), path}});
  dialog->addFolder(path);
  dialog->addFolder(path);
  EXPECT_EQ(volumes().topLevelItemCount(), 2);
  EXPECT_EQ(volumes().currentItem(), volumes().topLevelItem(1));
  folder.addFolder("Mac - Data");
  dialog->addFolder(path);
  EXPECT_EQ(volumes().topLevelItemCount(), 3);
  EXPECT_EQ(partner().currentIndex(), 2) << "a partner that came later is proposed, too";
}

TEST_F(OpenVolumeDialog, HasSignsForWhatCannotBeSeenInNamesAndPaths) {
  show({{QStringLiteral("a\nb\u202e"), QStringLiteral("/media/a\nb\u202e")}, threeVolumes[2]});
  EXPECT_EQ(volumes().topLevelItem(0)->text(0), QStringLiteral("a\u240ab\u21c4"));
  EXPECT_EQ(volumes().topLevelItem(0)->text(1), QStringLiteral("/media/a\u240ab\u21c4"));
  choose(1);
  EXPECT_EQ(partner().itemText(1), QStringLiteral("a\u240ab\u21c4 (/media/a\u240ab\u21c4)"));
  choose(0);
  open().click();
  EXPECT_THAT(opened, ElementsAre("/media/a\nb\u202e"));
}

TEST_F(OpenVolumeDialog, IsWalkedThroughByTheTabKey) {
  show(threeVolumes);
  dialog->activateWindow();
  QStringList walked;
  for (int i = 0; i < 5; ++i) {
    walked += dialog->focusWidget()->accessibleName() + dialog->focusWidget()->property("text").toString();
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
  }
  EXPECT_EQ(walked.join(QLatin1Char(' ')).remove(QLatin1Char('&')).toStdString(),
            "Volumes Together with Choose Folder…Choose Folder… Open Cancel");
}

TEST_F(OpenVolumeDialog, FitsItsScreenWithALargeFont) {
  const QFont before = QApplication::font();
  QFont large = before;
  large.setPointSize(24);
  QApplication::setFont(large);
  show(threeVolumes);
  EXPECT_GT(dialog->fontMetrics().averageCharWidth() * 90, dialog->screen()->availableSize().width());
  EXPECT_LE(dialog->width(), dialog->screen()->availableSize().width());
  EXPECT_LE(dialog->height(), dialog->screen()->availableSize().height());
  QApplication::setFont(before);
}

}  // namespace
}  // namespace pelmarix::test
