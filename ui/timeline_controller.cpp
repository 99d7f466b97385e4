#include "ui/timeline_controller.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "base/fatal.h"

namespace pelmarix::ui {
namespace {

using platform::Object;

// Nothing where the list doesn't hold it.
template <typename Element>
std::optional<std::ptrdiff_t> indexOf(const Object* item, const std::vector<std::shared_ptr<Element>>& list) {
  const auto found =
      std::find_if(list.begin(), list.end(), [item](const auto& element) { return element.get() == item; });
  if (found == list.end()) return std::nullopt;
  return found - list.begin();
}

}  // namespace

void TimelineController::show(const std::vector<std::shared_ptr<History>>& histories, const BoM& boms,
                              bool skipsConfigurationData) {
  histories_ = &histories;
  boms_ = &boms;
  timeline_ = Timeline(histories, boms, skipsConfigurationData);
  required(timelineView, "timelineView is not connected").reloadData();
}

void TimelineController::entrySelected(Object* item) {
  selected_ = timeline_.timeOf(item) ? item : nullptr;
  required(timelineView, "timelineView is not connected").selectionDidChange(selected_);
}

void TimelineController::timelineSelectItem(Object* item) {
  for (const auto& group : *histories_)
    if (const auto index = indexOf(item, group->children))
      required(outlineView, "outlineView is not connected").selectChildOfItem(*index, group.get());
  if (const auto row = indexOf(item, boms_->children))
    required(receiptsTable, "receiptsTable is not connected").selectRow(*row);
  entrySelected(item);
}

platform::TimelineSpan TimelineController::timelineSpan() { return timeline_.span(); }

platform::TimelinePicture TimelineController::timelinePicture(const platform::TimelineScale& scale) {
  return timeline_.picture(scale, selected_);
}

std::string TimelineController::timelineInWords() { return timeline_.inWords(); }

std::string TimelineController::timelineMarkInWords(const platform::TimelineMark& mark) {
  return timeline_.inWords(mark, selected_);
}

Object* TimelineController::timelineItemBeside(const platform::TimelineScale& scale,
                                               platform::TimelineDirection direction) {
  return timeline_.itemBeside(scale, selected_, direction);
}

double TimelineController::timelineTimeOfItem(Object* item) {
  return timeline_.timeOf(item).value_or(timeline_.span().begin);
}

}  // namespace pelmarix::ui
