#include "ui/timeline_axis.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/ui/timeline_fixture.h"

namespace pelmarix::ui {
namespace {

using platform::TimelineTick;
using test::secondsOf;
using test::secondsPerDay;
using testing::ElementsAre;
using testing::IsEmpty;

/// A thousand units wide, of which labels take a hundred.
std::vector<TimelineTick> ticksOf(double begin, double end) {
  return timelineTicks({{begin, end}, 1000, 10, 100});
}

std::vector<std::string> labelsOf(double begin, double end) {
  std::vector<std::string> labels;
  for (const TimelineTick& tick : ticksOf(begin, end)) labels.push_back(tick.label);
  return labels;
}

TEST(TimelineAxis, HasRoundStepsOfYears) {
  EXPECT_THAT(
      labelsOf(secondsOf(2015, 11, 2), secondsOf(2021, 2, 28)),
      ElementsAre("2016-01-01", "2017-01-01", "2018-01-01", "2019-01-01", "2020-01-01", "2021-01-01"));
  EXPECT_THAT(labelsOf(secondsOf(2005, 1, 1), secondsOf(2021, 2, 28)),
              ElementsAre("2006-01-01", "2008-01-01", "2010-01-01", "2012-01-01", "2014-01-01", "2016-01-01",
                          "2018-01-01", "2020-01-01"));
  EXPECT_THAT(labelsOf(secondsOf(1904, 1, 1), secondsOf(2019, 1, 1)),
              ElementsAre("1920-01-01", "1940-01-01", "1960-01-01", "1980-01-01", "2000-01-01"));
}

TEST(TimelineAxis, HasRoundStepsOfQuartersMonthsWeeksAndDays) {
  EXPECT_THAT(labelsOf(secondsOf(2018, 11, 2), secondsOf(2020, 2, 28)),
              ElementsAre("2019-01-01", "2019-04-01", "2019-07-01", "2019-10-01", "2020-01-01"));
  EXPECT_THAT(labelsOf(secondsOf(2018, 11, 2), secondsOf(2019, 4, 1)),
              ElementsAre("2018-12-01", "2019-01-01", "2019-02-01", "2019-03-01", "2019-04-01"));
  // Mondays.
  EXPECT_THAT(labelsOf(secondsOf(2019, 3, 1), secondsOf(2019, 4, 20)),
              ElementsAre("2019-03-04", "2019-03-11", "2019-03-18", "2019-03-25", "2019-04-01", "2019-04-08",
                          "2019-04-15"));
  EXPECT_THAT(labelsOf(secondsOf(2019, 3, 26), secondsOf(2019, 4, 1, 1)),
              ElementsAre("2019-03-26", "2019-03-27", "2019-03-28", "2019-03-29", "2019-03-30", "2019-03-31",
                          "2019-04-01"));
}

TEST(TimelineAxis, TellsTheTimeOfDayBelowADay) {
  EXPECT_THAT(labelsOf(secondsOf(2019, 3, 26), secondsOf(2019, 3, 27)),
              ElementsAre("2019-03-26 00:00", "2019-03-26 03:00", "2019-03-26 06:00", "2019-03-26 09:00",
                          "2019-03-26 12:00", "2019-03-26 15:00", "2019-03-26 18:00", "2019-03-26 21:00",
                          "2019-03-27 00:00"));
  EXPECT_THAT(labelsOf(secondsOf(2019, 3, 26, 36000), secondsOf(2019, 3, 26, 36120)),
              ElementsAre("2019-03-26 10:00", "2019-03-26 10:01", "2019-03-26 10:02"));
}

TEST(TimelineAxis, TakesTheSmallestStepThatLeavesLabelsTheirRoom) {
  struct Step {
    double perLabel;  // seconds
    std::string second, third;
  };
  constexpr double minute = 60;
  constexpr double hour = 3600;
  constexpr double year = 365 * secondsPerDay;
  for (const Step& step : {
           Step{minute, "2018-01-01 00:01", "2018-01-01 00:02"},
           Step{minute + 1, "2018-01-01 00:05", "2018-01-01 00:10"},
           Step{5 * minute + 1, "2018-01-01 00:15", "2018-01-01 00:30"},
           Step{15 * minute + 1, "2018-01-01 01:00", "2018-01-01 02:00"},
           Step{hour + 1, "2018-01-01 03:00", "2018-01-01 06:00"},
           Step{3 * hour + 1, "2018-01-01 12:00", "2018-01-02 00:00"},
           Step{12 * hour + 1, "2018-01-02", "2018-01-03"},
           Step{secondsPerDay + 1, "2018-01-02", "2018-01-04"},
           Step{2 * secondsPerDay + 1, "2018-01-08", "2018-01-15"},
           Step{7 * secondsPerDay + 1, "2018-01-08", "2018-01-22"},
           Step{14 * secondsPerDay + 1, "2018-02-01", "2018-03-01"},
           Step{28 * secondsPerDay, "2018-02-01", "2018-03-01"},
           Step{28 * secondsPerDay + 1, "2018-04-01", "2018-07-01"},
           Step{90 * secondsPerDay, "2018-04-01", "2018-07-01"},
           Step{90 * secondsPerDay + 1, "2019-01-01", "2020-01-01"},
           Step{year, "2019-01-01", "2020-01-01"},
           Step{year + 1, "2020-01-01", "2022-01-01"},
           Step{2 * year + 1, "2025-01-01", "2030-01-01"},
           Step{5 * year + 1, "2030-01-01", "2040-01-01"},
           Step{10 * year + 1, "2040-01-01", "2060-01-01"},
           Step{20 * year + 1, "2100-01-01", "2150-01-01"},
       }) {
    // A Monday and the first of a year.
    const double begin = secondsOf(2018, 1, 1);
    std::vector<std::string> labels = labelsOf(begin, begin + 10 * step.perLabel);
    labels.erase(labels.begin(), std::find(labels.begin(), labels.end(), step.second));
    ASSERT_GE(labels.size(), 2) << step.second;
    EXPECT_EQ(labels[1], step.third);
  }
}

TEST(TimelineAxis, BeginsWithTheFirstMonthThatTheSpanHolds) {
  for (int month = 0; month < 12 * 400; ++month) {
    const double first = secondsOf(1900 + month / 12, month % 12 + 1, 1);
    const std::string label = dayDescription(Date{first});
    EXPECT_EQ(labelsOf(first, first + 200 * secondsPerDay).front(), label);
    EXPECT_EQ(labelsOf(first - 1, first + 200 * secondsPerDay).front(), label);
    EXPECT_NE(labelsOf(first + 1, first + 200 * secondsPerDay).front(), label);
  }
}

TEST(TimelineAxis, PutsALabelWhereItsDateIs) {
  const std::vector<TimelineTick> ticks = ticksOf(secondsOf(2019, 3, 26), secondsOf(2019, 4, 5));
  EXPECT_DOUBLE_EQ(ticks[0].x, 0);
  EXPECT_DOUBLE_EQ(ticks[1].x, 100);
  EXPECT_DOUBLE_EQ(ticks.back().x, 1000);
}

TEST(TimelineAxis, GoesBelowTheYear1AndAbove9999) {
  EXPECT_THAT(labelsOf(secondsOf(-3, 6, 1), secondsOf(2, 6, 1)),
              ElementsAre("-0002-01-01", "-0001-01-01", "0000-01-01", "0001-01-01", "0002-01-01"));
  EXPECT_THAT(labelsOf(secondsOf(9998, 6, 1), secondsOf(10001, 6, 1)),
              ElementsAre("9999-01-01", "10000-01-01", "10001-01-01"));
}

TEST(TimelineAxis, HasNoLabelWhereTheSpanHoldsNoRoundDate) {
  EXPECT_THAT(labelsOf(secondsOf(2019, 3, 26, 1), secondsOf(2019, 3, 26, 2)), IsEmpty());
}

// Spans from minutes to millions of years, at many places.
TEST(TimelineAxis, LeavesEachLabelItsRoomAndMostOfTheAxisALabel) {
  for (const double middle : {secondsOf(2019, 3, 26, 36601), secondsOf(-4712, 7, 1), secondsOf(1, 1, 1),
                              secondsOf(30000, 2, 28), -9e14, 9e14}) {
    for (double length = 600; length < 1e14; length *= 1.37) {
      const double begin = middle - length / 2;
      const double end = middle + length / 2;
      const std::vector<TimelineTick> ticks = ticksOf(begin, end);
      double last = -1000;
      for (const TimelineTick& tick : ticks) {
        const double room = tick.label.size() <= 16 ? 100 : 100 * static_cast<double>(tick.label.size()) / 16;
        EXPECT_GT(tick.x - last, room - 1e-6) << tick.label << ", " << length;
        EXPECT_TRUE(tick.x >= 0 && tick.x <= 1000) << tick.x;
        last = tick.x;
      }
      EXPECT_FALSE(ticks.empty()) << begin << ", " << length;
    }
  }
}

}  // namespace
}  // namespace pelmarix::ui
