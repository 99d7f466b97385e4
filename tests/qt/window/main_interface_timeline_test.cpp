#include <gmock/gmock.h>

#include <QClipboard>
#include <QFileDialog>
#include <QImage>
#include <QMenu>

#include "qt/widgets/timeline_strip.h"
#include "qt/window/file_save_panel.h"
#include "tests/qt/window/main_interface_fixture.h"

namespace pelmarix::test {
namespace {

using testing::SizeIs;

class TimelineOfTheWindow : public MainInterface {
 protected:
  void showHigh() {
    show();
    resize(800);
  }
  void resize(int height) {
    window().resize(1200, height);
    QApplication::processEvents();
  }
  qt::TimelineStrip& timeline() { return find<qt::TimelineStrip>("timeline"); }
  bool isEnabled(const char* action) { return find<QAction>(action).isEnabled(); }
  std::string selectedEntry() {
    const QModelIndexList rows = outline().selectionModel()->selectedRows();
    return rows.size() == 1 ? rows.front().data().toString().toStdString() : std::to_string(rows.size());
  }
};

TEST_F(TimelineOfTheWindow, StandsAboveTheListsAsWideAsTheyAre) {
  showHigh();
  EXPECT_TRUE(timeline().isVisible());
  EXPECT_EQ(timeline().accessibleName(), QStringLiteral("Timeline"));
  EXPECT_TRUE(timeline().accessibleDescription().startsWith(QStringLiteral("From 2018-01-01 to 2019-11-01.")))
      << timeline().accessibleDescription().toStdString();
  const auto place = [](const QWidget& widget) { return QRect(widget.mapToGlobal(QPoint()), widget.size()); };
  EXPECT_LT(place(timeline()).bottom(), place(outline()).top());
  EXPECT_EQ(place(timeline()).left(), place(outline()).left());
  EXPECT_EQ(place(timeline()).right(), place(table()).right());
  EXPECT_TRUE(outline().hasFocus()) << "reading begins in the outline";
}

TEST_F(TimelineOfTheWindow, GoesAndComesByItsMenuItem) {
  showHigh();
  EXPECT_TRUE(find<QAction>("actionTimeline").isChecked());
  for (const bool isShown : {false, true}) {
    choose("actionTimeline");
    EXPECT_EQ(timeline().isVisible(), isShown);
    EXPECT_EQ(find<QAction>("actionTimeline").isChecked(), isShown);
    EXPECT_EQ(isEnabled("actionCopyPicture"), isShown);
    EXPECT_EQ(isEnabled("actionSavePicture"), isShown);
  }
}

TEST_F(TimelineOfTheWindow, GoesInALowWindowAndComesBackInAHighOne) {
  showHigh();
  resize(500);
  EXPECT_EQ(window().height(), 500);
  EXPECT_FALSE(timeline().isVisible());
  EXPECT_FALSE(isEnabled("actionCopyPicture"));
  resize(800);
  EXPECT_TRUE(timeline().isVisible());
  choose("actionTimeline");
  resize(500);
  resize(800);
  EXPECT_FALSE(timeline().isVisible()) << "the user doesn't want it";
}

TEST_F(TimelineOfTheWindow, IsNotThereWithoutHistoryAndReceipts) {
  fileManager.files.clear();
  fileManager.folders.clear();
  showHigh();
  EXPECT_FALSE(timeline().isVisible());
  for (const char* action : {"actionTimeline", "actionCopyPicture", "actionSavePicture"})
    EXPECT_FALSE(isEnabled(action)) << action;
}

TEST_F(TimelineOfTheWindow, IsThereWithReceiptsAlone) {
  fileManager.files.erase("/Library/Receipts/InstallHistory.plist");
  showHigh();
  EXPECT_TRUE(timeline().isVisible());
}

TEST_F(TimelineOfTheWindow, HasTheLaneOfConfigurationDataUnlessThatIsSkipped) {
  showHigh();
  const int height = timeline().height();
  click("skipConfigurationData");
  QApplication::processEvents();
  EXPECT_GT(timeline().height(), height);
  EXPECT_TRUE(timeline().accessibleDescription().contains(QStringLiteral("configuration data")));
  click("skipConfigurationData");
  QApplication::processEvents();
  EXPECT_EQ(timeline().height(), height);
}

TEST_F(TimelineOfTheWindow, LeadsToEntriesAndReceiptsByKeyboard) {
  showHigh();
  timeline().setFocus();
  QTest::keyClick(&timeline(), Qt::Key_Right);
  EXPECT_EQ(selectedEntry(), "macOS Mojave");
  EXPECT_TRUE(outline().isExpanded(outline().model()->index(0, 0)));
  QTest::keyClick(&timeline(), Qt::Key_Right);
  EXPECT_EQ(selectedEntry(), "macOS 10.15 Update");
  QTest::keyClick(&timeline(), Qt::Key_Down);
  EXPECT_EQ(selectedEntry(), "MRTConfigData");
  QTest::keyClick(&timeline(), Qt::Key_Down);
  EXPECT_EQ(table().selectionModel()->selectedRows().value(0).row(), 0);
  QTest::keyClick(&timeline(), Qt::Key_Left);
  EXPECT_EQ(table().selectionModel()->selectedRows().value(0).row(), 1);
  EXPECT_TRUE(timeline().hasFocus());
  QTest::keyClick(&timeline(), Qt::Key_Up);
  EXPECT_EQ(selectedEntry(), "MRTConfigData");
}

TEST_F(TimelineOfTheWindow, MarksWhatWasSelectedLastInTheLists) {
  showHigh();
  const auto picture = [this] { return timeline().toImage(); };
  const QImage nothing = picture();
  outline().expandAll();
  const QModelIndex entry = outline().model()->index(0, 0, outline().model()->index(0, 0));
  outline().setCurrentIndex(entry);
  const QImage ofEntry = picture();
  EXPECT_NE(ofEntry, nothing);
  table().selectRow(0);
  const QImage ofReceipt = picture();
  EXPECT_NE(ofReceipt, nothing);
  EXPECT_NE(ofReceipt, ofEntry);
  QTest::mouseClick(outline().viewport(), Qt::LeftButton, {}, outline().visualRect(entry).center());
  EXPECT_EQ(picture(), ofEntry) << "though it was selected all the time";
  const QRect receipt = table().visualRect(table().model()->index(0, 0));
  QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, receipt.center());
  EXPECT_EQ(picture(), ofReceipt) << "likewise";
  outline().setCurrentIndex(outline().model()->index(0, 0));
  EXPECT_EQ(picture(), nothing) << "a group is no entry";
}

TEST_F(TimelineOfTheWindow, KeepsTheReceiptMarkedWhoseRowIsSelectedWhenTheOrderIsTurnedRound) {
  showHigh();
  table().selectRow(1);
  const QImage oldest = timeline().toImage();
  table().selectRow(0);
  EXPECT_NE(timeline().toImage(), oldest);
  click("newestLast");
  EXPECT_EQ(receiptName(0), "com.example.old");
  EXPECT_EQ(timeline().toImage(), oldest);
}

TEST_F(TimelineOfTheWindow, CopiesItsPicture) {
  showHigh();
  choose("actionCopyPicture");
  EXPECT_EQ(QApplication::clipboard()->image().size(), timeline().size() * 2);
}

TEST_F(TimelineOfTheWindow, SavesItsPictureAsItWasWhenItWasAskedFor) {
  showHigh();
  const QImage asked = timeline().toImage();
  choose("actionSavePicture");
  ASSERT_THAT(savePanels, SizeIs(1));
  EXPECT_EQ(savePanels[0]->title, "Save Picture");
  EXPECT_THAT(savePanels[0]->allowedFileTypes, testing::ElementsAre("png"));
  table().selectRow(0);
  savePanels[0]->chosenPath = "/timeline.png";
  savePanels[0]->completionHandler(platform::modalResponseOK);
  const std::string png = fileManager.files.at("/timeline.png");
  const QImage saved =
      QImage::fromData(reinterpret_cast<const uchar*>(png.data()), static_cast<int>(png.size()), "PNG");
  EXPECT_EQ(saved.size(), timeline().size() * 2);
  EXPECT_EQ(saved.convertToFormat(asked.format()), asked);
  fileManager.files.erase("/timeline.png");
  choose("actionSavePicture");
  savePanels.back()->chosenPath = "/timeline.png";
  savePanels.back()->completionHandler(platform::modalResponseCancel);
  EXPECT_EQ(fileManager.files.count("/timeline.png"), 0U);
}

TEST_F(TimelineOfTheWindow, BringsThePanelForItsPictureThatIsOpenToTheFront) {
  services.services.makeSavePanel = [this] { return std::make_shared<qt::FileSavePanel>(&window()); };
  showHigh();
  choose("actionSavePicture");
  window().activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
  choose("actionSavePicture");
  const QList<QFileDialog*> panels = window().findChildren<QFileDialog*>();
  ASSERT_EQ(panels.size(), 1);
  EXPECT_TRUE(QTest::qWaitForWindowActive(panels[0]));
}

TEST_F(TimelineOfTheWindow, OffersItsPictureInItsMenu) {
  showHigh();
  EXPECT_THAT(timeline().actions(),
              testing::ElementsAre(&find<QAction>("actionCopyPicture"), &find<QAction>("actionSavePicture")));
}

TEST_F(TimelineOfTheWindow, IsReachedByTabAndByItsKey) {
  showHigh();
  QTest::keyClick(&outline(), Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_TRUE(timeline().hasFocus());
  QTest::keyClick(&timeline(), Qt::Key_Tab);
  EXPECT_TRUE(outline().hasFocus());
  QTest::keyClick(&outline(), Qt::Key_T, Qt::AltModifier);
  EXPECT_TRUE(timeline().hasFocus());
}

}  // namespace
}  // namespace pelmarix::test
