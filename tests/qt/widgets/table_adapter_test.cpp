#include "qt/widgets/table_adapter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

namespace pelmarix::test {
namespace {

class TableAdapter : public testing::Test,
                     public platform::TableViewDataSource,
                     public platform::TableViewDelegate {
 protected:
  TableAdapter() {
    table.reloadData();
    widget.resize(500, 300);
    widget.show();
    QApplication::processEvents();
  }

  std::ptrdiff_t numberOfRowsInTableView(platform::TableView& /*tableView*/) override {
    return std::ssize(names);
  }
  platform::Object* tableViewObjectValueForTableColumnRow(platform::TableView& /*tableView*/,
                                                          const platform::TableColumn* /*column*/,
                                                          std::ptrdiff_t /*row*/) override {
    return nullptr;
  }
  platform::View* tableViewViewForTableColumnRow(platform::TableView& tableView,
                                                 const platform::TableColumn* column,
                                                 std::ptrdiff_t row) override {
    ++cellQuestions;
    if (row >= std::ssize(names)) return nullptr;
    const bool isName = column == tableView.tableColumns()[1];
    platform::View* view = tableView.makeViewWithIdentifier(isName ? "NameCell" : "DateCell");
    if (auto* cell = dynamic_cast<platform::TableCellView*>(view))
      cell->textField()->setStringValue(isName ? names[static_cast<std::size_t>(row)] : "today");
    return view;
  }

  QModelIndex cell(int row, int column) const { return widget.model()->index(row, column); }
  std::string text(int row, int column) const { return cell(row, column).data().toString().toStdString(); }
  void reloadWith(std::vector<std::string> newNames) {
    names = std::move(newNames);
    table.reloadData();
  }

  std::vector<std::string> names{"Safari", "Mail", "Maps"};
  int cellQuestions = 0;
  qt::TableWidget widget;
  qt::TableAdapter table{widget,
                         {{"DateColumn", QStringLiteral("Date"), {"DateCell"}, QStringLiteral("2019-03-25")},
                          {"NameColumn", QStringLiteral("Package"), {"NameCell"}, {}}},
                         *this,
                         *this};
  QAbstractItemModelTester tester{widget.model(), QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(TableAdapter, HasARowForEachOfTheDataSource) {
  ASSERT_EQ(widget.model()->rowCount(), 3);
  EXPECT_EQ(text(0, 0), "today");
  EXPECT_EQ(text(2, 1), "Maps");
  EXPECT_EQ(widget.model()->columnCount(), 2);
  EXPECT_EQ(widget.model()->columnCount(cell(0, 0)), 0);
  EXPECT_EQ(widget.model()->headerData(0, Qt::Horizontal), QVariant(QStringLiteral("Date")));
  EXPECT_EQ(widget.model()->headerData(1, Qt::Horizontal), QVariant(QStringLiteral("Package")));
  for (const int section : {-1, 2})
    EXPECT_FALSE(widget.model()->headerData(section, Qt::Horizontal).isValid());
  EXPECT_FALSE(widget.model()->headerData(0, Qt::Vertical).isValid());
  EXPECT_EQ(widget.model()->headerData(0, Qt::Horizontal, Qt::TextAlignmentRole),
            QVariant(Qt::AlignLeft | Qt::AlignVCenter));
}

TEST_F(TableAdapter, DescribesARowWithItsFirstCellAlone) {
  EXPECT_EQ(cell(1, 0).data(Qt::AccessibleDescriptionRole).toString().toStdString(), "Mail");
  EXPECT_EQ(cell(1, 1).data(Qt::AccessibleDescriptionRole), QVariant());
}

TEST_F(TableAdapter, HasNoTextWhereThereIsNoCell) {
  names.clear();
  EXPECT_EQ(cell(0, 1).data(), QVariant());
}

TEST_F(TableAdapter, ShowsMoreFewerAndOtherRowsAfterAReload) {
  reloadWith({"Safari", "Mail", "Maps", "Notes", "Photos"});
  EXPECT_EQ(widget.model()->rowCount(), 5);
  EXPECT_EQ(text(4, 1), "Photos");
  reloadWith({"Photos", "Notes"});
  EXPECT_EQ(widget.model()->rowCount(), 2);
  EXPECT_EQ(text(0, 1), "Photos");
  reloadWith({});
  EXPECT_EQ(widget.model()->rowCount(), 0);
}

TEST_F(TableAdapter, TellsOfNoRowsThatComeOrGoWhereTheirNumberStays) {
  const QSignalSpy come(widget.model(), &QAbstractItemModel::rowsInserted);
  const QSignalSpy gone(widget.model(), &QAbstractItemModel::rowsRemoved);
  const QSignalSpy changed(widget.model(), &QAbstractItemModel::dataChanged);
  reloadWith({"Photos", "Notes", "Mail"});
  EXPECT_EQ(come.count() + gone.count(), 0);
  ASSERT_EQ(changed.count(), 1);
  EXPECT_EQ(changed.at(0).at(0).toModelIndex(), cell(0, 0));
  EXPECT_EQ(changed.at(0).at(1).toModelIndex(), cell(2, 1));
  reloadWith({"Photos"});
  reloadWith({"Mail"});
  EXPECT_EQ(changed.count(), 3) << "of a single row, too";
}

TEST_F(TableAdapter, SelectsARowAloneAndBringsItIntoView) {
  reloadWith(std::vector<std::string>(100, "Notes"));
  widget.selectAll();
  table.selectRow(80);
  EXPECT_EQ(table.selectedRow(), 80);
  EXPECT_EQ(widget.currentIndex(), cell(80, 0));
  EXPECT_EQ(widget.selectionModel()->selectedRows(), QModelIndexList{cell(80, 0)});
  EXPECT_TRUE(widget.viewport()->rect().contains(widget.visualRect(cell(80, 0)).center()));
  table.selectRow(100);
  EXPECT_EQ(table.selectedRow(), 80) << "there is no such row";
}

TEST_F(TableAdapter, HasNoSelectedRowAtFirst) { EXPECT_EQ(table.selectedRow(), -1); }

TEST_F(TableAdapter, KeepsTheSelectedRowAsANumberOnReload) {
  widget.selectRow(1);
  reloadWith({"Maps", "Mail", "Safari"});
  EXPECT_EQ(table.selectedRow(), 1);
  reloadWith({"Maps"});
  EXPECT_EQ(table.selectedRow(), -1);
}

TEST_F(TableAdapter, TakesTheRowWithTheFocusAmongSeveralSelectedOnes) {
  widget.selectAll();
  widget.selectionModel()->setCurrentIndex(cell(2, 0), QItemSelectionModel::NoUpdate);
  EXPECT_EQ(table.selectedRow(), 2);
  widget.selectionModel()->select(cell(2, 0), QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
  EXPECT_EQ(table.selectedRow(), 0);
  // The first of those that are selected, in whatever order they have been.
  widget.clearSelection();
  constexpr auto add = QItemSelectionModel::Select | QItemSelectionModel::Rows;
  reloadWith({"Safari", "Mail", "Maps", "Notes", "Photos"});
  for (const int row : {2, 0, 4}) widget.selectionModel()->select(cell(row, 0), add);
  widget.selectionModel()->setCurrentIndex(cell(3, 0), QItemSelectionModel::NoUpdate);
  EXPECT_EQ(table.selectedRow(), 0);
}

TEST_F(TableAdapter, AsksForNoCellThatIsNotOnScreen) {
  reloadWith(std::vector<std::string>(10000, "Package"));
  QApplication::processEvents();
  cellQuestions = 0;
  widget.viewport()->repaint();
  const int shownRows = widget.viewport()->height() / widget.rowHeight(0) + 2;
  EXPECT_GT(cellQuestions, 0);
  EXPECT_LE(cellQuestions, 2 * shownRows);
}

TEST_F(TableAdapter, GivesNamesTheRoomBesideTheDates) {
  EXPECT_EQ(widget.columnWidth(0) + widget.columnWidth(1), widget.viewport()->width());
  widget.resize(700, 300);
  EXPECT_EQ(widget.columnWidth(0) + widget.columnWidth(1), widget.viewport()->width());
  EXPECT_EQ(widget.horizontalScrollBar()->maximum(), 0);
  EXPECT_EQ(widget.textElideMode(), Qt::ElideMiddle) << "names of one maker begin alike";
}

TEST_F(TableAdapter, HasNoNumbersBesideItsRows) {
  EXPECT_FALSE(widget.verticalHeader()->isVisible());
  EXPECT_EQ(widget.viewport()->x(), widget.frameWidth());
}

TEST_F(TableAdapter, ScrollsSidewaysWhereNamesWouldBeCutTooShort) {
  const auto charactersWidth = [this](int count) {
    return widget.fontMetrics().horizontalAdvance(QString(count, QLatin1Char('0')));
  };
  const auto resizeForNames = [&](int width) {
    widget.resize(widget.columnWidth(0) + width + 2 * widget.frameWidth(), 300);
    QApplication::processEvents();
  };
  resizeForNames(charactersWidth(24));
  EXPECT_GE(widget.columnWidth(1), charactersWidth(22));
  EXPECT_EQ(widget.horizontalScrollBar()->maximum(), 0);
  resizeForNames(charactersWidth(20));
  EXPECT_GE(widget.columnWidth(1), charactersWidth(22));
  EXPECT_GT(widget.horizontalScrollBar()->maximum(), 0);
}

TEST_F(TableAdapter, OpensTheSelectedRowByReturnSpaceAndDoubleClick) {
  const QSignalSpy opened(&widget, &qt::TableWidget::rowOpened);
  QTest::keyClick(&widget, Qt::Key_Return);
  EXPECT_EQ(opened.count(), 0) << "nothing is selected";
  widget.selectRow(0);
  QTest::keyClick(&widget, Qt::Key_Return);
  QTest::keyClick(&widget, Qt::Key_Enter);
  QTest::keyClick(&widget, Qt::Key_Space);
  EXPECT_EQ(opened.count(), 2 + 1);
  const QPoint place = widget.visualRect(cell(1, 1)).center();
  QTest::mouseClick(widget.viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(widget.viewport(), Qt::LeftButton, {}, place);
  EXPECT_EQ(opened.count(), 4);
  EXPECT_EQ(table.selectedRow(), 1);
}

TEST_F(TableAdapter, OpensTheSelectedRowByEnterOfTheKeypad) {
  const QSignalSpy opened(&widget, &qt::TableWidget::rowOpened);
  widget.selectRow(0);
  QTest::keyClick(&widget, Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_EQ(opened.count(), 1);
  QTest::keyClick(&widget, Qt::Key_Enter, Qt::KeypadModifier | Qt::ControlModifier);
  EXPECT_EQ(opened.count(), 1);
}

TEST_F(TableAdapter, OpensNoRowByADoubleClickOfAnotherButton) {
  const QSignalSpy opened(&widget, &qt::TableWidget::rowOpened);
  const QPoint place = widget.visualRect(cell(1, 1)).center();
  for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton, Qt::BackButton}) {
    QTest::mouseClick(widget.viewport(), button, {}, place);
    QTest::mouseDClick(widget.viewport(), button, {}, place);
    QTest::mouseRelease(widget.viewport(), button, {}, place);
    EXPECT_EQ(opened.count(), 0);
  }
}

TEST_F(TableAdapter, OpensTheRowThatADoubleClickHitWhicheverKeysAreHeldDown) {
  std::vector<std::ptrdiff_t> opened;
  QObject::connect(&widget, &qt::TableWidget::rowOpened, [&] { opened.push_back(table.selectedRow()); });
  const QPoint place = widget.visualRect(cell(1, 1)).center();
  for (const auto keys : {Qt::ControlModifier, Qt::ShiftModifier, Qt::AltModifier}) {
    for (const auto prepare : {&QTableView::clearSelection, &QTableView::selectAll}) {
      (widget.*prepare)();
      QTest::mouseClick(widget.viewport(), Qt::LeftButton, keys, place);
      QTest::mouseDClick(widget.viewport(), Qt::LeftButton, keys, place);
      QTest::mouseRelease(widget.viewport(), Qt::LeftButton, keys, place);
    }
  }
  EXPECT_THAT(opened, testing::ElementsAre(1, 1, 1, 1, 1, 1));
}

TEST_F(TableAdapter, GoesToTheRowWhoseNameIsTyped) {
  QTest::keyClicks(&widget, QStringLiteral("map"));
  EXPECT_EQ(table.selectedRow(), 2);
}

TEST_F(TableAdapter, GoesFromOneRowToTheNextAsALetterIsRepeated) {
  QTest::keyClick(&widget, Qt::Key_M);
  EXPECT_EQ(table.selectedRow(), 1);
  QTest::keyClick(&widget, Qt::Key_M);
  EXPECT_EQ(table.selectedRow(), 2);
  QTest::keyClick(&widget, Qt::Key_M);
  EXPECT_EQ(table.selectedRow(), 1);
}

TEST_F(TableAdapter, TakesABlankForPartOfANameThatIsBeingTyped) {
  const QSignalSpy opened(&widget, &qt::TableWidget::rowOpened);
  reloadWith({"Word", "Word List"});
  QTest::keyClicks(&widget, QStringLiteral("word l"));
  EXPECT_EQ(table.selectedRow(), 1);
  EXPECT_EQ(opened.count(), 0);
}

TEST_F(TableAdapter, StaysWhereItIsWhenNothingBeginsWithWhatIsTyped) {
  widget.selectRow(1);
  QTest::keyClicks(&widget, QStringLiteral("xyz"));
  EXPECT_EQ(table.selectedRow(), 1);
  reloadWith({});
  QTest::keyClicks(&widget, QStringLiteral("xyz"));
  EXPECT_EQ(table.selectedRow(), -1);
}

TEST_F(TableAdapter, FindsAndGoesToTheSameLettersAsATextDoes) {
  reloadWith({"Mail", "Word\u00a0List"});
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("D LI"), qt::SearchStart::pastSelection,
                                 qt::SearchDirection::forward));
  EXPECT_EQ(table.selectedRow(), 1);
  widget.selectRow(0);
  QTest::keyClicks(&widget, QStringLiteral("word l"));
  EXPECT_EQ(table.selectedRow(), 1);
}

TEST_F(TableAdapter, CopiesTheSelectedRowsAsLines) {
  QApplication::clipboard()->setText(QStringLiteral("before"));
  QTest::keySequence(&widget, QKeySequence::Copy);
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "before");
  widget.selectRow(0);
  widget.selectionModel()->select(cell(2, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
  QTest::keySequence(&widget, QKeySequence::Copy);
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "today\tSafari\ntoday\tMaps\n");
}

TEST_F(TableAdapter, CopiesTheNamesOfTheSelectedRowsAlone) {
  reloadWith({" Safari ", "Mail", "Ma\nps"});
  QApplication::clipboard()->setText(QStringLiteral("before"));
  widget.copyNames();
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "before");
  widget.selectRow(2);
  widget.selectionModel()->select(cell(0, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
  widget.copyNames();
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "Safari\nMa ps");
}

TEST_F(TableAdapter, GoesToItsEndsAndByPages) {
  reloadWith(std::vector<std::string>(100, "Package"));
  const auto rowAfter = [this](Qt::Key key) {
    QTest::keyClick(&widget, key);
    EXPECT_EQ(widget.currentIndex().column(), 1);
    return table.selectedRow();
  };
  widget.setCurrentIndex(cell(50, 1));
  EXPECT_EQ(rowAfter(Qt::Key_Home), 0);
  EXPECT_EQ(rowAfter(Qt::Key_End), 99);
  const std::ptrdiff_t pageUp = rowAfter(Qt::Key_PageUp);
  EXPECT_LT(pageUp, 95);
  EXPECT_GT(pageUp, 0);
  EXPECT_EQ(rowAfter(Qt::Key_PageDown), 99);
}

TEST_F(TableAdapter, GoesToItsEndsFromNoRow) {
  QTest::keyClick(&widget, Qt::Key_End);
  EXPECT_EQ(table.selectedRow(), 2);
  EXPECT_EQ(widget.currentIndex().column(), 0);
  widget.setCurrentIndex({});
  QTest::keyClick(&widget, Qt::Key_Home);
  EXPECT_EQ(table.selectedRow(), 0);
  reloadWith({});
  QTest::keyClick(&widget, Qt::Key_End);
  EXPECT_EQ(table.selectedRow(), -1);
}

TEST_F(TableAdapter, ExtendsTheSelectionToItsEnds) {
  widget.selectRow(1);
  QTest::keyClick(&widget, Qt::Key_End, Qt::ShiftModifier);
  EXPECT_EQ(widget.selectionModel()->selectedRows().size(), 2);
  EXPECT_TRUE(widget.selectionModel()->isRowSelected(2));
}

/// The menu on screen; none is an error.
QMenu& openMenu() {
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  if (menu == nullptr) throw std::runtime_error("no menu is open");
  return *menu;
}

TEST_F(TableAdapter, OpensAMenuOfItsActionsWhereItIsClicked) {
  QAction action(QStringLiteral("Do something"));
  widget.addAction(&action);
  const QPoint place = widget.visualRect(cell(1, 1)).center();
  const QPoint globalPlace = widget.viewport()->mapToGlobal(place);
  QContextMenuEvent event(QContextMenuEvent::Mouse, place, globalPlace);
  QApplication::sendEvent(widget.viewport(), &event);
  EXPECT_THAT(openMenu().actions(), testing::ElementsAre(&action));
  EXPECT_EQ(openMenu().pos(), globalPlace);
  openMenu().close();
}

TEST_F(TableAdapter, OpensItsMenuBelowTheCurrentRowForAKey) {
  QAction action(QStringLiteral("Do something"));
  widget.addAction(&action);
  widget.setCurrentIndex(cell(1, 1));
  const QPoint below = widget.viewport()->mapToGlobal(widget.visualRect(cell(1, 1)).bottomLeft());
  QTest::keyClick(&widget, Qt::Key_F10, Qt::ShiftModifier);
  EXPECT_EQ(openMenu().pos(), below);
  openMenu().close();
  // As Qt makes it of the menu key.
  QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
  QApplication::sendEvent(&widget, &event);
  EXPECT_EQ(openMenu().pos(), below);
  openMenu().close();
  QTest::keyClick(&widget, Qt::Key_F10);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(TableAdapter, OpensItsMenuInItsMiddleWhereTheCurrentRowIsOutOfSight) {
  QAction action(QStringLiteral("Do something"));
  widget.addAction(&action);
  const auto expectMenuInTheMiddle = [this] {
    QApplication::processEvents();
    QTest::keyClick(&widget, Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_EQ(openMenu().pos(), widget.viewport()->mapToGlobal(widget.viewport()->rect().center()));
    openMenu().close();
  };
  reloadWith(std::vector<std::string>(100, "Package"));
  widget.selectRow(0);
  widget.scrollToBottom();
  expectMenuInTheMiddle();
  reloadWith({});
  expectMenuInTheMiddle();
}

TEST_F(TableAdapter, FindsTextInAnyColumnAllTheWayRound) {
  using enum qt::SearchStart;
  using enum qt::SearchDirection;
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("MA"), pastSelection, forward));
  EXPECT_EQ(table.selectedRow(), 1);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("mail"), atSelection, forward));
  EXPECT_EQ(table.selectedRow(), 1);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("ma"), pastSelection, forward));
  EXPECT_EQ(table.selectedRow(), 2);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("today"), pastSelection, forward));
  EXPECT_EQ(table.selectedRow(), 0);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("today"), pastSelection, backward));
  EXPECT_EQ(table.selectedRow(), 2);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("today"), pastSelection, backward));
  EXPECT_EQ(table.selectedRow(), 1);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("maps"), pastSelection, backward));
  EXPECT_EQ(table.selectedRow(), 2);
  EXPECT_FALSE(widget.selectMatch(QStringLiteral("Notes"), pastSelection, forward));
  EXPECT_EQ(table.selectedRow(), 2);
}

TEST_F(TableAdapter, TellsTheRowThatWasFound) {
  widget.selectMatch(QStringLiteral("ail"), qt::SearchStart::atSelection, qt::SearchDirection::forward);
  EXPECT_EQ(widget.selectedMatchInWords().toStdString(), "today, Mail");
}

TEST_F(TableAdapter, CountsTheRowsThatHoldATextInAnyColumn) {
  EXPECT_EQ(widget.countMatches(QStringLiteral("MA")).matches, 2U);
  EXPECT_EQ(widget.countMatches(QStringLiteral("a")).matches, 3U);
  EXPECT_EQ(widget.countMatches(QStringLiteral("Notes")).matches, 0U);
}

TEST_F(TableAdapter, TellsWhichOfTheRowsThatMatchIsSelected) {
  EXPECT_EQ(widget.countMatches(QStringLiteral("MA")).selected, 0U);
  widget.selectRow(2);
  EXPECT_EQ(widget.countMatches(QStringLiteral("MA")).selected, 2U);
  EXPECT_EQ(widget.countMatches(QStringLiteral("Notes")).selected, 0U);
}

TEST_F(TableAdapter, FindsTextAheadWithoutGoingRound) {
  using enum qt::SearchStart;
  using enum qt::SearchDirection;
  EXPECT_FALSE(widget.selectMatchAhead(QStringLiteral("MA"), upToSelection, forward))
      << "nothing is selected";
  for (const auto& [start, direction, row] :
       {std::tuple(pastSelection, forward, 1), {atSelection, forward, 1}, {pastSelection, backward, 2}}) {
    widget.setCurrentIndex({});  // where the keyboard has never been
    EXPECT_FALSE(widget.selectMatchAhead(QStringLiteral("MA"), upToSelection, direction));
    EXPECT_TRUE(widget.selectMatchAhead(QStringLiteral("MA"), start, direction));
    EXPECT_EQ(table.selectedRow(), row);
  }
  EXPECT_TRUE(widget.selectMatchAhead(QStringLiteral("MA"), atEdge, backward));
  EXPECT_EQ(table.selectedRow(), 2);
  EXPECT_FALSE(widget.selectMatchAhead(QStringLiteral("MA"), pastSelection, forward));
  EXPECT_TRUE(widget.selectMatchAhead(QStringLiteral("MA"), upToSelection, forward));
  EXPECT_EQ(table.selectedRow(), 1);
  EXPECT_FALSE(widget.selectMatchAhead(QStringLiteral("MA"), pastSelection, backward));
  EXPECT_TRUE(widget.selectMatchAhead(QStringLiteral("MA"), atEdge, forward));
  EXPECT_EQ(table.selectedRow(), 1);
}

TEST_F(TableAdapter, BringsTheColumnWithWhatIsFoundIntoView) {
  widget.horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  widget.horizontalHeader()->resizeSection(0, widget.viewport()->width());
  widget.horizontalHeader()->resizeSection(1, widget.viewport()->width());
  QApplication::processEvents();
  const auto isShown = [this](int column) {
    const QRect cell = widget.visualRect(widget.model()->index(1, column));
    return widget.viewport()->rect().contains(cell.center());
  };
  EXPECT_FALSE(isShown(1));
  EXPECT_TRUE(
      widget.selectMatch(QStringLiteral("mail"), qt::SearchStart::atEdge, qt::SearchDirection::forward));
  EXPECT_TRUE(isShown(1));
}

}  // namespace
}  // namespace pelmarix::test
