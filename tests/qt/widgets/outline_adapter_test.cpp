#include "qt/widgets/outline_adapter.h"

#include <gmock/gmock.h>

#include <QClipboard>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>

#include "tests/qt/widgets/paintings.h"
#include "tests/qt/widgets/pictures.h"
#include "tests/qt/widgets/tree_fixture.h"

namespace pelmarix::test {
namespace {

using testing::ElementsAre;

class OutlineAdapter : public OutlineOfATree {
 protected:
  void doubleClick(const QModelIndex& index) {
    const QPoint place = widget.visualRect(index).center();
    QTest::mouseClick(widget.viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(widget.viewport(), Qt::LeftButton, {}, place);
  }
};

TEST_F(OutlineAdapter, MakesTheCellsOfItsTemplatesOnly) {
  EXPECT_NE(dynamic_cast<platform::TableCellView*>(outline.makeViewWithIdentifier("NameCell")), nullptr);
  EXPECT_EQ(outline.makeViewWithIdentifier("VersionCell"), nullptr);
}

TEST_F(OutlineAdapter, StartsACellWithAnEmptyText) {
  tree.groups.front()->name.clear();
  reload();
  EXPECT_EQ(text(group(2)), "Catalina");
  EXPECT_EQ(text(group(0)), "");
}

TEST_F(OutlineAdapter, TellsTheActionWhichItemWasDoubleClicked) {
  std::vector<platform::Object*> clicked;
  outline.setDoubleAction([&] { clicked.push_back(outline.itemAtClickedRow()); });
  outline.expandItem(mojave.get());
  doubleClick(group(0));
  doubleClick(entry(0, 2));
  doubleClick(group(2));
  EXPECT_THAT(clicked, ElementsAre(mojave.get(), mojave->children[2].get(), catalina.get()));
  EXPECT_EQ(outline.itemAtClickedRow(), nullptr);
}

TEST_F(OutlineAdapter, TellsTheSelectedItem) {
  EXPECT_EQ(outline.selectedItem(), nullptr);
  outline.expandItem(mojave.get());
  widget.setCurrentIndex(group(2));
  EXPECT_EQ(outline.selectedItem(), catalina.get());
  QTest::mouseClick(widget.viewport(), Qt::LeftButton, Qt::ControlModifier,
                    widget.visualRect(entry(0, 1)).center());
  EXPECT_EQ(outline.selectedItem(), mojave->children[1].get()) << "two are selected";
  QTest::mouseClick(widget.viewport(), Qt::LeftButton, Qt::ControlModifier,
                    widget.visualRect(entry(0, 1)).center());
  EXPECT_EQ(outline.selectedItem(), catalina.get()) << "the current row isn't selected";
}

TEST_F(OutlineAdapter, SelectsAnEntryOfAGroupThatIsClosedAndBringsItIntoView) {
  tree.addGroup("Long", std::vector<std::string>(200, "Entry"));
  reload();
  widget.selectAll();
  outline.selectChildOfItem(150, tree.groups.back().get());
  EXPECT_TRUE(outline.isItemExpanded(tree.groups.back().get()));
  EXPECT_FALSE(outline.isItemExpanded(mojave.get()));
  EXPECT_EQ(widget.selectionModel()->selectedRows(), QModelIndexList{entry(3, 150)});
  EXPECT_EQ(outline.selectedItem(), tree.groups.back()->children[150].get());
  EXPECT_EQ(widget.currentIndex(), entry(3, 150));
  EXPECT_TRUE(widget.viewport()->rect().contains(widget.visualRect(entry(3, 150)).center()));
}

TEST_F(OutlineAdapter, KeepsItsSelectionWhereThereIsNoSuchEntry) {
  outline.selectChildOfItem(1, mojave.get());
  outline.selectChildOfItem(3, mojave.get());
  outline.selectChildOfItem(0, empty.get());
  EXPECT_EQ(outline.selectedItem(), mojave->children[1].get());
}

TEST_F(OutlineAdapter, HasTheDatesNearTheNamesInAWideWindow) {
  const int dates = widget.columnWidth(1);
  widget.resize(1600, 400);
  QApplication::processEvents();
  const QString longName = QStringLiteral("Incompatible Kernel Extension Configuration Data");
  EXPECT_GE(widget.columnWidth(0),
            widget.visualRect(entry(0, 0)).left() + widget.fontMetrics().horizontalAdvance(longName));
  EXPECT_LT(widget.columnWidth(0), 800);
  EXPECT_EQ(widget.columnWidth(1), dates);
  EXPECT_EQ(widget.columnWidth(0) + dates + widget.columnWidth(2), widget.viewport()->width());
}

TEST_F(OutlineAdapter, CutsNamesAndThenScrollsSidewaysWhereThereIsLittleRoom) {
  const auto charactersWidth = [this](int count) {
    return widget.fontMetrics().horizontalAdvance(QString(count, QLatin1Char('0')));
  };
  const auto resizeForNames = [&](int width) {
    const int others =
        widget.columnWidth(1) + widget.fontMetrics().horizontalAdvance(QStringLiteral("something else "));
    widget.resize(others + width + 2 * widget.frameWidth(), 400);
    QApplication::processEvents();
  };
  resizeForNames(charactersWidth(35));
  EXPECT_GE(widget.columnWidth(0), charactersWidth(30));
  EXPECT_LE(widget.columnWidth(0), charactersWidth(35));
  EXPECT_EQ(widget.horizontalScrollBar()->maximum(), 0);
  resizeForNames(charactersWidth(15));
  EXPECT_GE(widget.columnWidth(0) - widget.visualRect(entry(0, 0)).left(), charactersWidth(22));
  EXPECT_GT(widget.horizontalScrollBar()->maximum(), 0);
}

TEST_F(OutlineAdapter, GoesToItsEndsAndByPages) {
  tree.groups.clear();
  for (int i = 0; i < 10; ++i) tree.addGroup("Group", std::vector<std::string>(20, "Entry"));
  reload();
  widget.expandAll();
  const auto rowAfter = [this](Qt::Key key) {
    QTest::keyClick(&widget, key);
    EXPECT_TRUE(widget.selectionModel()->isSelected(widget.currentIndex()));
    return widget.currentIndex();
  };
  widget.setCurrentIndex(entry(5, 5));
  EXPECT_EQ(rowAfter(Qt::Key_End), entry(9, 19));
  EXPECT_EQ(rowAfter(Qt::Key_Home), group(0));
  EXPECT_NE(rowAfter(Qt::Key_PageDown).parent(), QModelIndex());
  EXPECT_EQ(rowAfter(Qt::Key_PageUp), group(0));
}

TEST_F(OutlineAdapter, CopiesNamesWithoutTheirIndentation) {
  outline.expandItem(catalina.get());
  widget.selectAll();
  widget.copyNames();
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
            "Mojave\nNothing followed\nCatalina\nmacOS Catalina\nWord List");
}

TEST_F(OutlineAdapter, TellsWhetherThereAreGroupsToExpandAndToCollapse) {
  bool canExpand = false;
  bool canCollapse = true;
  QObject::connect(&widget, &qt::OutlineWidget::canExpandChanged, [&](bool can) { canExpand = can; });
  QObject::connect(&widget, &qt::OutlineWidget::canCollapseChanged, [&](bool can) { canCollapse = can; });
  const auto told = [&] { return std::pair(canExpand, canCollapse); };
  reload();
  mojave->children.resize(2);
  reload();
  EXPECT_EQ(told(), std::pair(true, false));
  widget.expand(group(0));
  EXPECT_EQ(told(), std::pair(true, true));
  widget.expandAll();
  EXPECT_EQ(told(), std::pair(false, true)) << "the group without entries can't expand";
  widget.collapse(group(2));
  EXPECT_EQ(told(), std::pair(true, true));
  widget.collapseAll();
  EXPECT_EQ(told(), std::pair(true, false));
  tree.groups.clear();
  reload();
  EXPECT_EQ(told(), std::pair(false, false));
}

TEST_F(OutlineAdapter, TellsTheRowThatWasFoundWithoutItsIndentation) {
  widget.selectMatch(QStringLiteral("word"), qt::SearchStart::atSelection, qt::SearchDirection::forward);
  EXPECT_EQ(widget.selectedMatchInWords().toStdString(),
            "Word List, What \tWord List is, with the rest of its row");
}

TEST_F(OutlineAdapter, SendsTheActionWithoutAnItemForADoubleClickBelowTheLastRow) {
  std::vector<platform::Object*> clicked;
  outline.setDoubleAction([&] { clicked.push_back(outline.itemAtClickedRow()); });
  QTest::mouseDClick(widget.viewport(), Qt::LeftButton, {}, widget.viewport()->rect().bottomLeft());
  EXPECT_THAT(clicked, ElementsAre(nullptr));
}

TEST_F(OutlineAdapter, SendsNoActionForADoubleClickOfAnotherButton) {
  int actions = 0;
  outline.setDoubleAction([&] { ++actions; });
  for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton, Qt::BackButton}) {
    for (const QPoint place :
         {widget.visualRect(group(0)).center(), widget.viewport()->rect().bottomLeft()}) {
      QTest::mouseClick(widget.viewport(), button, {}, place);
      QTest::mouseDClick(widget.viewport(), button, {}, place);
      QTest::mouseRelease(widget.viewport(), button, {}, place);
    }
  }
  EXPECT_EQ(actions, 0);
}

TEST_F(OutlineAdapter, OpensAGroupByAClickOnItsArrowWithTheLeftButtonOnly) {
  const QRect row = widget.visualRect(group(0));
  const QPoint arrow(row.left() - widget.indentation() / 2, row.center().y());
  for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton, Qt::BackButton}) {
    QTest::mouseClick(widget.viewport(), button, {}, arrow);
    EXPECT_FALSE(widget.isExpanded(group(0))) << button;
  }
  QTest::mouseClick(widget.viewport(), Qt::LeftButton, {}, arrow);
  EXPECT_TRUE(widget.isExpanded(group(0)));
}

TEST_F(OutlineAdapter, SelectsARowByARightClickFromItsFirstPixelOn) {
  const QRect row = widget.visualRect(group(0));
  QTest::mouseClick(widget.viewport(), Qt::RightButton, {}, {row.left() - 1, row.center().y()});
  EXPECT_EQ(outline.selectedItem(), nullptr) << "that is its arrow's";
  QTest::mouseClick(widget.viewport(), Qt::RightButton, {}, {row.left(), row.center().y()});
  EXPECT_EQ(outline.selectedItem(), mojave.get());
}

TEST_F(OutlineAdapter, TellsTheActionWhichItemWasDoubleClickedWhicheverKeysAreHeldDown) {
  std::vector<platform::Object*> clicked;
  outline.setDoubleAction([&] { clicked.push_back(outline.itemAtClickedRow()); });
  const QPoint place = widget.visualRect(group(2)).center();
  for (const auto keys : {Qt::ControlModifier, Qt::ShiftModifier}) {
    widget.selectAll();
    QTest::mouseClick(widget.viewport(), Qt::LeftButton, keys, place);
    QTest::mouseDClick(widget.viewport(), Qt::LeftButton, keys, place);
    QTest::mouseRelease(widget.viewport(), Qt::LeftButton, keys, place);
  }
  EXPECT_THAT(clicked, ElementsAre(catalina.get(), catalina.get()));
}

TEST_F(OutlineAdapter, LeavesExpandingOnADoubleClickToTheAction) {
  doubleClick(group(0));
  EXPECT_FALSE(outline.isItemExpanded(mojave.get()));
}

TEST_F(OutlineAdapter, ExpandsAndCollapsesItems) {
  EXPECT_FALSE(outline.isItemExpanded(mojave.get()));
  outline.expandItem(mojave.get());
  EXPECT_TRUE(outline.isItemExpanded(mojave.get()));
  EXPECT_FALSE(outline.isItemExpanded(catalina.get()));
  outline.collapseItem(mojave.get());
  EXPECT_FALSE(outline.isItemExpanded(mojave.get()));
  outline.expandItem(nullptr);
  EXPECT_FALSE(outline.isItemExpanded(nullptr));
}

TEST_F(OutlineAdapter, AsksForCellsAnewOnReload) {
  mojave->name = "Mojave again";
  reload();
  EXPECT_EQ(text(group(0)), "Mojave again");
}

TEST_F(OutlineAdapter, KeepsEverythingInPlaceOnAReloadOfTheSameItems) {
  outline.expandItem(mojave.get());
  widget.setCurrentIndex(entry(0, 2));
  const QPersistentModelIndex current = widget.currentIndex();
  reload();
  EXPECT_TRUE(outline.isItemExpanded(mojave.get()));
  EXPECT_TRUE(current.isValid());
  EXPECT_EQ(widget.currentIndex(), current);
  EXPECT_TRUE(widget.selectionModel()->isSelected(current));
}

TEST_F(OutlineAdapter, ForgetsWhatIsGoneAfterAReload) {
  widget.setCurrentIndex(group(0));
  outline.expandItem(mojave.get());
  tree.groups.clear();
  reload();
  EXPECT_EQ(widget.model()->rowCount(), 0);
  EXPECT_FALSE(widget.selectionModel()->hasSelection());
  EXPECT_FALSE(outline.isItemExpanded(mojave.get()));
}

TEST_F(OutlineAdapter, GivesTheNamesOfGroupsWithEntriesTheWholeRow) {
  const auto spanned = [this] {
    std::vector<bool> rows;
    for (int row = 0; row < widget.model()->rowCount(); ++row)
      rows.push_back(widget.isFirstColumnSpanned(row, {}));
    return rows;
  };
  EXPECT_THAT(spanned(), ElementsAre(true, false, true));
  tree.groups.erase(tree.groups.begin());
  reload();
  EXPECT_THAT(spanned(), ElementsAre(false, true));
}

TEST_F(OutlineAdapter, IsDrawnAnewOnAReloadOfTheSameItems) {
  Paintings paintings(*widget.viewport());
  EXPECT_TRUE(paintings.follow([this] { reload(); }));
  EXPECT_FALSE(paintings.follow([] {}));
}

TEST_F(OutlineAdapter, HasItsNewRowsInPlaceOfTheOldOnesAtOnceAfterAReload) {
  const QPoint first = widget.visualRect(group(0)).center();
  tree.groups.erase(tree.groups.begin());
  reload();
  EXPECT_EQ(text(widget.indexAt(first)), "Nothing followed");
  tree.groups.clear();
  reload();
  EXPECT_FALSE(widget.indexAt(first).isValid());
}

TEST_F(OutlineAdapter, HasAFrameAroundAllOfTheRowThatTheKeyboardIsAt) {
  widget.activateWindow();
  widget.setFocus();
  ASSERT_TRUE(QTest::qWaitFor([this] { return widget.hasFocus(); }));
  outline.expandItem(mojave.get());
  const auto pictureAt = [this](int row) {
    widget.selectionModel()->setCurrentIndex(entry(0, row), QItemSelectionModel::NoUpdate);
    return widget.viewport()->grab().toImage();
  };
  const QRect changed = changedPart(pictureAt(0), pictureAt(2));
  EXPECT_LE(changed.left(), widget.visualRect(entry(0, 0)).left());
  EXPECT_GE(changed.right(), widget.visualRect(entry(0, 0).siblingAtColumn(2)).right() - 1);
}

TEST_F(OutlineAdapter, StaysScrolledToItsPlaceOnAReloadOfTheSameItems) {
  for (int i = 0; i < 200; ++i) tree.addGroup("Group", {"Entry"});
  reload();
  widget.scrollTo(group(100), QAbstractItemView::PositionAtTop);
  reload();
  EXPECT_EQ(widget.indexAt({0, 0}).row(), 100);
}

TEST_F(OutlineAdapter, TellsTheItemThatWasDoubleClickedInAViewThatIsScrolled) {
  for (int i = 0; i < 200; ++i) tree.addGroup("Group", {"Entry"});
  reload();
  outline.expandItem(mojave.get());
  widget.scrollTo(group(100), QAbstractItemView::PositionAtTop);
  std::vector<platform::Object*> clicked;
  outline.setDoubleAction([&] { clicked.push_back(outline.itemAtClickedRow()); });
  doubleClick(group(101));
  EXPECT_THAT(clicked, ElementsAre(tree.groups[101].get()));
}

TEST_F(OutlineAdapter, RevealsTheLastGroup) {
  for (int i = 0; i < 200; ++i) tree.addGroup("Group", std::vector<std::string>(100, "Entry"));
  reload();
  outline.revealLastGroup();
  QApplication::processEvents();
  EXPECT_TRUE(widget.isExpanded(group(202)));
  EXPECT_EQ(widget.indexAt({0, 0}), group(202));
  EXPECT_EQ(widget.currentIndex(), group(202));
  EXPECT_FALSE(widget.selectionModel()->hasSelection());
}

TEST_F(OutlineAdapter, GoesToTheRowWhoseNameIsTypedFromAnEntryThatACollapsedGroupHides) {
  outline.expandItem(mojave.get());
  widget.setCurrentIndex(entry(0, 0));
  outline.collapseItem(mojave.get());
  QTest::keyClicks(&widget, QStringLiteral("ca"));
  EXPECT_EQ(widget.currentIndex(), group(2));
}

TEST_F(OutlineAdapter, StaysWhereItIsWhenOnlyHiddenEntriesBeginWithWhatIsTyped) {
  outline.expandItem(mojave.get());
  widget.setCurrentIndex(entry(0, 0));
  outline.collapseItem(mojave.get());
  QTest::keyClicks(&widget, QStringLiteral("rosetta 2"));
  EXPECT_EQ(widget.currentIndex(), entry(0, 0));
  EXPECT_FALSE(outline.isItemExpanded(mojave.get()));
}

TEST_F(OutlineAdapter, FindsTextInEntriesThatCollapsedGroupsHideInBothDirections) {
  using enum qt::SearchStart;
  using enum qt::SearchDirection;
  const auto found = [this](qt::SearchDirection direction) {
    EXPECT_TRUE(widget.selectMatch(QStringLiteral("o"), pastSelection, direction));
    EXPECT_TRUE(widget.currentIndex().parent() == QModelIndex() ||
                widget.isExpanded(widget.currentIndex().parent()));
    return text(widget.currentIndex());
  };
  // From the first group, which has the letter, too.
  const std::vector<std::string> others{"macOS Mojave", "Rosetta", "Nothing followed", "macOS Catalina",
                                        "\tWord List"};
  for (const std::string& row : others) EXPECT_EQ(found(forward), row);
  EXPECT_EQ(found(forward), "Mojave");
  widget.collapseAll();
  for (auto row = others.rbegin(); row != others.rend(); ++row) EXPECT_EQ(found(backward), *row);
  EXPECT_EQ(found(backward), "Mojave");
  tree.addGroup("One", {"Needle"});
  reload();
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("needle"), pastSelection, forward));
  EXPECT_EQ(widget.currentIndex(), entry(3, 0)) << "that is alone in its group";
}

TEST_F(OutlineAdapter, CopiesTheSelectedRowsOfAllGroupsAsTheyStandAndLeavesTheClipboardWithNoneSelected) {
  QApplication::clipboard()->setText(QStringLiteral("before"));
  widget.copy();
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "before");
  widget.expandAll();
  QItemSelectionModel& selection = *widget.selectionModel();
  constexpr auto add = QItemSelectionModel::Select | QItemSelectionModel::Rows;
  selection.select(entry(2, 1), add);
  selection.select(group(2), add);
  selection.select(QItemSelection(entry(0, 1), entry(0, 2)), add);
  selection.select(group(0), add);
  widget.copy();
  reload();
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
            "Mojave\t\t\nSecurity Update\t\t\nRosetta\t\t\nCatalina\t\t\n Word List\t\t\n");
  widget.selectAll();
  widget.copy();
  EXPECT_EQ(QApplication::clipboard()->text().count(QLatin1Char('\n')), 8);
}

TEST_F(OutlineAdapter, DragsRowsOutAsItCopiesThem) {
  const std::unique_ptr<QMimeData> dragged(widget.model()->mimeData({entry(2, 0), entry(2, 1)}));
  EXPECT_EQ(dragged->text().toStdString(), "macOS Catalina\t\t\n Word List\t\t\n");
}

TEST_F(OutlineAdapter, HasNothingToRevealWhenItIsEmpty) {
  tree.groups.clear();
  reload();
  outline.revealLastGroup();
  EXPECT_FALSE(widget.currentIndex().isValid());
}

}  // namespace
}  // namespace pelmarix::test
