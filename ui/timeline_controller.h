// The timeline's controller: what it shows, and how it goes together with the lists.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "history/history.h"
#include "platform/table_view.h"
#include "platform/timeline_view.h"
#include "receipts/bom.h"
#include "ui/timeline.h"

namespace pelmarix::ui {

/// Data source of the timeline. Of outline, table and timeline there is one selected item, the one chosen
/// last. Using an outlet that isn't connected stops the program. Main thread only.
class TimelineController final : public platform::TimelineDataSource {
 public:
  /// Shows all entries and receipts, from now on. They are kept as references, and must not change until the
  /// next call but for the receipts' order.
  void show(const std::vector<std::shared_ptr<History>>& histories, const BoM& boms,
            bool skipsConfigurationData);
  /// Was selected in a list. What isn't shown, such as a group, or null is marked nowhere.
  void entrySelected(platform::Object* item);

  platform::TimelineSpan timelineSpan() override;
  platform::TimelinePicture timelinePicture(const platform::TimelineScale& scale) override;
  std::string timelineInWords() override;
  std::string timelineMarkInWords(const platform::TimelineMark& mark) override;
  platform::Object* timelineItemBeside(const platform::TimelineScale& scale,
                                       platform::TimelineDirection direction) override;
  double timelineTimeOfItem(platform::Object* item) override;
  /// Has the outline open the entry's group and select it, or the table select the receipt.
  void timelineSelectItem(platform::Object* item) override;

  // Outlets. They are not owned.
  platform::TimelineView* timelineView = nullptr;
  platform::OutlineView* outlineView = nullptr;
  platform::TableView* receiptsTable = nullptr;

 private:
  const std::vector<std::shared_ptr<History>>* histories_ = nullptr;
  const BoM* boms_ = nullptr;
  Timeline timeline_;
  platform::Object* selected_ = nullptr;
};

}  // namespace pelmarix::ui
