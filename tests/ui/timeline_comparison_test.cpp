// Timelines of histories and receipts made at random, beside a second computation: from the rules, for few
// entries, as plainly as it can be told.
#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/ui/plain_views.h"
#include "tests/ui/timeline_fixture.h"
#include "ui/timeline_controller.h"

namespace pelmarix::test {
namespace {

using platform::Object;
using platform::TimelineDirection;
using platform::TimelineKind;
using platform::TimelineMark;
using platform::TimelinePicture;
using platform::TimelinePlace;
using platform::TimelineScale;
using platform::TimelineSpan;

struct Shown {
  double seconds;
  TimelineKind kind;
  Object* item;
};

class TimelineAtRandom : public TimelineLists {
 protected:
  TimelineAtRandom() {
    controller.timelineView = &view;
    controller.outlineView = &outline;
    controller.receiptsTable = &table;
  }

  std::size_t below(std::size_t bound) { return random() % bound; }

  /// Most of the years 2015 to 2021 and some of the same second, some far away. Whole seconds.
  double anyTime() {
    static const std::vector<double> odd = {secondsOf(1904, 1, 1), secondsOf(2040, 2, 6),
                                            secondsOf(-44, 3, 15), secondsOf(12019, 1, 1),
                                            secondsOf(2010, 1, 1)};
    if (below(12) == 0) return odd[below(odd.size())];
    if (below(6) == 0) return secondsOf(2019, 3, 26) + static_cast<double>(below(3));
    return secondsOf(2015, 1, 1) + static_cast<double>(below(200'000'000));
  }

  void makeLists() {
    histories.clear();
    boms.children.clear();
    const std::size_t groups = below(6);
    for (std::size_t group = 0; group < groups; ++group) {
      addGroup("group " + std::to_string(group));
      const std::size_t entries = below(4) == 0 ? 0 : below(30);
      for (std::size_t i = 0; i < entries; ++i)
        addEntry(anyTime(), i == 0 ? history_type::systemInstall : static_cast<std::int64_t>(1 + below(4)));
    }
    const std::size_t receipts = below(3) == 0 ? 0 : below(20);
    for (std::size_t i = 0; i < receipts; ++i) addReceipt(anyTime());
    skips = below(2) == 0;
    controller.show(histories, boms, skips);
  }

  /// In the order of time, those of one second as they are listed.
  std::vector<Shown> shown() const {
    std::vector<Shown> all;
    for (const auto& group : histories)
      for (const auto& entry : group->children)
        if (!skips || entry->type != history_type::configurationData)
          all.push_back({entry->installDate.timeIntervalSinceReferenceDate,
                         static_cast<TimelineKind>(entry->type), entry.get()});
    for (const auto& receipt : boms.children)
      all.push_back(
          {receipt->installDate.timeIntervalSinceReferenceDate, TimelineKind::receipt, receipt.get()});
    std::stable_sort(all.begin(), all.end(),
                     [](const Shown& a, const Shown& b) { return a.seconds < b.seconds; });
    return all;
  }

  /// An outlier has at most a twentieth of all on its far side, itself included, and then nothing for five
  /// years.
  static TimelinePlace placeOf(const Shown& one, const std::vector<Shown>& all) {
    const std::ptrdiff_t allowed = all.size() < 3 ? 0 : std::max<std::ptrdiff_t>(1, std::ssize(all) / 20);
    for (const Shown& border : all) {  // the last of those outliers
      const auto isFar = [&](const Shown& other) { return other.seconds <= border.seconds; };
      const auto isInStretch = [&](const Shown& other) {
        return other.seconds > border.seconds && other.seconds <= border.seconds + 5 * 365.25 * 86400;
      };
      if (one.seconds <= border.seconds && std::count_if(all.begin(), all.end(), isFar) <= allowed &&
          std::none_of(all.begin(), all.end(), isInStretch))
        return TimelinePlace::before;
    }
    for (const Shown& border : all) {
      const auto isFar = [&](const Shown& other) { return other.seconds >= border.seconds; };
      const auto isInStretch = [&](const Shown& other) {
        return other.seconds < border.seconds && other.seconds >= border.seconds - 5 * 365.25 * 86400;
      };
      if (one.seconds >= border.seconds && std::count_if(all.begin(), all.end(), isFar) <= allowed &&
          std::none_of(all.begin(), all.end(), isInStretch))
        return TimelinePlace::after;
    }
    return TimelinePlace::inside;
  }

  struct ExpectedMark {
    TimelinePlace place;
    std::vector<Shown> entries;
  };
  static std::vector<ExpectedMark> marksOf(TimelineKind kind, const std::vector<Shown>& all,
                                           double markSeconds) {
    std::vector<ExpectedMark> marks;
    for (const Shown& one : all) {
      if (one.kind != kind) continue;
      const TimelinePlace place = placeOf(one, all);
      const bool joins = !marks.empty() && marks.back().place == place &&
                         (place != TimelinePlace::inside ||
                          one.seconds - marks.back().entries.front().seconds < markSeconds);
      if (!joins) marks.push_back({place, {}});
      marks.back().entries.push_back(one);
    }
    return marks;
  }

  std::mt19937 random{20190326};
  bool skips = false;
  class View final : public platform::TimelineView {
    void reloadData() override {}
    void selectionDidChange(Object* /*item*/) override {}
  } view;
  PlainOutlineView outline;
  PlainTableView table;
  ui::TimelineController controller;
};

TEST_F(TimelineAtRandom, HasTheMarksOfASecondComputation) {
  std::size_t ofSeveral = 0;
  std::size_t outside = 0;
  for (int volume = 0; volume < 200; ++volume) {
    makeLists();
    const std::vector<Shown> all = shown();
    const TimelineSpan whole = controller.timelineSpan();
    const double length = (whole.end - whole.begin) / static_cast<double>(1 + below(5));
    const double begin = whole.begin + (whole.end - whole.begin - length) / static_cast<double>(1 + below(3));
    const TimelineScale scale{{begin, begin + length}, 700, 9, 100};

    std::vector<TimelineMark> marks = controller.timelinePicture(scale).marks;
    auto mark = marks.begin();
    for (int kind = 0; kind <= 5; ++kind) {
      for (const auto& [place, entries] : marksOf(static_cast<TimelineKind>(kind), all, length / 700 * 9)) {
        const double x = (entries.front().seconds - begin) / length * 700;
        if (place == TimelinePlace::inside && (x < -0.5 || x > 700.5)) continue;
        ASSERT_NE(mark, marks.end()) << volume;
        EXPECT_EQ(mark->kind, static_cast<TimelineKind>(kind));
        EXPECT_EQ(mark->place, place);
        EXPECT_EQ(mark->count, entries.size());
        EXPECT_EQ(mark->item, entries.front().item);
        if (place == TimelinePlace::inside) {
          EXPECT_NEAR(mark->x, x, 1e-6);
        }
        if (entries.size() > 1) ++ofSeveral;
        if (place != TimelinePlace::inside) ++outside;
        ++mark;
      }
    }
    EXPECT_EQ(mark, marks.end()) << volume;
  }
  EXPECT_GT(ofSeveral, 300);
  EXPECT_GT(outside, 100);
}

TEST_F(TimelineAtRandom, HasTheGapsOfASecondComputation) {
  std::size_t count = 0;
  for (int volume = 0; volume < 200; ++volume) {
    makeLists();
    std::vector<Shown> bulk = shown();
    const std::vector<Shown> all = bulk;
    std::erase_if(bulk, [&all](const Shown& one) { return placeOf(one, all) != TimelinePlace::inside; });
    std::vector<double> ends;
    for (const Shown& one : bulk)
      if (one.kind == TimelineKind::securityData) ends.push_back(one.seconds);
    if (!ends.empty()) ends.push_back(bulk.back().seconds);
    std::vector<std::pair<double, double>>
        gaps;  // by their lengths, the longest first; of equal ones the earlier
    for (std::size_t i = 1; i < ends.size(); ++i)
      if (ends[i] - ends[i - 1] >= 30 * secondsPerDay) gaps.push_back({ends[i - 1] - ends[i], ends[i - 1]});
    std::sort(gaps.begin(), gaps.end());
    if (gaps.size() > 3) gaps.resize(3);
    std::sort(gaps.begin(), gaps.end(), [](const auto& a, const auto& b) { return a.second < b.second; });

    const TimelineScale scale = scaleOf(controller.timelineSpan());
    const double length = scale.span.end - scale.span.begin;
    const auto found = controller.timelinePicture(scale).gaps;
    ASSERT_EQ(found.size(), gaps.size()) << volume;
    for (std::size_t i = 0; i < gaps.size(); ++i) {
      const auto [negativeLength, begin] = gaps[i];
      EXPECT_NEAR(found[i].left, (begin - scale.span.begin) / length * 1000, 1e-6);
      EXPECT_NEAR(found[i].right, (begin - negativeLength - scale.span.begin) / length * 1000, 1e-6);
      EXPECT_EQ(found[i].words, std::to_string(static_cast<int>(-negativeLength / secondsPerDay)) +
                                    " days without security data");
      ++count;
    }
  }
  EXPECT_GT(count, 200);
}

TEST_F(TimelineAtRandom, HasTheBandsOfASecondComputation) {
  std::size_t count = 0;
  for (int volume = 0; volume < 200; ++volume) {
    makeLists();
    const TimelineScale scale = scaleOf(controller.timelineSpan());
    const auto bands = controller.timelinePicture(scale).bands;
    // Of each unit's middle: the group that began last.
    for (int unit = 0; unit < 1000; unit += 7) {
      const double x = unit + 0.5;
      const double seconds = scale.span.begin + x / 1000 * (scale.span.end - scale.span.begin);
      const History* last = nullptr;
      double lastBegin = -std::numeric_limits<double>::infinity();
      double nextBegin = std::numeric_limits<double>::infinity();
      for (const auto& group : histories) {
        if (group->children.empty()) continue;
        const double begin = group->children.front()->installDate.timeIntervalSinceReferenceDate;
        if (begin <= seconds && begin >= lastBegin) {
          last = group.get();
          lastBegin = begin;
        }
        if (begin > seconds) nextBegin = std::min(nextBegin, begin);
      }
      std::string name;
      for (const auto& band : bands)
        if (band.left <= x && x < band.right) name = band.name;
      const double width = (std::min(nextBegin, scale.span.end) - std::max(lastBegin, scale.span.begin)) /
                           (scale.span.end - scale.span.begin) * 1000;
      const bool isDrawn = last != nullptr && width >= 1 && !controller.timelinePicture(scale).marks.empty();
      EXPECT_EQ(name, isDrawn ? last->name : "") << volume << ", " << unit;
      if (isDrawn) ++count;
    }
  }
  EXPECT_GT(count, 1000);
}

TEST_F(TimelineAtRandom, LeadsFromEachMarkToItsEntriesAndBack) {
  std::size_t count = 0;
  for (int volume = 0; volume < 200; ++volume) {
    makeLists();
    const TimelineScale scale = scaleOf(controller.timelineSpan());
    for (const TimelineMark& mark : controller.timelinePicture(scale).marks) {
      // As many clicks as there are entries, each on what the mark offers then.
      std::set<Object*> chosen;
      const auto sameMark = [&] {
        for (const TimelineMark& other : controller.timelinePicture(scale).marks)
          if (other.item == mark.item) return other;
        return mark;
      };
      for (std::size_t click = 0; click < mark.count; ++click) {
        Object* const item = sameMark().nextItem;
        outline.selectedChild = {nullptr, -1};
        table.selected = -1;
        controller.entrySelected(nullptr);
        controller.timelineSelectItem(item);
        Object* listed = nullptr;
        if (mark.kind == TimelineKind::receipt) {
          ASSERT_GE(table.selected, 0);
          listed = boms.children.at(static_cast<std::size_t>(table.selected)).get();
        } else {
          const auto& group = dynamic_cast<History&>(*outline.selectedChild.first);
          listed = group.children.at(static_cast<std::size_t>(outline.selectedChild.second)).get();
        }
        EXPECT_EQ(listed, item);
        controller.entrySelected(nullptr);
        controller.entrySelected(listed);
        EXPECT_TRUE(sameMark().isSelected);
        chosen.insert(listed);
        ++count;
      }
      EXPECT_EQ(chosen.size(), mark.count);
      EXPECT_EQ(sameMark().nextItem, mark.item);
      controller.entrySelected(nullptr);
    }
  }
  EXPECT_GT(count, 5000);
}

TEST_F(TimelineAtRandom, ReachesEachMarkFromTheFirst) {
  for (int volume = 0; volume < 200; ++volume) {
    makeLists();
    const TimelineScale scale = scaleOf(controller.timelineSpan());
    std::set<Object*> expected;
    for (const TimelineMark& mark : controller.timelinePicture(scale).marks) expected.insert(mark.item);
    std::set<Object*> reached;
    controller.entrySelected(nullptr);
    std::vector<Object*> ahead = {controller.timelineItemBeside(scale, TimelineDirection::right)};
    while (!ahead.empty()) {
      Object* const item = ahead.back();
      ahead.pop_back();
      if (item == nullptr || !reached.insert(item).second) continue;
      controller.timelineSelectItem(item);
      for (const auto direction : {TimelineDirection::left, TimelineDirection::right, TimelineDirection::up,
                                   TimelineDirection::down})
        ahead.push_back(controller.timelineItemBeside(scale, direction));
    }
    EXPECT_EQ(reached, expected) << volume;
  }
}

}  // namespace
}  // namespace pelmarix::test
