#include "base/date.h"

#include <cmath>
#include <cstdio>

namespace pelmarix {
namespace {

constexpr double secondsPerDay = 86400.0;
// The Gregorian calendar repeats every 400 years, which are a whole number of days.
constexpr long long daysPerCycle = 146097;
constexpr double secondsPerCycle = static_cast<double>(daysPerCycle) * secondsPerDay;
// Counting years from 1 March puts the leap day at the end of a year. This is 0000-03-01.
constexpr long long daysFromCycleStartToUnixEpoch = 719468;

struct CivilDay {
  long long year;
  int month;
  int day;
};

/// The day that lies `dayOfCycle` (0 to 146096) days after 1 March of a year divisible by 400, taken as year
/// 0.
CivilDay civilFromDayOfCycle(long long dayOfCycle) {
  const long long yearOfCycle =
      (dayOfCycle - dayOfCycle / 1460 + dayOfCycle / 36524 - dayOfCycle / 146096) / 365;
  const long long dayOfYear = dayOfCycle - (365 * yearOfCycle + yearOfCycle / 4 - yearOfCycle / 100);
  const long long monthFromMarch = (5 * dayOfYear + 2) / 153;
  const auto day = static_cast<int>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
  const auto month = static_cast<int>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
  return {yearOfCycle + (month <= 2 ? 1 : 0), month, day};
}

void appendTwoDigits(std::string& text, char separator, long long number) {
  const char digits[] = {separator, static_cast<char>('0' + number / 10),
                         static_cast<char>('0' + number % 10)};
  text.append(digits, sizeof digits);
}

/// At least four digits, behind a sign where it is negative.
std::string yearText(double year) {
  // Lists ask for the dates of all their rows at a time, which formatted output would be too slow for.
  if (year >= 1000 && year <= 9999) return std::to_string(static_cast<int>(year));
  char text[400];  // a year of 302 digits is the longest there is
  std::snprintf(text, sizeof text, "%s%04.0f", year < 0 ? "-" : "", std::fabs(year));
  return text;
}

}  // namespace

bool isFinite(Date date) { return std::isfinite(date.timeIntervalSinceReferenceDate); }

long long daysFromCivil(long long year, int month, long long day) {
  const long long marchYear = month <= 2 ? year - 1 : year;
  const long long cycle = (marchYear >= 0 ? marchYear : marchYear - 399) / 400;
  const long long yearOfCycle = marchYear - cycle * 400;
  const long long monthFromMarch = month > 2 ? month - 3 : month + 9;
  const long long dayOfYear = (153 * monthFromMarch + 2) / 5;
  const long long dayOfCycle = yearOfCycle * 365 + yearOfCycle / 4 - yearOfCycle / 100 + dayOfYear;
  return cycle * daysPerCycle + dayOfCycle - daysFromCycleStartToUnixEpoch + (day - 1);
}

std::string description(Date date) {
  // Whole cycles are split off while the number is still a double, so that no finite date overflows an
  // integer.
  const double seconds = std::floor(date.timeIntervalSinceReferenceDate);
  const double wholeCycles = std::floor(seconds / secondsPerCycle);
  double secondsOfCycle = std::fmod(seconds, secondsPerCycle);
  if (secondsOfCycle < 0) secondsOfCycle += secondsPerCycle;

  // Both parts count from the reference date; move them to the start of the cycle that holds 0000-03-01.
  const auto intoCycle = static_cast<long long>(secondsOfCycle) +
                         static_cast<long long>(secondsFromUnixEpochToReferenceDate) +
                         daysFromCycleStartToUnixEpoch * 86400;
  const long long secondOfDay = intoCycle % 86400;
  const long long daysSinceMarchOfYearZero = intoCycle / 86400;
  const CivilDay civil = civilFromDayOfCycle(daysSinceMarchOfYearZero % daysPerCycle);
  const long long yearFromCycleStart = daysSinceMarchOfYearZero / daysPerCycle * 400 + civil.year;
  const double year = wholeCycles * 400.0 + static_cast<double>(yearFromCycleStart);

  std::string text = yearText(year);
  appendTwoDigits(text, '-', civil.month);
  appendTwoDigits(text, '-', civil.day);
  appendTwoDigits(text, ' ', secondOfDay / 3600);
  appendTwoDigits(text, ':', secondOfDay / 60 % 60);
  appendTwoDigits(text, ':', secondOfDay % 60);
  text += " +0000";
  return text;
}

}  // namespace pelmarix
