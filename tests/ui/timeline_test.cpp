#include "ui/timeline.h"

#include <gmock/gmock.h>

#include "tests/ui/timeline_fixture.h"

namespace pelmarix::ui {
namespace {

using platform::Object;
using platform::TimelineDirection;
using platform::TimelineKind;
using platform::TimelineMark;
using platform::TimelinePicture;
using platform::TimelinePlace;
using platform::TimelineScale;
using platform::TimelineSpan;
using test::secondsOf;
using test::secondsPerDay;
using testing::AllOf;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

using history_type::configurationData;
using history_type::criticalUpdate;
using history_type::securityData;
using history_type::securityUpdate;
using history_type::systemInstall;

class TimelineOfLists : public test::TimelineLists {
 protected:
  Timeline timeline(bool skipsConfigurationData = false) const {
    return Timeline(histories, boms, skipsConfigurationData);
  }
  /// A thousand units wide, marks ten.
  static TimelineScale scaleOf(TimelineSpan span) { return {span, 1000, 10, 100}; }
  /// All of it.
  TimelinePicture picture(const Object* selected = nullptr) const {
    const Timeline all = timeline();
    return all.picture(scaleOf(all.span()), selected);
  }
  std::vector<TimelineMark> marksOf(TimelineKind kind) const {
    std::vector<TimelineMark> marks = picture().marks;
    std::erase_if(marks, [kind](const TimelineMark& mark) { return mark.kind != kind; });
    return marks;
  }
  /// Seconds in which a unit of a thousand is one.
  void addEnds() {
    addEntry(0, systemInstall);
    addEntry(1e6, systemInstall);
  }
};

auto markAt(double x, std::size_t count) {
  return AllOf(Field("x", &TimelineMark::x, DoubleNear(x, 1e-6)),
               Field("count", &TimelineMark::count, count));
}

// The span and the lanes.

TEST_F(TimelineOfLists, HasALaneForEachKind) {
  EXPECT_THAT(picture().lanes, ElementsAre(Field(&platform::TimelineLane::name, "System installs"),
                                           Field(&platform::TimelineLane::name, "Security updates"),
                                           Field(&platform::TimelineLane::name, "Security data"),
                                           Field(&platform::TimelineLane::name, "Critical updates"),
                                           Field(&platform::TimelineLane::name, "Configuration data"),
                                           Field(&platform::TimelineLane::name, "Receipts")));
}

TEST_F(TimelineOfLists, PutsEachEntryIntoTheLaneOfItsKind) {
  const std::vector<Object*> items = {addEntry(0, systemInstall),     addEntry(0, securityUpdate),
                                      addEntry(0, securityData),      addEntry(0, criticalUpdate),
                                      addEntry(0, configurationData), addReceipt(0)};
  const std::vector<TimelineMark> marks = picture().marks;
  ASSERT_THAT(marks, SizeIs(6));
  for (std::size_t i = 0; i < items.size(); ++i) {
    EXPECT_EQ(marks[i].kind, static_cast<TimelineKind>(i));
    EXPECT_EQ(marks[i].item, items[i]);
  }
}

TEST_F(TimelineOfLists, HasNoLaneOfConfigurationDataThatIsSkipped) {
  addEntry(0, systemInstall);
  Object* const skipped = addEntry(1e6, configurationData);
  const Timeline all = timeline(true);
  const TimelinePicture shown = all.picture(scaleOf(all.span()), nullptr);
  EXPECT_THAT(shown.lanes, SizeIs(5));
  EXPECT_EQ(shown.lanes.back().kind, TimelineKind::receipt);
  EXPECT_THAT(shown.marks, SizeIs(1));
  EXPECT_LT(all.span().end, 1e6);
  EXPECT_EQ(all.timeOf(skipped), std::nullopt);
}

TEST_F(TimelineOfLists, SpansFromTheFirstToTheLastEntryOfAnyKind) {
  addEntry(secondsOf(2019, 3, 26), systemInstall);
  addReceipt(secondsOf(2021, 2, 28));
  addEntry(secondsOf(2015, 11, 2), securityData);
  EXPECT_EQ(timeline().span().begin, secondsOf(2015, 11, 2));
  EXPECT_EQ(timeline().span().end, secondsOf(2021, 2, 28));
}

TEST_F(TimelineOfLists, SpansADayAtLeast) {
  for (int i = 0; i < 3; ++i) addEntry(secondsOf(2019, 3, 26), securityData);
  EXPECT_EQ(timeline().span().begin, secondsOf(2019, 3, 25, secondsPerDay / 2));
  EXPECT_EQ(timeline().span().end, secondsOf(2019, 3, 26, secondsPerDay / 2));
  EXPECT_THAT(picture().marks, ElementsAre(markAt(500, 3)));
}

TEST_F(TimelineOfLists, WithoutEntriesHasLanesAndNothingElse) {
  addGroup("macOS 10.15 10.15");
  EXPECT_EQ(timeline().span().end - timeline().span().begin, secondsPerDay);
  const TimelinePicture empty = picture();
  EXPECT_THAT(empty.lanes, SizeIs(6));
  EXPECT_THAT(empty.bands, IsEmpty());
  EXPECT_THAT(empty.gaps, IsEmpty());
  EXPECT_THAT(empty.ticks, IsEmpty());
  EXPECT_THAT(empty.marks, IsEmpty());
  EXPECT_EQ(timeline().itemBeside(scaleOf(timeline().span()), nullptr, TimelineDirection::right), nullptr);
  EXPECT_EQ(timeline().inWords(), "No entries.");
}

TEST_F(TimelineOfLists, IsEmptyWhereThereIsNoRoom) {
  addEnds();
  EXPECT_THAT(timeline().picture({timeline().span(), 0, 10, 100}, nullptr).marks, IsEmpty());
}

// Marks.

TEST_F(TimelineOfLists, MarksAnEntryWhereItsTimeIs) {
  addEnds();
  addEntry(250'000, securityData);
  EXPECT_THAT(picture().marks, ElementsAre(markAt(0, 1), markAt(1000, 1), markAt(250, 1)));
}

TEST_F(TimelineOfLists, MakesOneMarkOfEntriesThatWouldOverlap) {
  addEnds();
  Object* const first = addEntry(500'000, securityData);
  addEntry(506'000, securityData);
  addEntry(512'000, securityData);  // not nearer than ten units to the first
  addEntry(521'000, securityData);
  addEntry(522'000, securityData);  // as far from the first of its mark as a mark is wide
  const std::vector<TimelineMark> marks = marksOf(TimelineKind::securityData);
  EXPECT_THAT(marks, ElementsAre(markAt(500, 2), markAt(512, 2), markAt(522, 1)));
  EXPECT_EQ(marks.front().item, first);
}

TEST_F(TimelineOfLists, KeepsMarksOfOtherLanesApart) {
  addEnds();
  addEntry(0, securityUpdate);
  EXPECT_THAT(marksOf(TimelineKind::securityUpdate), ElementsAre(markAt(0, 1)));
}

TEST_F(TimelineOfLists, OrdersByTimeAndWithinASecondByTheList) {
  addEnds();
  Object* const third = addEntry(500'002, securityData);
  Object* const first = addEntry(500'001, securityData);
  Object* const second = addEntry(500'001, securityData);
  const Timeline all = timeline();
  const TimelineScale scale = scaleOf(all.span());
  EXPECT_EQ(all.picture(scale, nullptr).marks.back().item, first);
  EXPECT_EQ(all.picture(scale, first).marks.back().nextItem, second);
  EXPECT_EQ(all.picture(scale, second).marks.back().nextItem, third);
}

TEST_F(TimelineOfLists, KeepsItsMarksWhileTheStripIsMoved) {
  addEnds();
  for (int i = 0; i < 10; ++i) addEntry(500'000 + 600 * i, securityData);
  const Timeline all = timeline();
  // A tenth of all: a hundred seconds are one unit, so that two entries of 600 seconds are one mark.
  const auto marksFrom = [&all](double begin) {
    return all.picture(scaleOf({begin, begin + 1e5}), nullptr).marks;
  };
  EXPECT_THAT(marksFrom(499'000),
              ElementsAre(markAt(10, 2), markAt(22, 2), markAt(34, 2), markAt(46, 2), markAt(58, 2)));
  EXPECT_THAT(marksFrom(502'000), ElementsAre(markAt(4, 2), markAt(16, 2), markAt(28, 2)));
}

TEST_F(TimelineOfLists, GivesOnlyTheMarksInView) {
  addEnds();
  for (const double seconds : {399'999.0, 400'000.0, 500'000.0, 600'000.0, 600'001.0})
    addEntry(seconds, securityData);
  const std::vector<TimelineMark> marks = timeline().picture(scaleOf({400'000, 600'000}), nullptr).marks;
  EXPECT_THAT(marks, ElementsAre(markAt(500, 1), markAt(1000, 2)));
}

TEST_F(TimelineOfLists, SelectsTheMarkThatHoldsTheSelectedItem) {
  addEnds();
  Object* const first = addEntry(500'000, securityData);
  Object* const second = addEntry(500'001, securityData);
  Object* const last = addEntry(500'002, securityData);
  for (const Object* selected : {first, second, last}) {
    const std::vector<TimelineMark> marks = picture(selected).marks;
    EXPECT_FALSE(marks[0].isSelected);
    EXPECT_FALSE(marks[1].isSelected);
    EXPECT_TRUE(marks[2].isSelected);
  }
  EXPECT_FALSE(picture().marks[2].isSelected);
}

TEST_F(TimelineOfLists, OffersTheItemsOfAMarkInTurn) {
  addEnds();
  Object* const first = addEntry(500'000, securityData);
  Object* const second = addEntry(500'001, securityData);
  Object* const last = addEntry(500'002, securityData);
  EXPECT_EQ(picture().marks[2].nextItem, first);
  EXPECT_EQ(picture(first).marks[2].nextItem, second);
  EXPECT_EQ(picture(second).marks[2].nextItem, last);
  EXPECT_EQ(picture(last).marks[2].nextItem, first);
  EXPECT_EQ(picture(first).marks[0].nextItem, histories[0]->children[0].get());
}

}  // namespace
}  // namespace pelmarix::ui
