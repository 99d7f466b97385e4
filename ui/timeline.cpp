#include "ui/timeline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>

#include "base/date.h"
#include "ui/timeline_axis.h"

namespace pelmarix::ui {
namespace {

using platform::Object;
using platform::TimelineKind;
using platform::TimelineMark;
using platform::TimelinePicture;
using platform::TimelinePlace;
using platform::TimelineScale;
using platform::TimelineSpan;
using Entry = TimelineEntries::Entry;
using Entries = std::vector<Entry>;

constexpr double day = 86400;
// What parts outliers from the bulk, and which part of all there may be of them on either side.
constexpr double emptyStretch = 5 * 365.25 * day;
constexpr std::size_t outliersOf = 20;
// A gap is no shorter, and of more only the longest are told.
constexpr double shortestGap = 30 * day;
constexpr std::size_t mostGaps = 3;
// Much farther away neither seconds nor months could be counted.
constexpr double farthest = 1e15;

// Of a band's name, in bytes: drawing one without an end takes long.
constexpr std::size_t longestName = 200;

struct KindInWords {
  std::string_view lane, one, several;
};

// In the order of TimelineKind.
constexpr auto kindsInWords = std::to_array<KindInWords>({
    {"System installs", "system install", "system installs"},
    {"Security updates", "security update", "security updates"},
    {"Security data", "entry of security data", "entries of security data"},
    {"Critical updates", "critical update", "critical updates"},
    {"Configuration data", "entry of configuration data", "entries of configuration data"},
    {"Receipts", "receipt", "receipts"},
});

const KindInWords& kindInWords(TimelineKind kind) { return kindsInWords[static_cast<std::size_t>(kind)]; }

std::string counted(std::size_t count, TimelineKind kind) {
  return std::to_string(count) + " " +
         std::string(count == 1 ? kindInWords(kind).one : kindInWords(kind).several);
}

std::string dayText(double seconds) { return dayDescription(Date{seconds}); }

std::string daysText(TimelineSpan span) {
  const std::string first = dayText(span.begin);
  const std::string last = dayText(span.end);
  return first == last ? first : first + " to " + last;
}

double lengthOf(TimelineSpan span) { return span.end - span.begin; }

bool isLonger(TimelineSpan one, TimelineSpan other) { return lengthOf(one) > lengthOf(other); }

std::string gapInWords(TimelineSpan gap) {
  return std::to_string(static_cast<long long>(lengthOf(gap) / day)) + " days without security data";
}

std::string beginningOf(const std::string& name) {
  if (name.size() <= longestName) return name;
  std::size_t end = longestName;
  while (end > 0 && (name[end] & 0xC0) == 0x80) --end;  // inside a letter
  return name.substr(0, end) + "\u2026";
}

std::string itemInWords(const Object* item) {
  if (const auto* entry = dynamic_cast<const HistoryItem*>(item))
    return entry->name + ", " + kindAndVersion(*entry) + ", " + description(entry->installDate);
  const auto& receipt = dynamic_cast<const BoMItem&>(*item);
  return receipt.name + ", receipt, " + description(receipt.installDate);
}

double secondsOf(Date date) { return std::clamp(date.timeIntervalSinceReferenceDate, -farthest, farthest); }

// Of times in their order.
TimelineSpan bulkOf(const std::vector<double>& times) {
  const std::size_t count = times.size();
  const std::size_t most = count < 3 ? 0 : std::max<std::size_t>(1, count / outliersOf);
  std::size_t first = 0;
  std::size_t last = count - 1;
  for (std::size_t i = 1; i <= most; ++i) {
    if (times[i] - times[i - 1] > emptyStretch) first = i;
    if (times[count - i] - times[count - i - 1] > emptyStretch) last = count - i - 1;
  }
  return {times[first], times[last]};
}

// The longest in order of time, out of the security data's entries.
std::vector<TimelineSpan> gapsOf(const Entries& entries, TimelineSpan bulk) {
  std::vector<TimelineSpan> gaps;
  const auto add = [&gaps](double begin, double end) {
    if (end - begin >= shortestGap) gaps.push_back({begin, end});
  };
  const Entry* last = nullptr;
  for (const Entry& entry : entries) {
    if (entry.seconds < bulk.begin || entry.seconds > bulk.end) continue;
    if (last != nullptr) add(last->seconds, entry.seconds);
    last = &entry;
  }
  if (last != nullptr) add(last->seconds, bulk.end);

  std::stable_sort(gaps.begin(), gaps.end(), isLonger);
  gaps.resize(std::min(gaps.size(), mostGaps));
  std::sort(gaps.begin(), gaps.end(),
            [](TimelineSpan one, TimelineSpan other) { return one.begin < other.begin; });
  return gaps;
}

double xOf(double seconds, const TimelineScale& scale) {
  return (seconds - scale.span.begin) / lengthOf(scale.span) * scale.width;
}

// Within the picture.
double edgeOf(double seconds, const TimelineScale& scale) {
  return std::clamp(xOf(seconds, scale), 0.0, scale.width);
}

TimelinePlace placeOf(double seconds, TimelineSpan bulk) {
  if (seconds < bulk.begin) return TimelinePlace::before;
  return seconds > bulk.end ? TimelinePlace::after : TimelinePlace::inside;
}

// Of a group with entries: "10.14" where it begins with 10.14.6.
std::string_view releaseOf(const History& group) {
  const std::string_view version = group.children.front()->version;
  return version.substr(0, version.find('.', version.find('.') + 1));
}

// What isn't numbered so is a release by itself.
bool areOfOneRelease(const History& one, const History& other) {
  return releaseOf(one) == releaseOf(other) && releaseOf(one).starts_with("10.");
}

// Calls `take` with the first entry of each mark and the one behind its last. They don't depend on which part
// of time is looked at, so that marks stay as they are while the strip is moved.
template <typename Take>
void forEachMark(const Entries& entries, TimelineSpan bulk, const TimelineScale& scale, const Take& take) {
  const double width = scale.markWidth / scale.width * lengthOf(scale.span);
  for (auto first = entries.begin(); first != entries.end();) {
    const TimelinePlace place = placeOf(first->seconds, bulk);
    const auto behind = std::find_if(first, entries.end(), [&](const Entry& entry) {
      return placeOf(entry.seconds, bulk) != place ||
             (place == TimelinePlace::inside && entry.seconds - first->seconds >= width);
    });
    take(first, behind);
    first = behind;
  }
}

void addMarks(const TimelineEntries& lane, TimelineSpan bulk, const TimelineScale& scale,
              const Object* selected, std::vector<TimelineMark>& marks) {
  forEachMark(lane.entries, bulk, scale, [&](Entries::const_iterator first, Entries::const_iterator behind) {
    const TimelinePlace place = placeOf(first->seconds, bulk);
    const auto found =
        std::find_if(first, behind, [&](const Entry& entry) { return entry.item == selected; });
    double x = xOf(first->seconds, scale);
    if (place == TimelinePlace::before) x = -scale.markWidth;
    if (place == TimelinePlace::after) x = scale.width + scale.markWidth;
    if (place == TimelinePlace::inside) {
      // What is selected stays in view as long as its own time does.
      if (x < 0 && found != behind && found->seconds >= scale.span.begin) x = 0;
      // Half a unit more: what ends with an entry may be rounded.
      if (x < -0.5 || x > scale.width + 0.5) return;
    }
    marks.push_back({.kind = lane.kind,
                     .x = x,
                     .place = place,
                     .date = place == TimelinePlace::inside ? std::string() : dayText(first->seconds),
                     .count = static_cast<std::size_t>(behind - first),
                     .item = first->item,
                     .nextItem = (found >= behind - 1 ? first : found + 1)->item,
                     .isSelected = found != behind});
  });
}

}  // namespace

Timeline::Timeline(const std::vector<std::shared_ptr<History>>& histories, const BoM& boms,
                   bool skipsConfigurationData) {
  for (std::size_t kind = 0; kind < kindsInWords.size(); ++kind)
    lanes_.push_back({static_cast<TimelineKind>(kind), {}});
  for (const auto& group : histories) {
    if (!group->children.empty())
      groups_.push_back({secondsOf(group->children.front()->installDate), group.get(), false});
    for (const auto& entry : group->children)
      if (!skipsConfigurationData || entry->type != history_type::configurationData)
        lanes_[static_cast<std::size_t>(entry->type)].entries.push_back(
            {secondsOf(entry->installDate), entry.get()});
  }
  for (const auto& receipt : boms.children)
    lanes_.back().entries.push_back({secondsOf(receipt->installDate), receipt.get()});
  std::stable_sort(groups_.begin(), groups_.end(),
                   [](const Group& one, const Group& other) { return one.begin < other.begin; });
  for (std::size_t i = 1; i < groups_.size(); ++i)
    groups_[i].isSecond =
        groups_[i - 1].isSecond == areOfOneRelease(*groups_[i - 1].history, *groups_[i].history);
  if (skipsConfigurationData) lanes_.erase(lanes_.end() - 2);

  std::vector<double> times;
  for (auto& [kind, entries] : lanes_) {
    entries.shrink_to_fit();
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry& one, const Entry& other) { return one.seconds < other.seconds; });
    const std::ptrdiff_t merged = std::ssize(times);
    for (const Entry& entry : entries) times.push_back(entry.seconds);
    std::inplace_merge(times.begin(), times.begin() + merged, times.end());
  }
  if (times.empty()) return;
  bulk_ = bulkOf(times);
  gaps_ = gapsOf(lanes_[static_cast<std::size_t>(TimelineKind::securityData)].entries, *bulk_);
}

TimelineSpan Timeline::span() const {
  const TimelineSpan bulk = bulk_.value_or(TimelineSpan{0, 0});
  const double missing = std::max(0.0, day - lengthOf(bulk));
  return {bulk.begin - missing / 2, bulk.end + missing / 2};
}

TimelinePicture Timeline::picture(const TimelineScale& scale, const Object* selected) const {
  TimelinePicture picture;
  for (const auto& lane : lanes_)
    picture.lanes.push_back({lane.kind, std::string(kindInWords(lane.kind).lane)});
  if (!bulk_ || scale.width < 1) return picture;

  for (std::size_t i = 0; i < groups_.size(); ++i) {
    const double left = edgeOf(groups_[i].begin, scale);
    const double right = i + 1 < groups_.size() ? edgeOf(groups_[i + 1].begin, scale) : scale.width;
    if (right - left >= 1)
      picture.bands.push_back({left, right, beginningOf(groups_[i].history->name), groups_[i].isSecond});
  }
  for (const TimelineSpan gap : gaps_)
    if (gap.begin < scale.span.end && gap.end > scale.span.begin)
      picture.gaps.push_back({edgeOf(gap.begin, scale), edgeOf(gap.end, scale), gapInWords(gap)});
  picture.ticks = timelineTicks(scale);
  for (const auto& lane : lanes_) addMarks(lane, *bulk_, scale, selected, picture.marks);
  return picture;
}

Timeline::Position Timeline::find(const Object* item) const {
  for (const auto& lane : lanes_)
    for (const Entry& entry : lane.entries)
      if (entry.item == item) return {&lane, &entry};
  return {};
}

std::optional<double> Timeline::timeOf(const Object* item) const {
  const Entry* const entry = find(item).entry;
  if (entry == nullptr) return std::nullopt;
  return std::clamp(entry->seconds, bulk_->begin, bulk_->end);
}

Object* Timeline::itemBeside(const TimelineScale& scale, const Object* selected,
                             platform::TimelineDirection direction) const {
  using platform::TimelineDirection;
  const auto hasEntries = [](const TimelineEntries& lane) { return !lane.entries.empty(); };
  const auto [lane, entry] = find(selected);
  if (entry == nullptr) {
    const auto first = std::find_if(lanes_.begin(), lanes_.end(), hasEntries);
    return first == lanes_.end() ? nullptr : first->entries.front().item;
  }

  const auto firstEntries = [this, &scale](const TimelineEntries& ofLane) {
    std::vector<const Entry*> firsts;
    forEachMark(ofLane.entries, *bulk_, scale, [&](auto first, auto) { firsts.push_back(&*first); });
    return firsts;
  };
  const std::vector<const Entry*> marks = firstEntries(*lane);
  const auto mark = std::prev(std::upper_bound(marks.begin(), marks.end(), entry));
  if (direction == TimelineDirection::left) return mark == marks.begin() ? nullptr : mark[-1]->item;
  if (direction == TimelineDirection::right) return mark + 1 == marks.end() ? nullptr : mark[1]->item;

  // The nearest in time, in the next lane that has any.
  const bool goesUp = direction == TimelineDirection::up;
  const TimelineEntries* const last = goesUp ? &lanes_.front() : &lanes_.back();
  const TimelineEntries* other = lane;
  do {
    if (other == last) return nullptr;
    other += goesUp ? -1 : 1;
  } while (!hasEntries(*other));
  const std::vector<const Entry*> candidates = firstEntries(*other);
  const double time = (*mark)->seconds;
  return (*std::min_element(candidates.begin(), candidates.end(),
                            [time](auto* one, auto* another) {
                              return std::abs(one->seconds - time) < std::abs(another->seconds - time);
                            }))
      ->item;
}

std::string Timeline::inWords() const {
  if (!bulk_) return "No entries.";
  std::string text = dayText(bulk_->begin) == dayText(bulk_->end) ? "On " : "From ";
  text += daysText(*bulk_) + ". ";
  std::string_view separator;
  for (const auto& [kind, entries] : lanes_) {
    if (entries.empty()) continue;
    text.append(separator) += counted(entries.size(), kind);
    separator = ", ";
  }
  text += '.';
  for (const TimelinePlace place : {TimelinePlace::before, TimelinePlace::after}) {
    std::vector<double> times;
    for (const auto& lane : lanes_)
      for (const Entry& entry : lane.entries)
        if (placeOf(entry.seconds, *bulk_) == place) times.push_back(entry.seconds);
    if (times.empty()) continue;
    const auto [first, last] = std::minmax_element(times.begin(), times.end());
    text += " " + std::to_string(times.size()) + " of them long " +
            (place == TimelinePlace::before ? "before" : "after") + " that, " + daysText({*first, *last}) +
            ".";
  }
  if (gaps_.empty()) return text;
  const TimelineSpan longest = *std::min_element(gaps_.begin(), gaps_.end(), isLonger);
  return text + " Longest gap: " + gapInWords(longest) + ", " + daysText(longest) + ".";
}

std::string Timeline::inWords(const TimelineMark& mark, const Object* selected) const {
  const Entry* const first = find(mark.item).entry;
  if (first == nullptr) return {};
  const Entry* const behind = first + mark.count;
  const Entry* const told =
      std::find_if(first, behind, [selected](const Entry& entry) { return entry.item == selected; });
  std::string item = itemInWords((told == behind ? first : told)->item);
  if (mark.count == 1) return item;
  return counted(mark.count, mark.kind) + ", " + daysText({first->seconds, behind[-1].seconds}) + ": " + item;
}

}  // namespace pelmarix::ui
