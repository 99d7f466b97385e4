#include "base/date.h"

#include <chrono>
#include <cmath>
#include <cstdio>

namespace pelmarix {
namespace {

// The Gregorian calendar repeats every 400 years, which are a whole number of days.
constexpr int yearsPerCycle = 400;
constexpr long long daysPerCycle = 146097;
constexpr double secondsPerCycle = static_cast<double>(daysPerCycle) * 86400.0;

void appendTwoDigits(std::string& text, char separator, unsigned number) {
  const char digits[] = {separator, static_cast<char>('0' + number / 10),
                         static_cast<char>('0' + number % 10)};
  text.append(digits, sizeof digits);
}

// At least four digits, behind a sign where it is negative.
std::string yearText(double year) {
  // Lists ask for the dates of all their rows at a time, which formatted output would be too slow for.
  if (year >= 1000 && year <= 9999) return std::to_string(static_cast<int>(year));
  char text[400];  // the longest year has 301 digits and a sign
  std::snprintf(text, sizeof text, "%0*.0f", year < 0 ? 5 : 4, year);
  return text;
}

}  // namespace

bool isFinite(Date date) { return std::isfinite(date.timeIntervalSinceReferenceDate); }

long long daysFromCivil(long long year, int month, long long day) {
  // The standard library's years are short: it is given one of the same place in a cycle.
  const std::chrono::year sameYear(static_cast<int>(year % yearsPerCycle));
  const std::chrono::sys_days monthStart = sameYear / std::chrono::month(static_cast<unsigned>(month)) / 1;
  return year / yearsPerCycle * daysPerCycle + monthStart.time_since_epoch().count() + day - 1;
}

std::string description(Date date) {
  // Whole cycles are split off while the number is still a double, so that no finite date overflows an
  // integer.
  const double seconds = std::floor(date.timeIntervalSinceReferenceDate);
  const double wholeCycles = std::floor(seconds / secondsPerCycle);
  double secondsOfCycle = std::fmod(seconds, secondsPerCycle);
  if (secondsOfCycle < 0) secondsOfCycle += secondsPerCycle;

  constexpr std::chrono::sys_days referenceDay = std::chrono::year(2001) / std::chrono::January / 1;
  const std::chrono::sys_seconds time =
      referenceDay + std::chrono::seconds(static_cast<long long>(secondsOfCycle));
  const auto midnight = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day day(midnight);
  const auto secondOfDay = static_cast<unsigned>((time - midnight).count());

  std::string text = yearText(wholeCycles * yearsPerCycle + static_cast<int>(day.year()));
  appendTwoDigits(text, '-', static_cast<unsigned>(day.month()));
  appendTwoDigits(text, '-', static_cast<unsigned>(day.day()));
  appendTwoDigits(text, ' ', secondOfDay / 3600);
  appendTwoDigits(text, ':', secondOfDay / 60 % 60);
  appendTwoDigits(text, ':', secondOfDay % 60);
  text += " +0000";
  return text;
}

std::string dayDescription(Date date) {
  const std::string text = description(date);
  return text.substr(0, text.find(' '));
}

}  // namespace pelmarix
