#include "qt/window/main_interface.h"

#include <gmock/gmock.h>

#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QScrollBar>

#include "qt/window/file_save_panel.h"
#include "tests/qt/window/main_interface_fixture.h"

namespace pelmarix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const std::string allNewestFirst =
    "\n\nMRTConfigData: 1.50 2019-11-01 08:00:00 +0000\n"
    "macOS 10.15 Update: 10.15 2019-10-08 08:00:00 +0000\n"
    "Core Suggestions: 5 2018-10-01 08:00:00 +0000\n"
    "macOS Mojave: 10.14 2018-09-25 08:00:00 +0000\n";
const std::string allNewestLast =
    "\n\nmacOS Mojave: 10.14 2018-09-25 08:00:00 +0000\n"
    "Core Suggestions: 5 2018-10-01 08:00:00 +0000\n"
    "macOS 10.15 Update: 10.15 2019-10-08 08:00:00 +0000\n"
    "MRTConfigData: 1.50 2019-11-01 08:00:00 +0000\n";

TEST_F(MainInterface, ShowsHistoryReceiptsAndReport) {
  show();
  const QAbstractItemModel& groups = *outline().model();
  ASSERT_EQ(groups.rowCount(), 2);
  const QModelIndex mojave = groups.index(0, 0);
  EXPECT_EQ(mojave.data().toString(), QStringLiteral("macOS Mojave 10.14"));
  EXPECT_EQ(mojave.siblingAtColumn(1).data().toString(), QString());
  ASSERT_EQ(groups.rowCount(mojave), 2);
  const QModelIndex suggestions = groups.index(1, 0, mojave);
  EXPECT_EQ(suggestions.data().toString(), QStringLiteral("\tCore Suggestions"));
  EXPECT_EQ(suggestions.siblingAtColumn(1).data().toString(), QStringLiteral("2018-10-01 08:00:00 +0000"));
  EXPECT_EQ(suggestions.siblingAtColumn(2).data().toString(), QStringLiteral("5"));
  ASSERT_EQ(table().model()->rowCount(), 2);
  EXPECT_EQ(table().model()->index(0, 0).data().toString(), QStringLiteral("2019-01-01 00:00:00 +0000"));
  EXPECT_EQ(receiptName(0), "com.example.new");
  EXPECT_EQ(shownReport(), skippedNewestFirst);
  EXPECT_EQ(reportSize(), 12.0);
  EXPECT_EQ(window().windowTitle(),
            QStringLiteral("Pelmarix \u2013 currently running macOS Version 10.14.6 (Build 18G103)"));
  EXPECT_TRUE(find<QCheckBox>("skipConfigurationData").isChecked());
  EXPECT_FALSE(find<QCheckBox>("newestLast").isChecked());
}

TEST_F(MainInterface, ShowsTheNewestGroupsEntriesAtFirst) {
  show();
  EXPECT_FALSE(outline().isExpanded(outline().model()->index(0, 0)));
  EXPECT_TRUE(outline().isExpanded(outline().model()->index(1, 0)));
}

TEST_F(MainInterface, IsEmptyButForTwoLineFeedsWithoutHistoryAndReceipts) {
  fileManager.files.clear();
  fileManager.folders.clear();
  show();
  EXPECT_THAT(services.alerts, ElementsAre(errorAlert("An error occurred in your last action:",
                                                      "Couldn't read install history.")));
  EXPECT_EQ(outline().model()->rowCount(), 0);
  EXPECT_EQ(table().model()->rowCount(), 0);
  EXPECT_EQ(*report().text(), "\n\n");
  EXPECT_EQ(outline().accessibleDescription(), QStringLiteral("There is no folder /Library/Receipts."));
  EXPECT_EQ(table().accessibleDescription(), QStringLiteral("There is no folder /System/Library/Receipts."));
}

TEST_F(MainInterface, AppearsWithWhatThereIsWhenMemoryRunsOutAsItLoads) {
  fileManager.files.erase("/Library/Receipts/InstallHistory.plist");
  services.answer = [](const ShownAlert& alert) {
    if (alert.informativeText == "Couldn't read install history.") throw std::bad_alloc();
    return platform::alertFirstButtonReturn;
  };
  show();
  EXPECT_THAT(
      services.alerts,
      ElementsAre(errorAlert("An error occurred in your last action:", "Couldn't read install history."),
                  errorAlert("An error occurred in your last action:",
                             std::make_error_code(std::errc::not_enough_memory).message())));
  EXPECT_TRUE(window().isVisible());
}

TEST_F(MainInterface, NamesAndDescribesWhatAPersonMeets) {
  show();
  const auto nameOf = [this](const char* widget) { return find<QWidget>(widget).accessibleName(); };
  EXPECT_EQ(nameOf("outline"), QStringLiteral("Install history"));
  EXPECT_TRUE(outline().accessibleDescription().startsWith(QStringLiteral("System installs")));
  EXPECT_TRUE(table().accessibleDescription().startsWith(QStringLiteral("Package receipts")));
  EXPECT_EQ(nameOf("receiptsTable"), QStringLiteral("Receipts"));
  EXPECT_EQ(nameOf("report"), QStringLiteral("Report"));
  EXPECT_EQ(nameOf("skipConfigurationData"), QStringLiteral("Skip configuration data"));
  EXPECT_EQ(nameOf("newestLast"), QStringLiteral("Newest last"));
  EXPECT_EQ(nameOf("save"), QStringLiteral("Save…"));
  EXPECT_EQ(nameOf("biggerText"), QStringLiteral("Bigger text"));
  EXPECT_EQ(nameOf("smallerText"), QStringLiteral("Smaller text"));
  EXPECT_EQ(nameOf("showBillOfMaterials"), QStringLiteral("Show Bill of Materials"));
  for (const char* widget : {"outline", "receiptsTable", "report", "skipConfigurationData", "newestLast",
                             "save", "biggerText", "smallerText", "showBillOfMaterials"})
    EXPECT_FALSE(find<QWidget>(widget).accessibleDescription().isEmpty()) << widget;
}

TEST_F(MainInterface, SkipsConfigurationDataOrShowsIt) {
  show();
  click("skipConfigurationData");
  EXPECT_EQ(shownReport(), allNewestFirst);
  click("skipConfigurationData");
  EXPECT_EQ(shownReport(), skippedNewestFirst);
}

TEST_F(MainInterface, TurnsReportAndReceiptsRound) {
  show();
  click("skipConfigurationData");
  click("newestLast");
  EXPECT_EQ(shownReport(), allNewestLast);
  EXPECT_EQ(receiptName(0), "com.example.old");
  click("newestLast");
  EXPECT_EQ(shownReport(), allNewestFirst);
  EXPECT_EQ(receiptName(0), "com.example.new");
}

TEST_F(MainInterface, CountsMatchesInTheReportAnewWhenAnOptionChangesIt) {
  show();
  report().setFocus();
  choose("actionFind");
  find<QLineEdit>("text").setText(QStringLiteral(" 2018-"));
  const auto tells = [this](const char* outcome) {
    return QTest::qWaitFor([&] { return find<QLabel>("outcome").text() == QLatin1String(outcome); });
  };
  EXPECT_TRUE(tells("Report: 1 of 1"));
  click("skipConfigurationData");
  EXPECT_TRUE(tells("Report: 2 matches"));
}

TEST_F(MainInterface, SearchesAllPartsOneAfterTheOtherByKeys) {
  show();
  outline().setFocus();
  choose("actionFind");
  find<QLineEdit>("text").setText(QStringLiteral("2018-"));
  click("allParts");
  const auto tells = [this](const char* outcome) {
    return QTest::qWaitFor([&] {
      return find<QLabel>("outcome").text() == QLatin1String(outcome) + QStringLiteral(", 4 in all");
    });
  };
  EXPECT_TRUE(tells("Install history: 1 of 2"));
  const auto press = [this](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&find<QLineEdit>("text"), key, modifiers);
  };
  press(Qt::Key_F3);
  EXPECT_TRUE(tells("Install history: 2 of 2"));
  press(Qt::Key_F3);
  EXPECT_TRUE(tells("Receipts: 1 of 1"));
  EXPECT_EQ(table().currentIndex().row(), 1);
  press(Qt::Key_G, Qt::ControlModifier);
  EXPECT_TRUE(tells("Report: 1 of 1"));
  press(Qt::Key_F3, Qt::ShiftModifier);
  EXPECT_TRUE(tells("Receipts: 1 of 1"));
  press(Qt::Key_G, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_TRUE(tells("Install history: 2 of 2"));
}

TEST_F(MainInterface, KeepsTheFirstLineOfTheReportThatIsInViewWhereItStillIsInTheText) {
  std::vector<EntryText> entries{{"macOS Mojave", "10.14", "", "2018-09-25T08:00:00Z"}};
  for (int i = 100; i < 400; ++i) {
    const std::string number = std::to_string(i);
    entries.push_back({"Security Update " + number, "10.14", "", "2018-09-25T08:00:00Z"});
    entries.push_back({"Words " + number, "1", "config-data", "2018-09-25T08:00:00Z"});
  }
  setHistory(entries);
  show();
  QScrollBar& bar = *report().verticalScrollBar();
  const auto firstInView = [&] {
    return std::string(report().index().part(report().index().line(static_cast<std::size_t>(bar.value()))));
  };
  const auto lineOf = [](const char* name, const char* version) {
    return std::string(name) + ": " + version + " 2018-09-25 08:00:00 +0000";
  };
  click("newestLast");
  EXPECT_EQ(bar.value(), 0) << "what is at the top stays there";
  bar.setValue(150);
  const std::string line = firstInView();
  EXPECT_EQ(line, lineOf("Security Update 247", "10.14"));
  for (const char* option : {"skipConfigurationData", "newestLast", "skipConfigurationData", "newestLast"}) {
    click(option);
    EXPECT_EQ(firstInView(), line) << option;
  }
  click("skipConfigurationData");
  bar.setValue(bar.value() + 1);
  EXPECT_EQ(firstInView(), lineOf("Words 247", "1"));
  click("skipConfigurationData");
  EXPECT_EQ(firstInView(), lineOf("Security Update 248", "10.14")) << "the next that is still there";
}

TEST_F(MainInterface, HasCheckedMenuItemsInStepWithTheCheckBoxes) {
  show();
  EXPECT_TRUE(find<QAction>("actionSkipConfigurationData").isChecked());
  EXPECT_FALSE(find<QAction>("actionNewestLast").isChecked());
  choose("actionSkipConfigurationData");
  EXPECT_FALSE(find<QCheckBox>("skipConfigurationData").isChecked());
  EXPECT_EQ(shownReport(), allNewestFirst);
  choose("actionNewestLast");
  EXPECT_EQ(shownReport(), allNewestLast);
  EXPECT_TRUE(find<QCheckBox>("newestLast").isChecked());
  click("newestLast");
  EXPECT_FALSE(find<QAction>("actionNewestLast").isChecked());
  click("skipConfigurationData");
  EXPECT_TRUE(find<QAction>("actionSkipConfigurationData").isChecked());
  EXPECT_EQ(shownReport(), skippedNewestFirst);
}

TEST_F(MainInterface, TogglesAGroupOnceOnADoubleClick) {
  show();
  const QModelIndex newest = outline().model()->index(1, 0);
  const auto doubleClick = [&](const QModelIndex& index) {
    const QPoint place = outline().visualRect(index).center();
    QTest::mouseClick(outline().viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(outline().viewport(), Qt::LeftButton, {}, place);
  };
  doubleClick(newest);
  EXPECT_FALSE(outline().isExpanded(newest));
  doubleClick(newest);
  EXPECT_TRUE(outline().isExpanded(newest));
  doubleClick(outline().model()->index(0, 0, newest));
  EXPECT_TRUE(outline().isExpanded(newest));
  EXPECT_FALSE(outline().isExpanded(outline().model()->index(0, 0)));
}

TEST_F(MainInterface, KeepsExpandedGroupsAndTheSelectionWhenAnOptionChanges) {
  show();
  outline().expandAll();
  outline().setCurrentIndex(outline().model()->index(1, 0, outline().model()->index(0, 0)));
  const QPersistentModelIndex current = outline().currentIndex();
  click("skipConfigurationData");
  click("newestLast");
  EXPECT_EQ(outline().currentIndex(), current);
  EXPECT_TRUE(outline().isExpanded(outline().model()->index(0, 0)));
}

TEST_F(MainInterface, ChangesTheTextSizeByButtonsMenuAndWheel) {
  show();
  click("biggerText");
  EXPECT_EQ(reportSize(), 13.0);
  choose("actionBiggerText");
  EXPECT_EQ(reportSize(), 14.0);
  click("smallerText");
  choose("actionSmallerText");
  EXPECT_EQ(reportSize(), 12.0);
  emit report().zoomRequested(3);
  EXPECT_EQ(reportSize(), 15.0);
  emit report().zoomRequested(-2);
  EXPECT_EQ(reportSize(), 13.0);
  EXPECT_EQ(services.userDefaults.doubles.at("fontSize"), 13.0);
  EXPECT_EQ(shownReport(), skippedNewestFirst);
}

TEST_F(MainInterface, StaysWithinTheBoundsOfTheTextSize) {
  services.userDefaults.doubles["fontSize"] = 30.0;
  show();
  EXPECT_EQ(reportSize(), 30.0);
  click("biggerText");
  EXPECT_EQ(reportSize(), 24.0);
  emit report().zoomRequested(-100);
  EXPECT_EQ(reportSize(), 4.0);
}

TEST_F(MainInterface, SavesTheReportWithItsStamp) {
  show();
  click("save");
  choose("actionSave");
  ASSERT_THAT(savePanels, SizeIs(2));
  savePanels[0]->completionHandler(platform::modalResponseCancel);
  savePanels[1]->chosenPath = "/home/report.text";
  savePanels[1]->completionHandler(platform::modalResponseOK);
  EXPECT_EQ(fileManager.files.at("/home/report.text"),
            skippedNewestFirst + "Checked by Pelmarix at: 2019-03-26 10:11:12 +0000\n");
}

TEST_F(MainInterface, BringsTheSavePanelThatIsOpenToTheFront) {
  services.services.makeSavePanel = [this] { return std::make_shared<qt::FileSavePanel>(&window()); };
  show();
  const auto panels = [this] {
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return window().findChildren<QFileDialog*>();
  };
  const auto press = [this] { window().findChild<QAction*>(QStringLiteral("actionSave"))->trigger(); };
  press();
  ASSERT_EQ(panels().size(), 1);
  QFileDialog& first = *panels().front();
  window().activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
  press();
  EXPECT_TRUE(QTest::qWaitForWindowActive(&first));
  EXPECT_EQ(panels().size(), 1);
  first.showMinimized();
  press();
  EXPECT_FALSE(first.isMinimized());
  first.reject();
  press();
  EXPECT_EQ(window().findChildren<QFileDialog*>().size(), 2) << "the one that has ended is still to go";
  EXPECT_EQ(panels().size(), 1);
}

TEST_F(MainInterface, ExportsTheLists) {
  show();
  choose("actionExport");
  savePanels[0]->chosenPath = "/receipts.csv";
  savePanels[0]->chosen = 1;
  savePanels[0]->completionHandler(platform::modalResponseOK);
  EXPECT_EQ(fileManager.files.at("/receipts.csv"),
            "Date,Package,Path\r\n"
            "2019-01-01 00:00:00 +0000,com.example.new,/System/Library/Receipts/com.example.new.plist\r\n"
            "2018-01-01 00:00:00 +0000,com.example.old,/System/Library/Receipts/com.example.old.plist\r\n");
}

TEST_F(MainInterface, BringsThePanelForExportToTheFrontBesideTheSavePanel) {
  services.services.makeSavePanel = [this] { return std::make_shared<qt::FileSavePanel>(&window()); };
  show();
  choose("actionSave");
  choose("actionExport");
  const QList<QFileDialog*> panels = window().findChildren<QFileDialog*>();
  ASSERT_EQ(panels.size(), 2);
  EXPECT_NE(panels[0]->windowTitle(), QStringLiteral("Export"));
  EXPECT_EQ(panels[1]->windowTitle(), QStringLiteral("Export"));
  for (int time = 0; time < 2; ++time) {
    choose("actionSave");
    EXPECT_TRUE(QTest::qWaitForWindowActive(panels[0]));
    choose("actionExport");
    EXPECT_TRUE(QTest::qWaitForWindowActive(panels[1]));
  }
  EXPECT_EQ(window().findChildren<QFileDialog*>().size(), 2);
}

TEST_F(MainInterface, SavesTheTextItselfNotItsPicture) {
  setHistory({{"macOS Mojave\u2028\u00a0x", "10.14"}});
  show();
  click("save");
  savePanels[0]->chosenPath = "/report";
  savePanels[0]->completionHandler(platform::modalResponseOK);
  EXPECT_EQ(fileManager.files.at("/report"),
            "\n\nmacOS Mojave\u2028\u00a0x: 10.14 2019-03-26 10:11:12 +0000\n"
            "Checked by Pelmarix at: 2019-03-26 10:11:12 +0000\n");
}

TEST_F(MainInterface, AsksTheControllerWhenTheWindowCloses) {
  show();
  EXPECT_TRUE(window().close());
  EXPECT_THAT(application.terminatedBy, ElementsAre(&window()));
}

TEST_F(MainInterface, EndsByItsMenuToo) {
  show();
  choose("actionClose");
  EXPECT_THAT(application.terminatedBy, SizeIs(1));
  window().show();
  choose("actionQuit");
  EXPECT_THAT(application.terminatedBy, SizeIs(2));
}

TEST_F(MainInterface, TellsOverTheSheetThatTheVolumeHasGone) {
  show();
  table().selectRow(0);
  click("showBillOfMaterials");
  EXPECT_EQ(sheet()->findChild<QMessageBox*>(), nullptr);
  sheet()->close();
  finishClosing();

  fileManager.folders.clear();
  click("showBillOfMaterials");
  const auto* box = sheet()->findChild<QMessageBox*>();
  ASSERT_NE(box, nullptr);
  EXPECT_TRUE(box->isVisible());
  EXPECT_EQ(box->text(),
            QStringLiteral("The Mac's volume isn't there any more. What was read from it is still shown."));
  EXPECT_EQ(table().model()->rowCount(), 2);
}

TEST_F(MainInterface, EndsWhileASheetIsUp) {
  show();
  click("showBillOfMaterials");
  ASSERT_NE(sheet(), nullptr);
  window().close();
  EXPECT_THAT(application.terminatedBy, SizeIs(1));
}

TEST_F(MainInterface, GrowsWithTheLettersOfTheSystem) {
  const QFont before = QApplication::font();
  QFont large = before;
  large.setPointSizeF(before.pointSizeF() * 2);
  QApplication::setFont(large);
  show();
  EXPECT_GT(outline().columnWidth(1),
            outline().fontMetrics().horizontalAdvance(QStringLiteral("2019-10-08 08:00:00 +0000")));
  EXPECT_GT(table().rowHeight(0), table().fontMetrics().height());
  QApplication::setFont(before);
}

TEST_F(MainInterface, HasBothListsInLineAndAboutAsWide) {
  show();
  window().resize(1200, 700);
  QApplication::processEvents();
  const auto place = [](const QWidget& list) { return QRect(list.mapToGlobal(QPoint()), list.size()); };
  const QRect history = place(outline());
  const QRect receipts = place(table());
  EXPECT_EQ(history.top(), receipts.top());
  EXPECT_EQ(history.bottom(), receipts.bottom());
  EXPECT_GT(receipts.width(), history.width() * 4 / 5);
  EXPECT_LT(receipts.width(), history.width() * 5 / 4);
}

TEST_F(MainInterface, HasTheReportsOptionsBelowItsButtonsWhereTheWindowIsNarrow) {
  show();
  const auto top = [this](const char* name) { return find<QWidget>(name).mapTo(&window(), QPoint()).y(); };
  const auto areInOneRow = [&] { return std::abs(top("newestLast") - top("save")) < 10; };
  window().resize(1200, 700);
  QApplication::processEvents();
  EXPECT_TRUE(areInOneRow());
  window().resize(window().minimumSizeHint().width(), 700);
  QApplication::processEvents();
  EXPECT_FALSE(areInOneRow());
  EXPECT_GT(top("newestLast"), top("save"));
  EXPECT_LT(top("newestLast"), top("report"));
  for (const char* name : {"skipConfigurationData", "newestLast", "smallerText", "biggerText", "save"})
    EXPECT_GE(find<QWidget>(name).width(), find<QWidget>(name).minimumSizeHint().width()) << name;
  window().resize(1200, 700);
  QApplication::processEvents();
  EXPECT_TRUE(areInOneRow());
}

TEST_F(MainInterface, FitsASmallScreen) {
  show();
  window().resize(800, 500);
  QApplication::processEvents();
  EXPECT_EQ(window().size(), QSize(800, 500));
}

}  // namespace
}  // namespace pelmarix::test
