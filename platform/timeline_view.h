// A timeline: a strip that shows what came when. It asks a data source for what to draw and draws that.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/object.h"

namespace pelmarix::platform {

/// What marks are told apart by, each with a lane of its own.
enum class TimelineKind {
  systemInstall,
  securityUpdate,
  securityData,
  criticalUpdate,
  configurationData,
  receipt,
};

struct TimelineLane {
  TimelineKind kind;
  std::string name;
};

/// In seconds since the reference date (base/date.h), both finite, the end behind the beginning.
struct TimelineSpan {
  double begin;
  double end;
};

/// What part of time is drawn, and how large. All but the span is in the view's own units of length, from its
/// left edge.
struct TimelineScale {
  TimelineSpan span;
  double width;       ///< of the span
  double markWidth;   ///< marks of one lane never stand closer than that
  double labelWidth;  ///< of "2019-03-26 10:11", with the blank that it needs
};

enum class TimelinePlace {
  inside,
  before,  ///< of a time long before all others: markWidth left of the left edge, whatever the span
  after,   ///< likewise right of the right edge
};

/// One entry, or several that would overlap. A mark stands where its first entry does.
struct TimelineMark {
  TimelineKind kind;
  double x;
  TimelinePlace place;
  std::string date;  ///< "1904-01-01", of its first; only where its place is outside
  std::size_t count;
  Object* item;      ///< its first, the data source's own
  Object* nextItem;  ///< what a click chooses: its first, or the one behind the selected one, round
  bool isSelected;   ///< one of its items is the selected one
};

struct TimelineBand {
  double left;
  double right;
  std::string name;  ///< or the beginning of a very long one
  bool isSecond;     ///< of every second release, wherever the span begins: groups of one release go together
};

struct TimelineGap {
  double left;
  double right;
  std::string words;  ///< "214 days without security data"
};

struct TimelineTick {
  double x;
  std::string label;
};

struct TimelinePicture {
  std::vector<TimelineLane> lanes;  ///< from top to bottom
  std::vector<TimelineBand> bands;
  std::vector<TimelineGap> gaps;
  std::vector<TimelineTick> ticks;
  std::vector<TimelineMark> marks;  ///< from left to right in each lane
};

enum class TimelineDirection { left, right, up, down };

class TimelineDataSource {
 public:
  virtual ~TimelineDataSource() = default;
  /// All that can be looked at.
  virtual TimelineSpan timelineSpan() = 0;
  virtual TimelinePicture timelinePicture(const TimelineScale& scale) = 0;
  /// All of it, for who doesn't see it.
  virtual std::string timelineInWords() = 0;
  /// Name, version, date and kind; of several, how many there are, too.
  virtual std::string timelineMarkInWords(const TimelineMark& mark) = 0;
  /// The mark to go to from the selected one; the first when none is selected. Null where there is none.
  virtual Object* timelineItemBeside(const TimelineScale& scale, TimelineDirection direction) = 0;
  /// Where the item stands, in seconds since the reference date.
  virtual double timelineTimeOfItem(Object* item) = 0;
  /// The user chose it.
  virtual void timelineSelectItem(Object* item) = 0;
};

class TimelineView : public Object {
 public:
  /// Asks the data source anew for everything. The span that is shown stays where it still exists.
  virtual void reloadData() = 0;
  /// What is selected is another item, null for none: it is brought into view.
  virtual void selectionDidChange(Object* item) = 0;
};

}  // namespace pelmarix::platform
