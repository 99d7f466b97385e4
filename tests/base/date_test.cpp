#include "base/date.h"

#include <gmock/gmock.h>

#include <cmath>
#include <ctime>
#include <limits>
#include <random>

namespace pelmarix {
namespace {

double secondsAt(long long year, int month, int day, int hour = 0, int minute = 0, double second = 0) {
  return static_cast<double>(daysFromCivil(year, month, day)) * 86400.0 + hour * 3600 + minute * 60 + second -
         secondsFromUnixEpochToReferenceDate;
}

std::string describe(double seconds) { return description(Date{seconds}); }

TEST(DateDescription, OfTheReferenceDate) { EXPECT_EQ(describe(0), "2001-01-01 00:00:00 +0000"); }

TEST(DateDescription, OfAnInstantInOurTime) {
  EXPECT_EQ(describe(575287872), "2019-03-26 10:11:12 +0000");
  EXPECT_EQ(describe(secondsAt(2019, 3, 25, 14, 2, 11)), "2019-03-25 14:02:11 +0000");
}

TEST(DateDescription, CutsFractionsOffInsteadOfRounding) {
  EXPECT_EQ(describe(secondsAt(2024, 11, 8, 11, 44, 4.491364)), "2024-11-08 11:44:04 +0000");
  EXPECT_EQ(describe(secondsAt(2024, 12, 31, 23, 59, 59.999)), "2024-12-31 23:59:59 +0000");
  EXPECT_EQ(describe(secondsAt(1999, 12, 31, 23, 59, 59.5)), "1999-12-31 23:59:59 +0000");
}

TEST(DateDescription, OfDatesBeforeTheUnixEpoch) {
  EXPECT_EQ(describe(secondsAt(1869, 1, 3, 8, 16, 32)), "1869-01-03 08:16:32 +0000");
  EXPECT_EQ(describe(secondsAt(1, 1, 1)), "0001-01-01 00:00:00 +0000");
}

TEST(DateDescription, OfTheSecondBeforeTheReferenceDate) {
  EXPECT_EQ(describe(-1), "2000-12-31 23:59:59 +0000");
}

TEST(DateDescription, OfLeapDays) {
  EXPECT_EQ(describe(secondsAt(2000, 2, 29)), "2000-02-29 00:00:00 +0000");
  EXPECT_EQ(describe(secondsAt(1900, 2, 29)), "1900-03-01 00:00:00 +0000");
  EXPECT_EQ(describe(secondsAt(2024, 2, 29, 23, 59, 59)), "2024-02-29 23:59:59 +0000");
}

TEST(DateDescription, OfYearsWithoutFourDigits) {
  EXPECT_EQ(describe(secondsAt(0, 2, 29)), "0000-02-29 00:00:00 +0000");
  EXPECT_EQ(describe(secondsAt(-1, 12, 31)), "-0001-12-31 00:00:00 +0000");
  EXPECT_EQ(describe(secondsAt(999, 12, 31)), "0999-12-31 00:00:00 +0000");
  EXPECT_EQ(describe(secondsAt(10000, 1, 1)), "10000-01-01 00:00:00 +0000");
  EXPECT_EQ(describe(secondsAt(12345, 6, 7)), "12345-06-07 00:00:00 +0000");
  EXPECT_EQ(describe(secondsAt(999999999, 12, 31)), "999999999-12-31 00:00:00 +0000");
}

TEST(DateDescription, OfTheLargestAndSmallestFiniteDatesIsWholeAndEndsInTheZone) {
  for (const double limit : {std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest()}) {
    const std::string text = describe(limit);
    EXPECT_THAT(text, testing::MatchesRegex(
                          "-?[0-9]+-[01][0-9]-[0-3][0-9] [012][0-9]:[0-5][0-9]:[0-5][0-9] \\+0000"));
    EXPECT_GT(text.size(), 300u);
  }
}

TEST(DateDescription, AgreesWithTheCLibraryOnRandomInstants) {
  std::mt19937_64 random(20190326);
  std::uniform_int_distribution<long long> unixSeconds(-100'000'000'000, 200'000'000'000);
  for (int i = 0; i < 20000; ++i) {
    const std::time_t time = unixSeconds(random);
    char expected[64];
    std::strftime(expected, sizeof expected, "%m-%d %H:%M:%S +0000", std::gmtime(&time));
    const std::string text = describe(static_cast<double>(time) - secondsFromUnixEpochToReferenceDate);
    EXPECT_TRUE(text.ends_with(expected)) << time << " " << text;
    EXPECT_EQ(std::stoll(text), 1900 + std::gmtime(&time)->tm_year);
  }
}

TEST(DateDescription, OfADayLeavesTheTimeOut) {
  EXPECT_EQ(dayDescription(Date{575287872}), "2019-03-26");
  EXPECT_EQ(dayDescription(Date{secondsAt(-44, 3, 15)}), "-0044-03-15");
}

TEST(Date, IsFiniteUnlessInfiniteOrNotANumber) {
  EXPECT_TRUE(isFinite(Date{1e300}));
  EXPECT_FALSE(isFinite(Date{std::numeric_limits<double>::infinity()}));
  EXPECT_FALSE(isFinite(Date{-std::numeric_limits<double>::infinity()}));
  EXPECT_FALSE(isFinite(Date{std::nan("")}));
}

TEST(Date, IsGreaterWhenLater) {
  EXPECT_GT(Date{1.5}, Date{1.0});
  EXPECT_LT(Date{-1}, Date{0});
  EXPECT_EQ(Date{2}, Date{2});
}

TEST(DaysFromCivil, CarriesDaysOverTheEndOfTheirMonth) {
  EXPECT_EQ(daysFromCivil(2001, 1, 32), daysFromCivil(2001, 2, 1));
  EXPECT_EQ(daysFromCivil(1970, 1, 1), 0);
  EXPECT_EQ(daysFromCivil(2001, 1, 1), 11323);
}

}  // namespace
}  // namespace pelmarix
