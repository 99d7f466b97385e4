#include <gmock/gmock.h>

#include "tests/support/fatal_stop.h"
#include "tests/ui/echoing_lister.h"
#include "tests/ui/main_window_fixture.h"
#include "ui/bom_over_view_controller.h"

namespace pelmarix::test {
namespace {

using testing::IsEmpty;
using testing::IsNull;
using testing::NotNull;

class ReceiptsTable : public MainWindow {
 protected:
  ReceiptsTable() {
    services.services.makePipe = [this] { return std::make_unique<EchoingPipe>(listed); };
    services.services.makeTask = [this] { return std::make_unique<EchoingTask>(listed, canStart); };
    addReceipt("old", "2018-01-01T00:00:00Z");
    addReceipt("new", "2019-03-26T10:11:12Z");
    controller.viewDidLoad();
  }

  std::string cell(const platform::TableColumn* column, std::ptrdiff_t row) {
    if (controller.tableViewViewForTableColumnRow(table, column, row) == nullptr) return "no view";
    EXPECT_FALSE(table.cells.isSizedToFit);
    return table.cells.lastIdentifier + "=" + table.cells.lastText.value_or("no text");
  }

  std::vector<std::string> listed;
  bool canStart = true;
  ui::BoMoverViewController sheet;
  platform::Segue segue{sheet};
};

TEST_F(ReceiptsTable, HasARowForEachReceipt) {
  EXPECT_EQ(controller.numberOfRowsInTableView(table), 2);
  EXPECT_EQ(controller.tableViewObjectValueForTableColumnRow(table, &table.first, 0),
            controller.boms.children[0].get());
  EXPECT_EQ(controller.tableViewObjectValueForTableColumnRow(table, nullptr, 1),
            controller.boms.children[1].get());
  EXPECT_THAT(controller.tableViewObjectValueForTableColumnRow(table, &table.first, 2), IsNull());
  EXPECT_THAT(controller.tableViewObjectValueForTableColumnRow(table, &table.first, -1), IsNull());
}

TEST_F(ReceiptsTable, KnowsItsColumnsByTheirPlaces) {
  EXPECT_EQ(cell(&table.first, 0), "DateCell=2019-03-26 10:11:12 +0000");
  EXPECT_EQ(cell(&table.second, 0), "NameCell=new");
  EXPECT_EQ(cell(&table.second, 1), "NameCell=old");
  EXPECT_EQ(cell(&table.third, 0), "no view");
  EXPECT_EQ(cell(nullptr, 0), "no view");
  const platform::TableColumn sameIdentifier("a");
  EXPECT_EQ(cell(&sameIdentifier, 0), "no view");
  EXPECT_EQ(cell(&table.first, 2), "no view");
  EXPECT_EQ(cell(&table.first, -1), "no view");
}

TEST_F(ReceiptsTable, WithFewerColumnsHasNoViewForTheOthers) {
  table.columns = {&table.first, &table.second};
  EXPECT_EQ(cell(&table.second, 0), "NameCell=new");
  EXPECT_EQ(cell(&table.third, 0), "no view");
  table.columns = {&table.first};
  EXPECT_EQ(cell(&table.first, 0), "DateCell=2019-03-26 10:11:12 +0000");
  EXPECT_EQ(cell(&table.second, 0), "no view");
  table.columns = {};
  EXPECT_EQ(cell(&table.first, 0), "no view");
}

TEST_F(ReceiptsTable, HasNoViewWhereNoCellCanBeMade) {
  table.cells.missing = {"DateCell"};
  table.cells.notCells = {"NameCell"};
  EXPECT_EQ(cell(&table.first, 0), "no view");
  EXPECT_EQ(cell(&table.second, 0), "no view");
}

TEST_F(ReceiptsTable, LeavesACellWithoutATextFieldAsItIs) {
  table.cells.textFieldless = {"DateCell"};
  EXPECT_THAT(controller.tableViewViewForTableColumnRow(table, &table.first, 0), NotNull());
  EXPECT_EQ(table.cells.lastText, std::nullopt);
}

TEST_F(ReceiptsTable, WithoutReceiptsHasNoRowsAndRunsNoLister) {
  controller.boms.children.clear();
  EXPECT_EQ(controller.numberOfRowsInTableView(table), 0);
  EXPECT_THAT(controller.tableViewObjectValueForTableColumnRow(table, &table.first, 0), IsNull());
  EXPECT_EQ(cell(&table.first, 0), "no view");
  table.selected = 0;
  controller.prepareForSegue(segue, nullptr);
  EXPECT_THAT(listed, IsEmpty());
  EXPECT_EQ(*sheet.theOutText, "");
}

TEST_F(ReceiptsTable, GivesTheSheetTheListingOfTheSelectedReceipt) {
  table.selected = 1;
  controller.prepareForSegue(segue, nullptr);
  EXPECT_THAT(listed, testing::ElementsAre("/System/Library/Receipts/old.bom"));
  EXPECT_EQ(*sheet.theOutText, "/System/Library/Receipts/old.bom\n");
}

TEST_F(ReceiptsTable, ListsTheReceiptThatTheReversedTableShowsInTheRow) {
  newestLast.value = platform::stateOn;
  controller.newestNonCheckbox(nullptr);
  EXPECT_EQ(cell(&table.second, 0), "NameCell=old");
  table.selected = 0;
  controller.prepareForSegue(segue, nullptr);
  EXPECT_THAT(listed, testing::ElementsAre("/System/Library/Receipts/old.bom"));
}

TEST_F(ReceiptsTable, WithoutASelectedRowRunsNoListerAndLeavesTheSheetEmpty) {
  controller.prepareForSegue(segue, nullptr);
  EXPECT_THAT(listed, IsEmpty());
  EXPECT_EQ(*sheet.theOutText, "");
  EXPECT_FALSE(sheet.representedObject().has_value());
}

TEST_F(ReceiptsTable, PassesOnThatTheListerCannotBeStarted) {
  canStart = false;
  table.selected = 0;
  EXPECT_THROW(controller.prepareForSegue(segue, nullptr), platform::TaskLaunchError);
  EXPECT_EQ(*sheet.theOutText, "");
  EXPECT_THAT(services.alerts, IsEmpty());
}

TEST_F(ReceiptsTable, StopsTheProgramAtARowBeyondTheListAndAtAnotherDestination) {
  table.selected = 2;
  EXPECT_FATAL_STOP(controller.prepareForSegue(segue, nullptr));
  table.selected = 0;
  platform::ViewController other;
  platform::Segue elsewhere(other);
  EXPECT_FATAL_STOP(controller.prepareForSegue(elsewhere, nullptr));
}

TEST_F(ReceiptsTable, LetsASegueElsewherePassWithoutASelectedRow) {
  platform::ViewController other;
  platform::Segue elsewhere(other);
  controller.prepareForSegue(elsewhere, nullptr);
  EXPECT_THAT(listed, IsEmpty());
}

}  // namespace
}  // namespace pelmarix::test
