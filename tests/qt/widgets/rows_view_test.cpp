#include "qt/widgets/rows_view.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTest>

#include "qt/widgets/outline_widget.h"
#include "qt/widgets/table_widget.h"
#include "tests/qt/widgets/paintings.h"
#include "tests/qt/widgets/pictures.h"
#include "tests/qt/widgets/thick_frames.h"

namespace pelmarix::test {
namespace {

/// A list in a window, with as many rows as a test wants.
template <typename Widget>
class List : public testing::Test {
 protected:
  List() {
    list.setModel(&model);
    setColumns({{"Name", {}, {}, {}}});
    list.setGeometry(50, 40, 500, 300);
    window.resize(700, 500);
    window.show();
  }

  void fill(int rows) {
    for (int row = 0; row < rows; ++row) {
      QList<QStandardItem*> cells;
      for (int column = 0; column < model.columnCount(); ++column)
        cells += new QStandardItem(QStringLiteral("Row %1").arg(row));
      model.appendRow(cells);
    }
    QApplication::processEvents();
  }
  void setColumns(const std::vector<qt::ColumnDescription>& columns) {
    model.setColumnCount(static_cast<int>(columns.size()));
    list.setColumns(columns);
  }
  void focus(QWidget& widget) {
    window.activateWindow();
    widget.setFocus();
    ASSERT_TRUE(QTest::qWaitFor([&widget] { return widget.hasFocus(); }));
  }
  QRect room() const { return {list.viewport()->mapTo(&window, QPoint()), list.viewport()->size()}; }
  QHeaderView& header() {
    if constexpr (std::is_same_v<Widget, qt::TableWidget>)
      return *list.horizontalHeader();
    else
      return *list.header();
  }

  QStandardItemModel model;
  QWidget window;
  Widget list{&window};
};

using Lists = testing::Types<qt::TableWidget, qt::OutlineWidget>;
TYPED_TEST_SUITE(List, Lists);

TYPED_TEST(List, HasRowsToBeSelectedAndDraggedButNotChanged) {
  const QAbstractItemView& view = this->list;
  EXPECT_EQ(view.selectionMode(), QAbstractItemView::ExtendedSelection);
  EXPECT_EQ(view.selectionBehavior(), QAbstractItemView::SelectRows);
  EXPECT_EQ(view.editTriggers(), QAbstractItemView::NoEditTriggers);
  EXPECT_EQ(view.dragDropMode(), QAbstractItemView::DragOnly);
  EXPECT_TRUE(view.dragEnabled());
  EXPECT_TRUE(view.alternatingRowColors());
  EXPECT_FALSE(view.tabKeyNavigation()) << "Tab goes on to what stands beside the list";
  EXPECT_EQ(view.textElideMode(), Qt::ElideMiddle);
  EXPECT_EQ(view.horizontalScrollMode(), QAbstractItemView::ScrollPerPixel);
}

TYPED_TEST(List, HasAHeaderThatStaysAsItIs) {
  EXPECT_FALSE(this->header().highlightSections());
  EXPECT_FALSE(this->header().sectionsMovable());
  EXPECT_FALSE(this->header().stretchLastSection());
}

TYPED_TEST(List, HasAButtonALittleBelowItsMiddleWhereItIsEmpty) {
  QPushButton button(QStringLiteral("Open Volume…"), &this->window);
  button.hide();
  button.lower();
  this->list.showAction(button);
  EXPECT_EQ(this->window.childAt(button.geometry().center()), &button) << "above the list";
  for (const QSize size : {QSize(500, 300), QSize(401, 201), QSize(600, 400)}) {
    this->list.resize(size);
    QApplication::processEvents();
    EXPECT_TRUE(button.isVisible());
    EXPECT_EQ(button.size(), button.sizeHint());
    EXPECT_NEAR(button.geometry().center().x(), this->room().center().x(), 1);
    EXPECT_NEAR(button.y() - this->room().top(), this->room().height() * 0.55, 1);
  }
  this->list.resize(400, 60);
  QApplication::processEvents();
  EXPECT_EQ(button.geometry().bottom(), this->room().bottom()) << "as a whole in what there is";
}

TYPED_TEST(List, SaysWhyItIsEmptyAboveItsButton) {
  QPushButton button(QStringLiteral("Open Volume…"), &this->window);
  this->list.showAction(button);
  button.hide();
  const QImage before = this->list.viewport()->grab().toImage();
  this->list.setPlaceholderText(QStringLiteral("No install history was found."));
  EXPECT_EQ(this->list.accessibleDescription(), QStringLiteral("No install history was found."));
  const QRect text = changedPart(before, this->list.viewport()->grab().toImage());
  ASSERT_FALSE(text.isEmpty());
  const int letter = this->list.fontMetrics().averageCharWidth();
  const int bottom = this->list.viewport()->mapTo(&this->window, text.bottomLeft()).y();
  EXPECT_LE(bottom, button.y() - 2 * letter);
  EXPECT_GE(bottom, button.y() - 2 * letter - this->list.fontMetrics().height());
  EXPECT_NEAR(text.center().x(), this->list.viewport()->rect().center().x(), 2);
}

TYPED_TEST(List, SaysInItsMiddleWhyItIsEmptyAndNothingWhereItIsNot) {
  const auto text = [this] {
    this->list.setPlaceholderText({});
    const QImage before = this->list.viewport()->grab().toImage();
    this->list.setPlaceholderText(QStringLiteral("No receipts were found. ").repeated(6));
    return changedPart(before, this->list.viewport()->grab().toImage());
  };
  const QRect lines = text();
  EXPECT_GT(lines.height(), this->list.fontMetrics().height()) << "it wraps";
  EXPECT_NEAR(lines.center().y(), this->list.viewport()->rect().center().y(), 4);
  const int margin = 2 * this->list.fontMetrics().averageCharWidth();
  EXPECT_TRUE(this->list.viewport()->rect().adjusted(margin - 1, 0, 1 - margin, 0).contains(lines));
  this->list.setPlaceholderText({});
  const QImage without = this->list.viewport()->grab().toImage();
  this->list.setPlaceholderText(QString(1000, u'l'));
  const QRect wide = changedPart(without, this->list.viewport()->grab().toImage());
  EXPECT_LT(wide.left(), margin + margin / 3) << "in all of the room";
  EXPECT_TRUE(this->list.viewport()->rect().adjusted(margin - 1, 0, 1 - margin, 0).contains(wide))
      << "broken where it must be";
  this->fill(1);
  EXPECT_TRUE(text().isEmpty());
}

TYPED_TEST(List, BringsTheCurrentRowIntoViewWithAndWithoutTheFocus) {
  this->fill(100);
  QWidget other(&this->window);
  other.setFocusPolicy(Qt::StrongFocus);
  other.show();
  for (QWidget* widget : {static_cast<QWidget*>(&this->list), &other}) {
    this->focus(*widget);
    for (const int row : {90, 5}) {
      this->list.setCurrentIndex(this->model.index(row, 0));
      QApplication::processEvents();
      EXPECT_TRUE(
          this->list.viewport()->rect().contains(this->list.visualRect(this->model.index(row, 0)).center()));
    }
  }
}

TYPED_TEST(List, IsDrawnAnewWhenWhatItSaysOrMarksChanges) {
  Paintings paintings(*this->list.viewport());
  EXPECT_TRUE(
      paintings.follow([this] { this->list.setPlaceholderText(QStringLiteral("Nothing is here.")); }));
  this->fill(2);
  EXPECT_TRUE(paintings.follow([this] { this->list.markMatches(QStringLiteral("row")); }));
  EXPECT_FALSE(paintings.follow([] {}));
}

TYPED_TEST(List, HasAFrameAroundWhatTheKeyboardIsAt) {
  this->fill(3);
  this->focus(this->list);
  const auto place = [this](int row) { return this->list.visualRect(this->model.index(row, 0)); };
  const auto pictureAt = [&](int row) {
    this->list.selectionModel()->setCurrentIndex(this->model.index(row, 0), QItemSelectionModel::NoUpdate);
    return this->list.viewport()->grab().toImage();
  };
  const QRect changed = changedPart(pictureAt(1), pictureAt(2));
  EXPECT_TRUE(changed.intersects(place(1)));
  EXPECT_TRUE(changed.intersects(place(2)));
  EXPECT_FALSE(changed.intersects(place(0)));
}

TYPED_TEST(List, ShowsASelectionDullerWithoutTheKeyboard) {
  this->fill(3);
  QWidget other(&this->window);
  other.setFocusPolicy(Qt::StrongFocus);
  other.show();
  const auto rowColor = [this] {
    const QRect row = this->list.visualRect(this->model.index(1, 0));
    return this->list.viewport()->grab().toImage().pixelColor(row.right() - 2, row.center().y());
  };
  const QColor usual = rowColor();
  this->list.selectionModel()->select(this->model.index(1, 0), QItemSelectionModel::Select);
  const auto difference = [&usual](const QColor& color) {
    return std::abs(color.red() - usual.red()) + std::abs(color.green() - usual.green()) +
           std::abs(color.blue() - usual.blue());
  };
  this->focus(this->list);
  const int withFocus = difference(rowColor());
  this->focus(other);
  const int withoutFocus = difference(rowColor());
  EXPECT_GT(withoutFocus, 20) << "it can still be seen";
  EXPECT_LT(withoutFocus, withFocus * 2 / 3);
}

TYPED_TEST(List, ScrollsAsFarAsItsRowsNeedInEveryHeight) {
  this->fill(20);
  const auto isAllInView = [this](int height) {
    this->list.resize(500, height);
    return this->list.verticalScrollBar()->maximum() == 0;
  };
  const int rows = 22 * this->list.visualRect(this->model.index(0, 0)).height();
  const int header = this->header().height();
  EXPECT_TRUE(isAllInView(rows + header));
  EXPECT_FALSE(isAllInView(rows / 2));
  EXPECT_TRUE(isAllInView(rows + header));
}

TYPED_TEST(List, CopiesAndOpensItsMenuByKeys) {
  this->fill(2);
  this->focus(this->list);
  this->list.setCurrentIndex(this->model.index(1, 0));
  QTest::keySequence(&this->list, QKeySequence::Copy);
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("Row 1\n"));
  QAction action(QStringLiteral("Do something"));
  this->list.addAction(&action);
  QTest::keyClick(&this->list, Qt::Key_F10, Qt::ShiftModifier);
  auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->actions(), QList{&action});
  QTest::keyClick(menu, Qt::Key_Escape);
  EXPECT_TRUE(QTest::qWaitFor([this] { return this->list.template findChild<QMenu*>() == nullptr; }));
}

// Columns.

TYPED_TEST(List, HasColumnsAsWideAsTheirUsualTextsInEverySizeOfLetters) {
  const QString date = QStringLiteral("2019-03-25 00:00:00");
  this->setColumns(
      {{"Date", {}, {}, date}, {"Name", {}, {}, {}}, {"Version", {}, {}, QStringLiteral("10.14")}});
  const auto widthFor = [this](const QString& text) {
    const int margin =
        this->list.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &this->list) + 1;
    return this->list.fontMetrics().horizontalAdvance(text) + 4 * margin;
  };
  for (const double factor : {1.0, 1.5, 0.75}) {
    QFont font = this->list.font();
    font.setPointSizeF(font.pointSizeF() * factor);
    this->list.setFont(font);
    QApplication::processEvents();
    EXPECT_EQ(this->header().sectionSize(0), widthFor(date));
    EXPECT_GE(this->header().sectionSize(2), widthFor(QStringLiteral("10.14")));
  }
}

TYPED_TEST(List, HasItsFrameAndColumnsAsWideAsTheirUsualTextsInEveryStyle) {
  class WideMargins final : public ThickFrames {
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
      return metric == PM_FocusFrameHMargin ? 20 : ThickFrames::pixelMetric(metric, option, widget);
    }
  };
  const QString date = QStringLiteral("2019-03-25");
  this->setColumns({{"Date", {}, {}, date}, {"Name", {}, {}, {}}});
  WideMargins style;
  this->list.setStyle(&style);
  EXPECT_EQ(this->list.frameWidth(), 11);
  EXPECT_EQ(this->header().sectionSize(0), this->list.fontMetrics().horizontalAdvance(date) + 4 * 21);
  this->fill(1);
  this->model.setItem(0, 0, new QStandardItem);
  const QImage before = this->list.viewport()->grab().toImage();
  this->model.item(0, 0)->setText(QStringLiteral("|"));
  const QRect letter = changedPart(before, this->list.viewport()->grab().toImage());
  EXPECT_GE(letter.left(), this->list.visualRect(this->model.index(0, 0)).left() + 21);
  this->list.setStyle(nullptr);
}

TYPED_TEST(List, DividesItsRoomBetweenNamesAndWhatStandsBehindThem) {
  this->setColumns({{"Name", {}, {}, {}, 40}, {"Version", {}, {}, QStringLiteral("10.14")}});
  this->fill(1);
  const int indentation =
      std::is_same_v<TypeParam, qt::TableWidget> ? 0 : 2 * this->list.fontMetrics().height();
  const int margin = this->list.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &this->list) + 1;
  const auto widthFor = [&](const QString& text) {
    return this->list.fontMetrics().horizontalAdvance(text) + 4 * margin;
  };
  if constexpr (std::is_same_v<TypeParam, qt::OutlineWidget>) this->list.setIndentation(indentation / 2);
  const int version = widthFor(QStringLiteral("10.14"));
  const int usual = widthFor(QString(40, QLatin1Char('0'))) + indentation;
  const int least = widthFor(QString(22, QLatin1Char('0'))) + indentation;
  const auto sizesFor = [&](int width) {
    this->list.resize(width + this->list.width() - this->list.viewport()->width(), 300);
    QApplication::processEvents();
    EXPECT_EQ(this->list.viewport()->width(), width);
    return std::pair(this->header().sectionSize(0), this->header().sectionSize(1));
  };
  using Sizes = std::pair<int, int>;
  EXPECT_EQ(sizesFor(2 * usual + 100 + version), Sizes(usual + 50, version + usual + 50));
  EXPECT_EQ(sizesFor(2 * usual - 100 + version), Sizes(usual, version + usual - 100));
  EXPECT_EQ(sizesFor(usual - 20 + version), Sizes(usual - 20, version));
  EXPECT_EQ(sizesFor(least + version), Sizes(least, version));
  EXPECT_EQ(this->list.horizontalScrollBar()->maximum(), 0);
  EXPECT_EQ(sizesFor(least + version - 1), Sizes(least + version - 1, version)) << "it scrolls from here on";
  EXPECT_EQ(sizesFor(least - 10), Sizes(least, version));
  EXPECT_GT(this->list.horizontalScrollBar()->maximum(), 0);
}

TYPED_TEST(List, LeavesAColumnAsWideAsItWasDrawn) {
  this->setColumns({{"Date", {}, {}, QStringLiteral("2019-03-25")}, {"Name", {}, {}, {}}});
  this->header().resizeSection(0, 150);
  this->list.resize(600, 300);
  this->list.setPalette(QPalette(Qt::darkGray));
  QApplication::processEvents();
  EXPECT_EQ(this->header().sectionSize(0), 150);
  EXPECT_EQ(this->header().sectionSize(1), this->list.viewport()->width() - 150);
}

TYPED_TEST(List, HasRowsAHalfLetterHigherThanTheirLettersInEverySize) {
  this->fill(2);
  const auto rowHeight = [this] {
    return this->list.visualRect(this->model.index(1, 0)).top() -
           this->list.visualRect(this->model.index(0, 0)).top();
  };
  const auto usual = [this] { return this->list.fontMetrics().lineSpacing() * 5 / 4; };
  // A header's own least height may be a little more than that of small letters.
  EXPECT_NEAR(rowHeight(), usual(), 1);
  for (const double size : {13.0, 20.0}) {
    QFont font = this->list.font();
    font.setPointSizeF(size);
    this->list.setFont(font);
    QApplication::processEvents();
    EXPECT_EQ(rowHeight(), usual());
  }
}

TYPED_TEST(List, DrawsNoLinesBetweenItsCells) {
  this->setColumns({{"Name", {}, {}, {}}, {"Date", {}, {}, QStringLiteral("2019-03-25")}});
  this->fill(3);
  this->list.setAlternatingRowColors(false);
  this->list.clearFocus();
  const QRect cell = this->list.visualRect(this->model.index(1, 0));
  const QImage picture = this->list.viewport()->grab().toImage();
  const QColor base = this->list.palette().color(QPalette::Base);
  for (int x = cell.right() - 1; x < cell.right() + 3; ++x)
    EXPECT_EQ(picture.pixelColor(x, cell.top() + 1), base) << x;
  for (int y = cell.bottom() - 1; y < cell.bottom() + 3; ++y)
    EXPECT_EQ(picture.pixelColor(cell.right() - 2, y), base) << y;
}

}  // namespace
}  // namespace pelmarix::test
