// Points in time and the one way the program writes them.
//
// A date is a number of seconds since the reference date 2001-01-01 00:00:00 UTC, fractions included, as
// property lists and the user defaults store it. Leap seconds don't exist; the calendar is the Gregorian one,
// also for years before it was introduced.
#pragma once

#include <compare>
#include <string>

namespace pelmarix {

/// Seconds between the Unix epoch (1970-01-01 00:00:00 UTC) and the reference date.
inline constexpr double secondsFromUnixEpochToReferenceDate = 978307200.0;

struct Date {
  /// Seconds, negative before the reference date. Property lists can hold NaN and infinite values too.
  double timeIntervalSinceReferenceDate = 0.0;

  /// Ordered by time: a later date is greater.
  // clang-tidy 14 takes the zero in the comparisons made of this for a null pointer.
  // NOLINTNEXTLINE(modernize-use-nullptr)
  friend auto operator<=>(const Date&, const Date&) = default;
};

/// True when the date is a real point in time, neither infinite nor not-a-number.
bool isFinite(Date date);

/// The date in UTC as "2019-03-26 10:11:12 +0000", whatever locale and time zone are set. A fraction of a
/// second is cut off: the second shown is the one that had begun. Years take at least four digits, negative
/// ones a minus sign. The date must be finite.
std::string description(Date date);

/// Its day alone: "2019-03-26".
std::string dayDescription(Date date);

/// Days from 1970-01-01 to a day of the Gregorian calendar; negative before. `month` is 1 to 12; `day` may
/// lie outside its month and carries over.
long long daysFromCivil(long long year, int month, long long day);

}  // namespace pelmarix
