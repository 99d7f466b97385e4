#include "ui/timeline.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "tests/ui/timeline_fixture.h"

namespace pelmarix::ui {
namespace {

using platform::Object;
using TimelineOfLists = test::TimelineLists;
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
using testing::Not;
using testing::SizeIs;

using history_type::configurationData;
using history_type::criticalUpdate;
using history_type::securityData;
using history_type::securityUpdate;
using history_type::systemInstall;

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
  EXPECT_EQ(timeline().span().begin, -secondsPerDay / 2);
  EXPECT_EQ(timeline().span().end, secondsPerDay / 2);
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
  const auto marksIn = [this](double width) {
    return timeline().picture({timeline().span(), width, 10, 100}, nullptr).marks;
  };
  EXPECT_THAT(marksIn(0), IsEmpty());
  EXPECT_THAT(marksIn(0.9), IsEmpty());
  EXPECT_THAT(marksIn(1), Not(IsEmpty()));
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
  for (const double seconds : {390'000.0, 400'000.0, 500'000.0, 600'000.0, 610'000.0})
    addEntry(seconds, securityData);
  const auto marksWithin = [this](double begin, double end) {
    return timeline().picture(scaleOf({begin, end}), nullptr).marks;
  };
  EXPECT_THAT(marksWithin(400'000, 600'000), ElementsAre(markAt(0, 1), markAt(500, 1), markAt(1000, 1)));
  EXPECT_THAT(marksWithin(400'001, 599'999), SizeIs(3)) << "edges may be rounded";
  EXPECT_THAT(marksWithin(400'200, 599'800), SizeIs(1));
}

TEST_F(TimelineOfLists, GivesMarksUpToHalfAUnitBeyondTheEdges) {
  addEnds();
  for (const double seconds : {400'000.0, 502'500.0}) addEntry(seconds, securityData);
  const platform::TimelineScale hundredSecondsPerUnit{{400'050, 502'450}, 1024, 10, 100};
  EXPECT_THAT(timeline().picture(hundredSecondsPerUnit, nullptr).marks,
              ElementsAre(markAt(-0.5, 1), markAt(1024.5, 1)));
}

TEST_F(TimelineOfLists, KeepsTheMarkOfTheSelectedItemInViewWhileItsTimeIs) {
  addEnds();
  Object* const first = addEntry(500'000, securityData);
  Object* const second = addEntry(500'900, securityData);
  const auto marksFrom = [this](double begin, const Object* selected) {
    return timeline().picture(scaleOf({begin, begin + 100'000}), selected).marks;
  };
  EXPECT_THAT(marksFrom(500'500, second), ElementsAre(markAt(0, 2)));
  EXPECT_THAT(marksFrom(500'500, first), IsEmpty());
  EXPECT_THAT(marksFrom(500'500, nullptr), IsEmpty());
  EXPECT_THAT(marksFrom(500'070, second), ElementsAre(markAt(0, 2)));
  EXPECT_THAT(marksFrom(500'900, second), ElementsAre(markAt(0, 2))) << "just yet";
  EXPECT_THAT(marksFrom(501'000, second), IsEmpty());
  EXPECT_THAT(marksFrom(499'000, second), ElementsAre(markAt(10, 2)));
  EXPECT_THAT(marksFrom(499'950, second), ElementsAre(markAt(0.5, 2)));
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

// The bulk, and what is outside of it.

TEST_F(TimelineOfLists, LeavesAFewBeyondFiveEmptyYearsOutside) {
  Object* const early = addEntry(secondsOf(1904, 1, 1), securityData);
  for (int month = 1; month <= 12; ++month) addEntry(secondsOf(2019, month, 1), securityData);
  Object* const late = addReceipt(secondsOf(2040, 2, 6));
  EXPECT_EQ(timeline().span().begin, secondsOf(2019, 1, 1));
  EXPECT_EQ(timeline().span().end, secondsOf(2019, 12, 1));
  const std::vector<TimelineMark> marks = picture().marks;
  EXPECT_EQ(marks.front().place, TimelinePlace::before);
  EXPECT_EQ(marks.front().item, early);
  EXPECT_EQ(marks.front().date, "1904-01-01");
  EXPECT_EQ(marks.front().x, -10);
  EXPECT_EQ(marks.back().place, TimelinePlace::after);
  EXPECT_EQ(marks.back().item, late);
  EXPECT_EQ(marks.back().date, "2040-02-06");
  EXPECT_EQ(marks.back().x, 1010);
  EXPECT_EQ(marks[1].place, TimelinePlace::inside);
  EXPECT_EQ(marks[1].date, "");
}

TEST_F(TimelineOfLists, KeepsOutliersAtTheEdgesWhateverIsLookedAt) {
  addEntry(secondsOf(1904, 1, 1), securityData);
  addEnds();
  const std::vector<TimelineMark> marks = timeline().picture(scaleOf({3e5, 4e5}), nullptr).marks;
  EXPECT_THAT(marks, ElementsAre(markAt(-10, 1)));
}

TEST_F(TimelineOfLists, MakesOneMarkOfALanesOutliersOnASide) {
  for (int i = 0; i < 60; ++i) addEntry(secondsOf(2019, 1, 1 + i), securityData);
  addEntry(secondsOf(2030, 1, 1), securityData);
  addEntry(secondsOf(2040, 1, 1), securityData);
  addEntry(secondsOf(2040, 1, 1), criticalUpdate);
  EXPECT_THAT(marksOf(TimelineKind::securityData).back(), markAt(1010, 2));
  EXPECT_EQ(marksOf(TimelineKind::securityData).back().date, "2030-01-01");
  EXPECT_THAT(marksOf(TimelineKind::criticalUpdate), ElementsAre(markAt(1010, 1)));
}

TEST_F(TimelineOfLists, TakesAtMostATwentiethForOutliers) {
  for (int i = 0; i < 57; ++i) addEntry(secondsOf(2019, 1, 1 + i), securityData);
  for (int i = 0; i < 3; ++i) addEntry(secondsOf(1904, 1, 1 + i), securityData);
  EXPECT_EQ(timeline().span().begin, secondsOf(2019, 1, 1));
  addEntry(secondsOf(1904, 1, 4), securityData);
  EXPECT_EQ(timeline().span().begin, secondsOf(1904, 1, 1));
}

TEST_F(TimelineOfLists, HasNoOutliersWithFewerThanThreeEntries) {
  addEntry(secondsOf(1904, 1, 1), securityData);
  addEntry(secondsOf(2019, 1, 1), securityData);
  EXPECT_EQ(timeline().span().begin, secondsOf(1904, 1, 1));
  addEntry(secondsOf(2019, 1, 2), securityData);
  EXPECT_EQ(timeline().span().begin, secondsOf(2019, 1, 1));
  addEntry(secondsOf(2019, 1, 3), securityData);
  addEntry(secondsOf(2040, 1, 3), securityData);
  EXPECT_EQ(timeline().span().begin, secondsOf(2019, 1, 1));
  EXPECT_EQ(timeline().span().end, secondsOf(2019, 1, 3));
}

TEST_F(TimelineOfLists, TakesWhatIsNoMoreThanFiveYearsAwayForTheBulk) {
  constexpr double fiveYears = 5 * 365.25 * secondsPerDay;
  const auto spanWith = [this](double seconds) {
    histories.clear();
    for (const double other : {0.0, 1.0, 2.0, 3.0, 4.0, seconds}) addEntry(other, securityData);
    return timeline().span();
  };
  EXPECT_EQ(spanWith(-fiveYears).begin, -fiveYears);
  EXPECT_GT(spanWith(-fiveYears - 1).begin, -secondsPerDay);
  EXPECT_EQ(spanWith(4 + fiveYears).end, 4 + fiveYears);
  EXPECT_LT(spanWith(5 + fiveYears).end, secondsPerDay);
}

TEST_F(TimelineOfLists, TellsWhereAnItemStands) {
  Object* const early = addEntry(secondsOf(1904, 1, 1), securityData);
  Object* const middle = addEntry(secondsOf(2019, 1, 2), systemInstall);
  Object* const last = addReceipt(secondsOf(2019, 6, 1));
  EXPECT_EQ(timeline().timeOf(middle), secondsOf(2019, 1, 2));
  EXPECT_EQ(timeline().timeOf(last), secondsOf(2019, 6, 1));
  EXPECT_EQ(timeline().timeOf(early), secondsOf(2019, 1, 2));
  EXPECT_EQ(timeline().timeOf(histories[0].get()), std::nullopt);
  EXPECT_EQ(timeline().timeOf(nullptr), std::nullopt);
}

TEST_F(TimelineOfLists, DrawsAnyDateThatAFileCanHold) {
  constexpr double most = std::numeric_limits<double>::max();
  const std::vector<double> times = {-most, -1e200, secondsOf(-44, 3, 15), secondsOf(12019, 1, 1),
                                     1e200, most};
  for (const double seconds : times) {
    histories.clear();
    for (const double other : {seconds, seconds, 0.0}) addEntry(other, securityData);
    const TimelineSpan span = timeline().span();
    EXPECT_LT(span.begin, span.end);
    EXPECT_TRUE(std::isfinite(span.begin) && std::isfinite(span.end));
    const auto all = picture();
    EXPECT_EQ(all.marks.size(), 2) << seconds;
    for (const TimelineMark& mark : all.marks) EXPECT_TRUE(mark.x >= -10 && mark.x <= 1010) << mark.x;
  }
}

TEST_F(TimelineOfLists, HasDatesAlongItsAxis) {
  addEntry(secondsOf(2015, 11, 2), systemInstall);
  addEntry(secondsOf(2017, 3, 1), securityData);
  EXPECT_THAT(picture().ticks, ElementsAre(Field(&platform::TimelineTick::label, "2016-01-01"),
                                           Field(&platform::TimelineTick::label, "2016-04-01"),
                                           Field(&platform::TimelineTick::label, "2016-07-01"),
                                           Field(&platform::TimelineTick::label, "2016-10-01"),
                                           Field(&platform::TimelineTick::label, "2017-01-01")));
}

// Large lists.

TEST_F(TimelineOfLists, HoldsManyEntriesAndReceiptsOfOneSecond) {
  for (int i = 0; i < 100'000; ++i) addEntry(0, i % 5);
  for (int i = 0; i < 10'000; ++i) addReceipt(0);
  EXPECT_THAT(picture().marks, ElementsAre(markAt(500, 20'000), markAt(500, 20'000), markAt(500, 20'000),
                                           markAt(500, 20'000), markAt(500, 20'000), markAt(500, 10'000)));
}

TEST_F(TimelineOfLists, DrawsNoMoreOfManyThanThereIsRoomFor) {
  for (int i = 0; i < 100'000; ++i) {
    addGroup("macOS Mojave 10.14");
    addEntry(i * 100, i % 5);
  }
  const TimelinePicture all = picture();
  EXPECT_LE(all.marks.size(), 5 * 101);
  EXPECT_LE(all.bands.size(), 1000);
  EXPECT_LE(all.ticks.size(), 11);
  std::size_t count = 0;
  for (const TimelineMark& mark : all.marks) count += mark.count;
  EXPECT_EQ(count, 100'000);
}

}  // namespace
}  // namespace pelmarix::ui
