#include "qt/window/bill_of_materials_sheet.h"

#include <gmock/gmock.h>

#include <QClipboard>
#include <QFileDialog>
#include <QFontInfo>
#include <QLabel>
#include <QLineEdit>

#include "qt/window/file_save_panel.h"
#include "tests/qt/window/main_interface_fixture.h"

namespace pelmarix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class BillOfMaterialsSheet : public MainInterface {
 protected:
  BillOfMaterialsSheet() { show(); }
  void closeSheet() {
    sheet()->close();
    finishClosing();
  }
};

TEST_F(BillOfMaterialsSheet, ShowsTheListingOfTheSelectedReceipt) {
  table().selectRow(1);
  click("showBillOfMaterials");
  ASSERT_NE(sheet(), nullptr);
  EXPECT_TRUE(sheet()->isVisible());
  EXPECT_EQ(sheet()->windowModality(), Qt::WindowModal);
  EXPECT_EQ(listing(*sheet()), "./Applications/Safari.app\t1\n");
  EXPECT_THAT(lister.listed, ElementsAre("/System/Library/Receipts/com.example.old.bom"));
}

TEST_F(BillOfMaterialsSheet, ListsTheReceiptThatIsInTheSelectedRowNow) {
  table().selectRow(0);
  click("newestLast");
  click("showBillOfMaterials");
  EXPECT_THAT(lister.listed, ElementsAre("/System/Library/Receipts/com.example.old.bom"));
}

TEST_F(BillOfMaterialsSheet, IsEmptyWhenNothingIsSelected) {
  click("showBillOfMaterials");
  ASSERT_NE(sheet(), nullptr);
  EXPECT_EQ(listing(*sheet()), "");
  EXPECT_THAT(lister.listed, IsEmpty());
}

TEST_F(BillOfMaterialsSheet, IsOpenedByKeysDoubleClickAndMenu) {
  table().setFocus();
  table().selectRow(0);
  const auto expectSheet = [this](const char* by) {
    EXPECT_NE(sheet(), nullptr) << by;
    if (sheet() != nullptr) closeSheet();
    EXPECT_EQ(sheet(), nullptr) << by;
  };
  QTest::keyClick(&table(), Qt::Key_Return);
  expectSheet("Return");
  QTest::keyClick(&table(), Qt::Key_Space);
  expectSheet("Space");
  const QPoint place = table().visualRect(table().model()->index(1, 1)).center();
  QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, place);
  expectSheet("double click");
  choose("actionShowBillOfMaterials");
  expectSheet("menu");
}

TEST_F(BillOfMaterialsSheet, IsClosedByItsButtonAndByEscape) {
  click("showBillOfMaterials");
  QTest::mouseClick(sheet()->findChild<QPushButton*>(QStringLiteral("close")), Qt::LeftButton);
  finishClosing();
  EXPECT_EQ(sheet(), nullptr);
  click("showBillOfMaterials");
  QTest::keyClick(sheet(), Qt::Key_Escape);
  finishClosing();
  EXPECT_EQ(sheet(), nullptr);
}

TEST_F(BillOfMaterialsSheet, IsThereOnce) {
  table().selectRow(0);
  click("showBillOfMaterials");
  choose("actionShowBillOfMaterials");
  EXPECT_EQ(window().findChildren<qt::BillOfMaterialsSheet*>().size(), 1);
  EXPECT_EQ(lister.listed.size(), 1U);
}

TEST_F(BillOfMaterialsSheet, StaysAwayWhenTheListerCannotBeStarted) {
  table().selectRow(0);
  lister.cannotBeStarted = true;
  click("showBillOfMaterials");
  finishClosing();
  EXPECT_EQ(sheet(), nullptr);
  EXPECT_THAT(services.alerts, IsEmpty());
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
  lister.cannotBeStarted = false;
  click("showBillOfMaterials");
  EXPECT_NE(sheet(), nullptr);
}

TEST_F(BillOfMaterialsSheet, StaysAwayAndAnAlertTellsThatThereIsNotEnoughMemoryForTheListing) {
  table().selectRow(0);
  lister.whileRunning = [] { throw std::bad_alloc(); };
  click("showBillOfMaterials");
  finishClosing();
  EXPECT_EQ(sheet(), nullptr);
  EXPECT_THAT(services.alerts,
              testing::ElementsAre(errorAlert("An error occurred in your last action:",
                                              std::make_error_code(std::errc::not_enough_memory).message())));
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
  lister.whileRunning = [] {};
  click("showBillOfMaterials");
  EXPECT_NE(sheet(), nullptr);
}

TEST_F(BillOfMaterialsSheet, ShowsABusyPointerWhileTheListerRuns) {
  table().selectRow(0);
  Qt::CursorShape shape = Qt::ArrowCursor;
  lister.whileRunning = [&] {
    if (const QCursor* pointer = QGuiApplication::overrideCursor()) shape = pointer->shape();
  };
  click("showBillOfMaterials");
  EXPECT_EQ(shape, Qt::WaitCursor);
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(BillOfMaterialsSheet, HasNamesAndAFixedWidthFont) {
  click("showBillOfMaterials");
  auto* text = sheet()->findChild<qt::PlainTextView*>(QStringLiteral("listing"));
  EXPECT_EQ(text->accessibleName(), QStringLiteral("Bill of materials"));
  EXPECT_TRUE(text->focusPolicy() & Qt::TabFocus) << "text is selected by the keyboard, too";
  EXPECT_TRUE(QFontInfo(text->font()).fixedPitch());
  const auto& close = *sheet()->findChild<QPushButton*>(QStringLiteral("close"));
  EXPECT_EQ(close.accessibleName(), QStringLiteral("Close"));
  EXPECT_TRUE(close.isDefault());
  EXPECT_EQ(find<QPushButton>("copyPaths").accessibleName(), QStringLiteral("Copy Paths"));
  EXPECT_EQ(sheet()->size(), window().size() * 9 / 10);
}

TEST_F(BillOfMaterialsSheet, DescribesItsListing) {
  table().selectRow(0);
  click("showBillOfMaterials");
  EXPECT_EQ(sheet()->findChild<qt::PlainTextView*>()->accessibleDescription(),
            QStringLiteral("The files of the receipt, each with its size and the time of its last change"));
}

TEST_F(BillOfMaterialsSheet, ChangesTheSizeOfATextThatIsInPixels) {
  table().selectRow(0);
  click("showBillOfMaterials");
  auto* text = sheet()->findChild<qt::PlainTextView*>();
  QFont font = text->font();
  font.setPixelSize(20);
  text->setFont(font);
  const double before = text->fontInfo().pointSizeF();
  emit text->zoomRequested(1);
  EXPECT_EQ(text->font().pointSizeF(), before + 1);
}

TEST_F(BillOfMaterialsSheet, HasPathsSizesAndDatesInColumnsInEverySize) {
  lister.output = "./a\t1234\tMon\n./Applications\t5\tTue\n";
  table().selectRow(0);
  click("showBillOfMaterials");
  auto* text = sheet()->findChild<qt::PlainTextView*>(QStringLiteral("listing"));
  const auto lettersBefore = [text](const char* letters) {
    return text->xOf(text->text()->find(letters)) / QFontMetricsF(text->font()).horizontalAdvance(u' ');
  };
  const auto expectColumns = [&] {
    EXPECT_DOUBLE_EQ(lettersBefore("1234"), 16);
    EXPECT_DOUBLE_EQ(lettersBefore("5"), 19) << "to the right";
    EXPECT_DOUBLE_EQ(lettersBefore("Mon"), 22);
    EXPECT_DOUBLE_EQ(lettersBefore("Tue"), 22);
  };
  expectColumns();
  const double before = text->font().pointSizeF();
  emit text->zoomRequested(6);
  EXPECT_EQ(text->font().pointSizeF(), before + 6);
  expectColumns();
  EXPECT_EQ(listing(*sheet()), lister.output);
}

TEST_F(BillOfMaterialsSheet, ChangesTheSizeOfItsTextAndClosesByKeys) {
  table().selectRow(0);
  click("showBillOfMaterials");
  sheet()->activateWindow();
  QApplication::processEvents();
  auto* text = sheet()->findChild<qt::PlainTextView*>(QStringLiteral("listing"));
  const double before = text->font().pointSizeF();
  QTest::keyClick(text, Qt::Key_Plus, Qt::ControlModifier);
  EXPECT_EQ(text->font().pointSizeF(), before + 1);
  QTest::keyClick(text, Qt::Key_Equal, Qt::ControlModifier);
  EXPECT_EQ(text->font().pointSizeF(), before + 2);
  QTest::keyClick(text, Qt::Key_Minus, Qt::ControlModifier);
  EXPECT_EQ(text->font().pointSizeF(), before + 1);
  QTest::keyClick(text, Qt::Key_W, Qt::ControlModifier);
  finishClosing();
  EXPECT_EQ(sheet(), nullptr);
  EXPECT_TRUE(window().isVisible());
}

TEST_F(BillOfMaterialsSheet, HasThePackageAndItsDateAsItsHeading) {
  table().selectRow(1);
  click("showBillOfMaterials");
  auto& package = find<QLabel>("package");
  EXPECT_TRUE(package.isVisible());
  EXPECT_EQ(package.text(), QStringLiteral("com.example.old"));
  EXPECT_TRUE(package.font().bold());
  EXPECT_EQ(find<QLabel>("date").text(), QStringLiteral("2018-01-01 00:00:00 +0000"));
  EXPECT_TRUE(find<QLabel>("date").isVisible());
}

TEST_F(BillOfMaterialsSheet, ShowsControlsInThePackagesName) {
  addReceipt("com.\u202Eexample", "2020-01-01T00:00:00Z");
  interface.reset();
  show();
  table().selectRow(0);
  click("showBillOfMaterials");
  EXPECT_EQ(find<QLabel>("package").text().toStdString(), "com.\u21C4example");
}

TEST_F(BillOfMaterialsSheet, SaysThatNoReceiptIsSelected) {
  click("showBillOfMaterials");
  auto* text = sheet()->findChild<qt::PlainTextView*>(QStringLiteral("listing"));
  EXPECT_FALSE(find<QLabel>("package").isVisible());
  EXPECT_FALSE(find<QLabel>("date").isVisible());
  EXPECT_EQ(text->accessibleDescription(), QStringLiteral("No receipt is selected"));
  const QImage with = text->viewport()->grab().toImage();
  text->setPlaceholderText({});
  EXPECT_NE(text->viewport()->grab().toImage(), with);
  EXPECT_FALSE(find<QPushButton>("copyPaths").isEnabled());
  EXPECT_FALSE(sheet()->findChild<QPushButton*>(QStringLiteral("save"))->isEnabled());
}

TEST_F(BillOfMaterialsSheet, CopiesThePathsOfAllFilesOrOfThoseThatAreSelected) {
  lister.output = "./a b\t1\tMon\n./c\td\t22\tTue\n./e\nf\t3\tWed\n./g\t4\tThu\n";
  table().selectRow(0);
  click("showBillOfMaterials");
  auto* text = sheet()->findChild<qt::PlainTextView*>(QStringLiteral("listing"));
  const auto copied = [this] {
    click("copyPaths");
    return QApplication::clipboard()->text().toStdString();
  };
  EXPECT_EQ(copied(), "./a b\n./c\td\n./e\nf\n./g\n") << "whatever the names hold";
  text->select(3, 3);
  EXPECT_EQ(copied(), "./a b\n./c\td\n./e\nf\n./g\n");
  text->select(lister.output.find("22"), lister.output.find("b"));
  EXPECT_EQ(copied(), "./a b\n./c\td\n");
  text->select(0, lister.output.find("./c"));
  EXPECT_EQ(copied(), "./a b\n") << "the selection ends where the next line begins";
  text->select(lister.output.find("./c"), lister.output.find("./c") + 1);
  EXPECT_EQ(copied(), "./c\td\n") << "one letter is enough";
  EXPECT_EQ(listing(*sheet()), lister.output);
}

TEST_F(BillOfMaterialsSheet, SelectsLinesThatAreWholeOnly) {
  lister.output = "x./a\t1\n./a\t12\n./a\t1\n./b\t2";
  table().selectRow(0);
  click("showBillOfMaterials");
  const auto& text = *sheet()->findChild<qt::PlainTextView*>(QStringLiteral("listing"));
  const auto selected = [&](const char* lines) {
    sheet()->selectLines(lines);
    return text.selection();
  };
  EXPECT_EQ(selected("/a\t1"), (qt::TextRange{0, 0})) << "there is no such line";
  EXPECT_EQ(selected("./a\t1"), (qt::TextRange{14, 19}));
  EXPECT_EQ(text.caret(), 14U) << "its beginning is what comes into view";
  EXPECT_EQ(selected("x./a\t1"), (qt::TextRange{0, 6}));
  EXPECT_EQ(selected("./b\t2"), (qt::TextRange{20, 25}));
  EXPECT_EQ(selected("./a\t1\n./b\t2"), (qt::TextRange{14, 25})) << "a name may have a line end in it";
  EXPECT_EQ(selected("./c"), (qt::TextRange{14, 25}));
}

TEST_F(BillOfMaterialsSheet, SelectsNoLineThatBeginsOneLetterAhead) {
  lister.output = "x/a\t1\n";
  table().selectRow(0);
  click("showBillOfMaterials");
  sheet()->selectLines("/a\t1");
  EXPECT_TRUE(sheet()->findChild<qt::PlainTextView*>(QStringLiteral("listing"))->selection().isEmpty());
}

TEST_F(BillOfMaterialsSheet, HasNoPathsToCopyWhereThereIsNoListing) {
  lister.output = "";
  table().selectRow(0);
  click("showBillOfMaterials");
  EXPECT_EQ(listing(*sheet()), "No information available from a Bom file");
  EXPECT_FALSE(find<QPushButton>("copyPaths").isEnabled());
  EXPECT_TRUE(sheet()->findChild<QPushButton*>(QStringLiteral("save"))->isEnabled());
}

TEST_F(BillOfMaterialsSheet, SavesItsListingAsItIs) {
  lister.output = "./\u05e9\u2028\t1\tMon\n";
  table().selectRow(0);
  click("showBillOfMaterials");
  auto* save = sheet()->findChild<QPushButton*>(QStringLiteral("save"));
  QTest::mouseClick(save, Qt::LeftButton);
  ASSERT_EQ(savePanels.size(), 1U);
  EXPECT_THAT(savePanels[0]->allowedFileTypes, ElementsAre("text", "txt"));
  savePanels[0]->chosenPath = "/home/listing.text";
  savePanels[0]->completionHandler(platform::modalResponseOK);
  EXPECT_EQ(fileManager.files.at("/home/listing.text"), lister.output);
  fileManager.writeFailure = std::make_error_code(std::errc::no_space_on_device);
  savePanels[0]->completionHandler(platform::modalResponseOK);
  EXPECT_THAT(services.alerts, ElementsAre(errorAlert("An error occurred in your last action:",
                                                      fileManager.writeFailure->message())));
}

TEST_F(BillOfMaterialsSheet, BringsItsSavePanelThatIsOpenToTheFront) {
  services.services.makeSavePanel = [this] { return std::make_shared<qt::FileSavePanel>(sheet().data()); };
  table().selectRow(0);
  click("showBillOfMaterials");
  sheet()->activateWindow();
  QApplication::processEvents();
  const auto press = [this] {
    QTest::keyClick(sheet()->findChild<qt::PlainTextView*>(), Qt::Key_S, Qt::ControlModifier);
    return sheet()->findChildren<QFileDialog*>();
  };
  const QList<QFileDialog*> panels = press();
  ASSERT_EQ(panels.size(), 1);
  panels.front()->showMinimized();
  sheet()->activateWindow();
  EXPECT_EQ(press(), panels);
  EXPECT_FALSE(panels.front()->isMinimized());
}

TEST_F(BillOfMaterialsSheet, KeepsItsLettersWithinWhatCanBeDrawn) {
  table().selectRow(0);
  click("showBillOfMaterials");
  auto* text = sheet()->findChild<qt::PlainTextView*>(QStringLiteral("listing"));
  emit text->zoomRequested(100'000);
  EXPECT_EQ(text->font().pointSizeF(), 500);
  emit text->zoomRequested(-100'000);
  EXPECT_EQ(text->font().pointSizeF(), 1);
}

TEST_F(BillOfMaterialsSheet, FindsText) {
  table().selectRow(0);
  click("showBillOfMaterials");
  auto* text = sheet()->findChild<qt::PlainTextView*>(QStringLiteral("listing"));
  auto* wanted = sheet()->findChild<QLineEdit*>(QStringLiteral("text"));
  QTest::mouseClick(sheet()->findChild<QPushButton*>(QStringLiteral("find")), Qt::LeftButton);
  EXPECT_TRUE(wanted->isVisible());
  QTest::keyClicks(wanted, QStringLiteral("safari"));
  EXPECT_EQ(text->index().part(text->selection()), "Safari");
  QTest::keyClick(wanted, Qt::Key_Return);
  EXPECT_NE(sheet(), nullptr) << "Return finds the next place, it doesn't close the sheet";
  QTest::keyClick(wanted, Qt::Key_Escape);
  EXPECT_FALSE(wanted->isVisible());
  EXPECT_NE(sheet(), nullptr) << "Escape closes the search first";
}

TEST_F(BillOfMaterialsSheet, SearchesByItsKeys) {
  table().selectRow(0);
  click("showBillOfMaterials");
  sheet()->activateWindow();
  QApplication::processEvents();
  auto* text = sheet()->findChild<qt::PlainTextView*>(QStringLiteral("listing"));
  auto* wanted = sheet()->findChild<QLineEdit*>(QStringLiteral("text"));
  QTest::keyClick(text, Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(wanted->isVisible());
  EXPECT_TRUE(wanted->hasFocus());
  wanted->setText(QStringLiteral("a"));
  const std::size_t first = text->caret();
  QTest::keyClick(text, Qt::Key_F3);
  EXPECT_GT(text->caret(), first);
  QTest::keyClick(text, Qt::Key_F3, Qt::ShiftModifier);
  EXPECT_EQ(text->caret(), first);
  EXPECT_FALSE(sheet()->findChild<QCheckBox*>(QStringLiteral("allParts"))->isVisible())
      << "the sheet has one part";
}

TEST_F(BillOfMaterialsSheet, LeavesNothingBehindHoweverOftenItIsOpened) {
  table().selectRow(0);
  const auto openAndClose = [this] {
    click("showBillOfMaterials");
    const QPointer<QObject> opened = sheet().data();
    closeSheet();
    EXPECT_EQ(opened, nullptr);
  };
  openAndClose();
  const auto objects = window().findChildren<QObject*>().size();
  const auto windows = QApplication::topLevelWidgets().size();
  for (int i = 0; i < 100; ++i) openAndClose();
  EXPECT_EQ(window().findChildren<QObject*>().size(), objects);
  EXPECT_EQ(QApplication::topLevelWidgets().size(), windows);
}

}  // namespace
}  // namespace pelmarix::test
