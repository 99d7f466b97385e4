#include <gmock/gmock.h>

#include "tests/support/fatal_stop.h"
#include "tests/ui/main_window_fixture.h"

namespace pelmarix::test {
namespace {

using testing::NotNull;

class HistoryOutline : public MainWindow {
 protected:
  HistoryOutline() {
    group->children = {std::make_shared<HistoryItem>("macOS Mojave", "10.14", Date{575287872}, 0),
                       std::make_shared<HistoryItem>("Rosetta", "2", Date{0}, 3),
                       std::make_shared<HistoryItem>("Core Suggestions", "1", Date{0}, 4)};
    controller.histories = {group, emptyGroup};
  }

  /// The cell that is made, as "IDENTIFIER=TEXT".
  std::string cell(platform::Object* item, const platform::TableColumn* column) {
    if (controller.outlineViewViewForTableColumnItem(outline, column, item) == nullptr) return "no view";
    EXPECT_TRUE(outline.cells.isSizedToFit);
    return outline.cells.lastIdentifier + "=" + outline.cells.lastText.value_or("no text");
  }
  platform::Object* child(std::size_t index) { return group->children[index].get(); }

  std::shared_ptr<History> group = std::make_shared<History>("macOS Mojave 10.14");
  std::shared_ptr<History> emptyGroup = std::make_shared<History>("macOS 10.15 10.15");
  platform::TableColumn name{"NameColumn"}, date{"DateColumn"}, version{"VersionColumn"}, other{"namecolumn"};
  platform::Object stranger;
};

TEST_F(HistoryOutline, HasAGroupForEachHistoryAndItsEntriesBelowIt) {
  EXPECT_EQ(controller.outlineViewNumberOfChildrenOfItem(outline, nullptr), 2);
  EXPECT_EQ(controller.outlineViewNumberOfChildrenOfItem(outline, group.get()), 3);
  EXPECT_EQ(controller.outlineViewNumberOfChildrenOfItem(outline, emptyGroup.get()), 0);
  EXPECT_EQ(controller.outlineViewChildOfItem(outline, 1, nullptr), emptyGroup.get());
  EXPECT_EQ(controller.outlineViewChildOfItem(outline, 2, group.get()), child(2));
}

TEST_F(HistoryOutline, TakesAnyOtherItemForTheRoot) {
  EXPECT_EQ(controller.outlineViewNumberOfChildrenOfItem(outline, child(0)), 2);
  EXPECT_EQ(controller.outlineViewNumberOfChildrenOfItem(outline, &stranger), 2);
  EXPECT_EQ(controller.outlineViewChildOfItem(outline, 0, child(0)), group.get());
}

TEST_F(HistoryOutline, StopsTheProgramAtAnIndexOutOfRange) {
  EXPECT_FATAL_STOP(controller.outlineViewChildOfItem(outline, 2, nullptr));
  EXPECT_FATAL_STOP(controller.outlineViewChildOfItem(outline, -1, nullptr));
  EXPECT_FATAL_STOP(controller.outlineViewChildOfItem(outline, 0, emptyGroup.get()));
}

TEST_F(HistoryOutline, ExpandsOnlyGroupsWithEntries) {
  EXPECT_TRUE(controller.outlineViewIsItemExpandable(outline, group.get()));
  EXPECT_FALSE(controller.outlineViewIsItemExpandable(outline, emptyGroup.get()));
  EXPECT_FALSE(controller.outlineViewIsItemExpandable(outline, child(0)));
  EXPECT_FALSE(controller.outlineViewIsItemExpandable(outline, &stranger));
  EXPECT_FALSE(controller.outlineViewIsItemExpandable(outline, nullptr));
}

TEST_F(HistoryOutline, WithoutHistoryHasNoRowsAndNothingToExpand) {
  controller.histories.clear();
  EXPECT_EQ(controller.outlineViewNumberOfChildrenOfItem(outline, nullptr), 0);
  EXPECT_FALSE(controller.outlineViewIsItemExpandable(outline, nullptr));
}

TEST_F(HistoryOutline, ShowsAGroupsNameAndEmptyCellsBesideIt) {
  EXPECT_EQ(cell(group.get(), &name), "NameCell=macOS Mojave 10.14");
  EXPECT_EQ(cell(group.get(), &date), "DateCell=");
  EXPECT_EQ(cell(group.get(), &version), "VersionCell=");
  EXPECT_EQ(cell(group.get(), &other), "no view");
  EXPECT_EQ(cell(group.get(), nullptr), "no view");
}

TEST_F(HistoryOutline, ShowsAnEntrysNameDateAndVersion) {
  EXPECT_EQ(cell(child(0), &name), "NameItemCell=macOS Mojave");
  EXPECT_EQ(cell(child(0), &date), "DateCell=2019-03-26 10:11:12 +0000");
  EXPECT_EQ(cell(child(0), &version), "VersionCell=10.14");
  EXPECT_EQ(cell(child(0), &other), "NameItemCell=macOS Mojave");
  EXPECT_EQ(cell(child(0), nullptr), "NameItemCell=macOS Mojave");
}

TEST_F(HistoryOutline, SetsConfigurationDataApartByATab) {
  EXPECT_EQ(cell(child(1), &name), "NameItemCell=Rosetta");
  EXPECT_EQ(cell(child(2), &name), "NameItemCell=\tCore Suggestions");
  EXPECT_EQ(cell(child(2), &version), "VersionCell=1");
}

TEST_F(HistoryOutline, HasNoViewForOtherItems) {
  EXPECT_EQ(cell(&stranger, &name), "no view");
  EXPECT_EQ(cell(nullptr, &name), "no view");
}

TEST_F(HistoryOutline, HasNoViewWhereNoCellCanBeMade) {
  outline.cells.missing = {"NameCell"};
  outline.cells.notCells = {"DateCell"};
  EXPECT_EQ(cell(group.get(), &name), "no view");
  EXPECT_EQ(cell(group.get(), &date), "no view");
}

TEST_F(HistoryOutline, LeavesACellWithoutATextFieldAsItIs) {
  outline.cells.textFieldless = {"NameCell"};
  EXPECT_THAT(controller.outlineViewViewForTableColumnItem(outline, &name, group.get()), NotNull());
  EXPECT_EQ(outline.cells.lastText, std::nullopt);
}

TEST_F(HistoryOutline, TellsOfAnEntryWhatItIs) {
  EXPECT_EQ(controller.outlineViewToolTipForItem(outline, child(0)), "system install or upgrade, 10.14");
  EXPECT_EQ(controller.outlineViewToolTipForItem(outline, child(2)), "configuration data, 1");
  const auto withoutVersion = std::make_shared<HistoryItem>("MRTConfigData", "", Date{0}, 2);
  EXPECT_EQ(controller.outlineViewToolTipForItem(outline, withoutVersion.get()), "security data");
}

TEST_F(HistoryOutline, TellsOfAGroupHowManyEntriesItHas) {
  EXPECT_EQ(controller.outlineViewToolTipForItem(outline, group.get()), "3 entries");
  EXPECT_EQ(controller.outlineViewAccessibilityDescriptionForItem(outline, group.get()), "3 entries");
  group->children.resize(1);
  EXPECT_EQ(controller.outlineViewToolTipForItem(outline, group.get()), "1 entry");
  EXPECT_EQ(controller.outlineViewToolTipForItem(outline, emptyGroup.get()), "");
}

TEST_F(HistoryOutline, TellsOfTheGroupWithoutASystemInstallThatNoneWasRecognised) {
  History listing("Listing 0");
  EXPECT_EQ(controller.outlineViewToolTipForItem(outline, &listing), "No system install was recognised");
  listing.children = group->children;
  EXPECT_EQ(controller.outlineViewToolTipForItem(outline, &listing),
            "3 entries, no system install was recognised");
}

TEST_F(HistoryOutline, TellsAScreenReaderTheDateOfAnEntryToo) {
  EXPECT_EQ(controller.outlineViewAccessibilityDescriptionForItem(outline, child(0)),
            "system install or upgrade, 10.14, 2019-03-26 10:11:12 +0000");
}

TEST_F(HistoryOutline, TellsNothingOfOtherItems) {
  EXPECT_EQ(controller.outlineViewToolTipForItem(outline, &stranger), "");
  EXPECT_EQ(controller.outlineViewAccessibilityDescriptionForItem(outline, nullptr), "");
}

class DoubleClick : public HistoryOutline {
 protected:
  void doubleClick(platform::Object* item) {
    outline.clicked = item;
    controller.doubleClickedItem(&outline);
  }
};

TEST_F(DoubleClick, OnAGroupExpandsItAndThenCollapsesIt) {
  doubleClick(group.get());
  EXPECT_TRUE(outline.expanded.contains(group.get()));
  doubleClick(group.get());
  EXPECT_FALSE(outline.expanded.contains(group.get()));
  EXPECT_EQ(outline.reloads, 2);
}

TEST_F(DoubleClick, OnAnEntryLeavesEveryGroupAsItWas) {
  outline.expanded = {group.get()};
  doubleClick(child(0));
  EXPECT_THAT(outline.expanded, testing::ElementsAre(group.get()));
  EXPECT_EQ(outline.reloads, 1);
}

TEST_F(DoubleClick, BelowTheLastRowChangesNothingButReloads) {
  doubleClick(nullptr);
  EXPECT_THAT(outline.expanded, testing::IsEmpty());
  EXPECT_EQ(outline.reloads, 1);
}

TEST_F(DoubleClick, FromAnotherSenderStopsTheProgram) {
  EXPECT_FATAL_STOP(controller.doubleClickedItem(&stranger));
}

}  // namespace
}  // namespace pelmarix::test
