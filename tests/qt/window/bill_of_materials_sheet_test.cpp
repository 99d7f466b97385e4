#include "qt/window/bill_of_materials_sheet.h"

#include <gmock/gmock.h>

#include <QFontInfo>
#include <QLineEdit>

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
  EXPECT_EQ(sheet()->findChild<QPushButton*>(QStringLiteral("close"))->accessibleName(),
            QStringLiteral("Close"));
}

TEST_F(BillOfMaterialsSheet, KeepsItsColumnsEightLettersApartInEverySize) {
  lister.output = "1234567\tx\t1\n";
  table().selectRow(0);
  click("showBillOfMaterials");
  auto* text = sheet()->findChild<qt::PlainTextView*>(QStringLiteral("listing"));
  const auto lettersBefore = [text](std::size_t place) {
    return text->xOf(place) / QFontMetricsF(text->font()).horizontalAdvance(QLatin1Char(' '));
  };
  EXPECT_DOUBLE_EQ(lettersBefore(8), 8);
  EXPECT_DOUBLE_EQ(lettersBefore(10), 16);
  const double before = text->font().pointSizeF();
  emit text->zoomRequested(6);
  EXPECT_EQ(text->font().pointSizeF(), before + 6);
  EXPECT_DOUBLE_EQ(lettersBefore(8), 8);
  EXPECT_DOUBLE_EQ(lettersBefore(10), 16);
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

TEST_F(BillOfMaterialsSheet, OpensTheSearchByItsKeys) {
  click("showBillOfMaterials");
  sheet()->activateWindow();
  QApplication::processEvents();
  auto* text = sheet()->findChild<qt::PlainTextView*>(QStringLiteral("listing"));
  auto* wanted = sheet()->findChild<QLineEdit*>(QStringLiteral("text"));
  QTest::keyClick(text, Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(wanted->isVisible());
  EXPECT_TRUE(wanted->hasFocus());
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
