// What came when: the entries of the history and the receipts in lanes, and what a timeline draws of them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "history/history.h"
#include "platform/timeline_view.h"
#include "receipts/bom.h"

namespace pelmarix::ui {

/// All entries of one kind, or the receipts.
struct TimelineEntries {
  struct Entry {
    double seconds;  ///< since the reference date
    platform::Object* item;
  };
  platform::TimelineKind kind;
  std::vector<Entry> entries;  ///< in order of time; those of one second as they are listed
};

/// The span keeps to the bulk of the entries. Few entries beyond an empty stretch of years are outliers: they
/// stand outside, whatever is looked at. Dates are taken for at most thirty million years away.
class Timeline {
 public:
  Timeline() = default;
  /// The groups, entries and receipts must live as long.
  Timeline(const std::vector<std::shared_ptr<History>>& histories, const BoM& boms,
           bool skipsConfigurationData);

  /// From the first to the last entry, and at least a day.
  platform::TimelineSpan span() const;
  platform::TimelinePicture picture(const platform::TimelineScale& scale,
                                    const platform::Object* selected) const;
  /// See TimelineDataSource.
  platform::Object* itemBeside(const platform::TimelineScale& scale, const platform::Object* selected,
                               platform::TimelineDirection direction) const;
  /// Of an outlier the end of the bulk that it is beyond; nothing of what isn't shown.
  std::optional<double> timeOf(const platform::Object* item) const;
  std::string inWords() const;
  /// Which entry of several it tells of is the selected one, or else the first.
  std::string inWords(const platform::TimelineMark& mark, const platform::Object* selected) const;

 private:
  struct Group {
    double begin;
    const History* history;
    bool isSecond;  // of every second release
  };
  // Of an item: both null where it isn't shown.
  struct Position {
    const TimelineEntries* lane = nullptr;
    const TimelineEntries::Entry* entry = nullptr;
  };
  Position find(const platform::Object* item) const;

  std::vector<TimelineEntries> lanes_;          // in the order of their kinds
  std::vector<Group> groups_;                   // in order of time
  std::optional<platform::TimelineSpan> bulk_;  // nothing without entries
  std::vector<platform::TimelineSpan> gaps_;    // the longest, in order of time
};

}  // namespace pelmarix::ui
