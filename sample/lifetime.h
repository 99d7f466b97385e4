// The days between which the sample's Mac was in use.
#pragma once

#include <chrono>

#include "base/date.h"

namespace pelmarix::sample {

using Day = std::chrono::year_month_day;

inline constexpr Day delivered{std::chrono::year(2015), std::chrono::November, std::chrono::day(14)};
inline constexpr Day copied{std::chrono::year(2021), std::chrono::March, std::chrono::day(1)};

/// From the reference date to the day's first second.
inline double secondsAt(Day day) {
  const std::chrono::duration<double> seconds = std::chrono::sys_days(day).time_since_epoch();
  return seconds.count() - secondsFromUnixEpochToReferenceDate;
}

}  // namespace pelmarix::sample
