#include "ui/timeline_controller.h"

#include <gmock/gmock.h>

#include <optional>
#include <utility>
#include <vector>

#include "tests/support/fatal_stop.h"
#include "tests/ui/plain_views.h"
#include "tests/ui/timeline_fixture.h"

namespace pelmarix::test {
namespace {

using platform::Object;
using platform::TimelineMark;
using testing::ElementsAre;

class PlainTimelineView final : public platform::TimelineView {
 public:
  void reloadData() override { ++reloads; }
  void selectionDidChange(Object* item) override { selections.push_back(item); }
  int reloads = 0;
  std::vector<Object*> selections;
};

class TimelineControl : public TimelineLists {
 protected:
  TimelineControl() {
    controller.timelineView = &view;
    controller.outlineView = &outline;
    controller.receiptsTable = &table;
    addGroup("macOS Sierra 10.12");
    sierra = addEntry(0, history_type::systemInstall, "macOS Sierra", "10.12");
    addGroup("macOS Mojave 10.14");
    mojave = addEntry(1e6, history_type::systemInstall, "macOS Mojave", "10.14");
    data = addEntry(1e6, history_type::configurationData);
    addReceipt(2e6);
    receipt = addReceipt(1e6);
    controller.show(histories, boms, false);
  }
  std::vector<Object*> selectedItems() {
    std::vector<Object*> items;
    for (const TimelineMark& mark : controller.timelinePicture(scaleOf(controller.timelineSpan())).marks)
      if (mark.isSelected) items.push_back(mark.item);
    return items;
  }

  PlainTimelineView view;
  PlainOutlineView outline;
  PlainTableView table;
  ui::TimelineController controller;
  Object *sierra, *mojave, *data, *receipt;
};

TEST_F(TimelineControl, ShowsWhatItIsGivenAndHasTheViewReload) {
  EXPECT_EQ(view.reloads, 1);
  EXPECT_EQ(controller.timelineSpan().end, 2e6);
  EXPECT_EQ(controller.timelinePicture(scaleOf(controller.timelineSpan())).lanes.size(), 6);
  EXPECT_EQ(controller.timelineInWords(), timeline().inWords());
  controller.show(histories, boms, true);
  EXPECT_EQ(view.reloads, 2);
  EXPECT_EQ(controller.timelinePicture(scaleOf(controller.timelineSpan())).lanes.size(), 5);
}

TEST_F(TimelineControl, IsEmptyBeforeItShowsAnything) {
  ui::TimelineController empty;
  EXPECT_EQ(empty.timelineSpan().end - empty.timelineSpan().begin, secondsPerDay);
  EXPECT_TRUE(empty.timelinePicture(scaleOf({0, 1})).marks.empty());
  EXPECT_EQ(empty.timelineInWords(), "No entries.");
}

TEST_F(TimelineControl, SelectsAnEntryInItsGroup) {
  controller.timelineSelectItem(data);
  EXPECT_EQ(outline.selectedChild, std::pair(static_cast<Object*>(histories[1].get()), std::ptrdiff_t{1}));
  EXPECT_EQ(table.selected, -1);
  EXPECT_THAT(view.selections, ElementsAre(data));
  EXPECT_THAT(selectedItems(), ElementsAre(data));
}

TEST_F(TimelineControl, SelectsAReceiptInWhicheverOrderTheTableHasThem) {
  controller.timelineSelectItem(receipt);
  EXPECT_EQ(table.selected, 1);
  EXPECT_EQ(outline.selectedChild.first, nullptr);
  EXPECT_THAT(selectedItems(), ElementsAre(receipt));
  std::swap(boms.children[0], boms.children[1]);
  controller.timelineSelectItem(receipt);
  EXPECT_EQ(table.selected, 0);
}

TEST_F(TimelineControl, MarksWhatWasSelectedInAList) {
  controller.entrySelected(sierra);
  EXPECT_THAT(view.selections, ElementsAre(sierra));
  EXPECT_THAT(selectedItems(), ElementsAre(sierra));
  controller.entrySelected(receipt);
  EXPECT_THAT(selectedItems(), ElementsAre(receipt));
  EXPECT_EQ(outline.selectedChild.first, nullptr);
}

TEST_F(TimelineControl, MarksNothingForAGroupOrWhatIsSkipped) {
  controller.entrySelected(sierra);
  controller.entrySelected(histories[0].get());
  EXPECT_THAT(view.selections, ElementsAre(sierra, nullptr));
  EXPECT_THAT(selectedItems(), testing::IsEmpty());
  controller.show(histories, boms, true);
  controller.entrySelected(data);
  EXPECT_THAT(view.selections, ElementsAre(sierra, nullptr, nullptr));
}

TEST_F(TimelineControl, GoesOnFromTheSelectedItem) {
  const platform::TimelineScale scale = scaleOf(controller.timelineSpan());
  EXPECT_EQ(controller.timelineItemBeside(scale, platform::TimelineDirection::right), sierra);
  controller.entrySelected(sierra);
  EXPECT_EQ(controller.timelineItemBeside(scale, platform::TimelineDirection::right), mojave);
}

TEST_F(TimelineControl, TellsOfAMarkTheSelectedItem) {
  addEntry(1e6, history_type::systemInstall, "macOS Mojave", "10.14.1");
  controller.show(histories, boms, false);
  controller.entrySelected(histories[1]->children[2].get());
  const auto marks = controller.timelinePicture(scaleOf(controller.timelineSpan())).marks;
  EXPECT_EQ(controller.timelineMarkInWords(marks.at(1)),
            "2 system installs, 2001-01-12: macOS Mojave, system install or upgrade, 10.14.1, "
            "2001-01-12 13:46:40 +0000");
}

TEST_F(TimelineControl, TellsWhereAnItemStands) {
  EXPECT_EQ(controller.timelineTimeOfItem(mojave), 1e6);
  EXPECT_EQ(controller.timelineTimeOfItem(histories[0].get()), 0);
}

TEST_F(TimelineControl, StopsTheProgramWhereAnOutletIsNotConnected) {
  ui::TimelineController unconnected;
  EXPECT_FATAL_STOP(unconnected.show(histories, boms, false));
  EXPECT_FATAL_STOP(unconnected.entrySelected(nullptr));
  unconnected.timelineView = &view;
  unconnected.show(histories, boms, false);
  EXPECT_FATAL_STOP(unconnected.timelineSelectItem(sierra));
  EXPECT_FATAL_STOP(unconnected.timelineSelectItem(receipt));
}

}  // namespace
}  // namespace pelmarix::test
