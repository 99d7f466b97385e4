#include "qt/widgets/outline_model.h"

#include <gmock/gmock.h>

#include <QMimeData>
#include <memory>

#include "tests/qt/widgets/tree_fixture.h"

namespace pelmarix::test {
namespace {

using OutlineModel = OutlineOfATree;

TEST_F(OutlineModel, HasTheDataSourcesItemsAsRows) {
  ASSERT_EQ(widget.model()->rowCount(), 3);
  EXPECT_EQ(text(group(0)), "Mojave");
  EXPECT_EQ(text(group(2)), "Catalina");
  ASSERT_EQ(widget.model()->rowCount(group(0)), 3);
  EXPECT_EQ(text(entry(0, 1)), "Security Update");
}

TEST_F(OutlineModel, KnowsTheParentOfEachRow) {
  EXPECT_EQ(entry(2, 1).parent(), group(2));
  EXPECT_FALSE(group(2).parent().isValid());
}

TEST_F(OutlineModel, HasNoRowsBelowAnItemThatIsNotExpandableWhateverTheDataSourceCounts) {
  EXPECT_EQ(widget.model()->rowCount(group(1)), 0);
  EXPECT_FALSE(widget.model()->hasChildren(group(1)));
  EXPECT_EQ(widget.model()->rowCount(entry(0, 0)), 0);
  EXPECT_TRUE(entry(0, 0).flags().testFlag(Qt::ItemNeverHasChildren));
  EXPECT_FALSE(group(0).flags().testFlag(Qt::ItemNeverHasChildren));
  tree.addGroup("One", {"Entry"});
  reload();
  EXPECT_FALSE(group(3).flags().testFlag(Qt::ItemNeverHasChildren));
}

TEST_F(OutlineModel, HasNothingOutsideOfItsRowsAndColumns) {
  for (const auto& [row, column] : {std::pair(-1, 0), {3, 0}, {0, -1}, {0, 3}})
    EXPECT_EQ(widget.model()->index(row, column), QModelIndex()) << row << column;
  EXPECT_EQ(widget.model()->rowCount(group(0).siblingAtColumn(1)), 0);
}

TEST_F(OutlineModel, GivesTheCellsTextExactlyAsTheDelegateSetIt) {
  EXPECT_EQ(text(entry(2, 1)), "\tWord List");
}

TEST_F(OutlineModel, HasAnEmptyTextWhereTheCellsIsEmptyAndNoneWhereThereIsNoCell) {
  EXPECT_EQ(group(0).siblingAtColumn(1).data(), QVariant(QString()));
  EXPECT_EQ(group(0).siblingAtColumn(2).data(), QVariant());
}

TEST_F(OutlineModel, NamesItsColumns) {
  EXPECT_EQ(widget.model()->columnCount(), 3);
  EXPECT_EQ(widget.model()->headerData(1, Qt::Horizontal), QVariant(QStringLiteral("Date")));
  EXPECT_EQ(widget.model()->headerData(3, Qt::Horizontal), QVariant());
  EXPECT_EQ(widget.model()->headerData(0, Qt::Vertical), QVariant());
}

TEST_F(OutlineModel, TellsOfEveryCellWhatItsRowIs) {
  const auto tip = [](const QModelIndex& index) {
    return index.data(Qt::ToolTipRole).toString().toStdString();
  };
  EXPECT_EQ(tip(group(0)), "What Mojave is");
  EXPECT_EQ(tip(entry(0, 1)), "What Security Update is");
  EXPECT_EQ(tip(entry(0, 1).siblingAtColumn(2)), "What Security Update is");
}

TEST_F(OutlineModel, DescribesARowWithItsFirstCellAlone) {
  const QModelIndex first = entry(0, 1);
  EXPECT_EQ(first.data(Qt::AccessibleDescriptionRole).toString().toStdString(),
            "What Security Update is, with the rest of its row");
  EXPECT_EQ(first.siblingAtColumn(1).data(Qt::AccessibleDescriptionRole), QVariant());
  EXPECT_EQ(group(0).siblingAtColumn(1).data(Qt::AccessibleDescriptionRole), QVariant());
}

TEST_F(OutlineModel, IsEmptyUntilItIsReloaded) {
  qt::OutlineWidget other;
  qt::OutlineAdapter outlineOfOther(other, treeColumns(), tree, tree);
  EXPECT_EQ(other.model()->rowCount(), 0);
  outlineOfOther.reloadItemReloadChildren(nullptr, true);
  EXPECT_EQ(other.model()->rowCount(), 3);
}

/// 1,000 groups of 100 entries. Not under the tester, which looks at every row.
class LargeOutline : public testing::Test {
 protected:
  LargeOutline() {
    for (int i = 0; i < 1000; ++i) large.addGroup("Group", std::vector<std::string>(100, "Entry"));
    outline.reloadItemReloadChildren(nullptr, true);
    widget.resize(600, 400);
    widget.show();
    QApplication::processEvents();
  }
  QModelIndex group(int row) const { return widget.model()->index(row, 0); }
  int shownRows() const { return widget.viewport()->height() / widget.visualRect(group(0)).height() + 1; }

  Tree large;
  qt::OutlineWidget widget;
  qt::OutlineAdapter outline{widget, treeColumns(), large, large};
};

TEST_F(LargeOutline, AsksForNoCellThatIsNotOnScreen) {
  widget.expandAll();
  large.cellQuestions = 0;
  widget.viewport()->repaint();
  EXPECT_GT(large.cellQuestions, 0);
  // A cell is asked for its text once to draw it; the columns are three.
  EXPECT_LE(large.cellQuestions, 3 * shownRows());
}

TEST_F(LargeOutline, AsksForTheEntriesOfAGroupOnlyWhenItIsExpanded) {
  EXPECT_EQ(large.entryQuestions, 0);
  widget.expand(group(500));
  QApplication::processEvents();
  EXPECT_EQ(large.entryQuestions, 0) << "the group is not on screen";
  widget.expand(group(0));
  widget.viewport()->repaint();
  EXPECT_GT(large.entryQuestions, 0);
  EXPECT_LE(large.entryQuestions, 3 * shownRows()) << "one for each cell that is drawn";
}

TEST_F(OutlineModel, CopiesRowsInTheOrderOfTheViewWithTabsBetweenCells) {
  const std::unique_ptr<QMimeData> data(
      widget.model()->mimeData({entry(2, 1), group(2), entry(0, 1), entry(0, 1).siblingAtColumn(1)}));
  EXPECT_EQ(data->text().toStdString(), "Security Update\t\t\nCatalina\t\t\n Word List\t\t\n");
  EXPECT_EQ(widget.model()->mimeData({}), nullptr);
}

}  // namespace
}  // namespace pelmarix::test
