#include "ui/timeline_axis.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

#include "base/date.h"

namespace pelmarix::ui {
namespace {

constexpr double minute = 60;
constexpr double hour = 3600;
constexpr double day = 86400;
constexpr long long monthsPerYear = 12;
constexpr int referenceYear = 2001;

// "2019-03-26 10:11".
std::string dateAndMinute(double seconds) {
  const std::string text = description(Date{seconds});
  return text.substr(0, text.rfind(':'));
}

// The least step of at least that many seconds.
long long roundMonths(double seconds) {
  if (28 * day >= seconds) return 1;
  if (90 * day >= seconds) return 3;
  for (long long years = 1;; years *= 10)
    for (const long long few : {1, 2, 5})
      if (static_cast<double>(few * years) * 365 * day >= seconds) return few * years * monthsPerYear;
}

// The first second of a month that is counted from the year 0.
double secondsOfMonth(long long month) {
  const auto year = static_cast<long long>(std::floor(static_cast<double>(month) / monthsPerYear));
  const long long days = daysFromCivil(year, static_cast<int>(month - year * monthsPerYear) + 1, 1);
  return static_cast<double>(days) * day - secondsFromUnixEpochToReferenceDate;
}

// The first of every so many months.
std::vector<double> monthsWithin(platform::TimelineSpan span, long long step) {
  constexpr double secondsPerMonth = 365.2425 / monthsPerYear * day;
  const double estimate = referenceYear * monthsPerYear + span.begin / secondsPerMonth;
  long long month = static_cast<long long>(std::floor(estimate / static_cast<double>(step)) - 1) *
                    step;  // certainly before
  std::vector<double> firsts;
  for (; secondsOfMonth(month) <= span.end; month += step)
    if (secondsOfMonth(month) >= span.begin) firsts.push_back(secondsOfMonth(month));
  return firsts;
}

}  // namespace

std::vector<platform::TimelineTick> timelineTicks(const platform::TimelineScale& scale) {
  const double begin = scale.span.begin;
  const double end = scale.span.end;
  // Years below 0 and above 9999 take more room.
  constexpr std::string_view usual = "2019-03-26 10:11";
  const std::size_t longest =
      std::max({usual.size(), dateAndMinute(begin).size(), dateAndMinute(end).size()});
  const double labelWidth =
      scale.labelWidth * static_cast<double>(longest) / static_cast<double>(usual.size());
  const double secondsPerLabel = labelWidth / scale.width * (end - begin);

  std::vector<platform::TimelineTick> ticks;
  const auto add = [&](double seconds, std::string label) {
    ticks.push_back({(seconds - begin) / (end - begin) * scale.width, std::move(label)});
  };
  // The reference date is a Monday and the first second of it, hence weeks begin on Mondays.
  for (const double step :
       {minute, 5 * minute, 15 * minute, hour, 3 * hour, 12 * hour, day, 2 * day, 7 * day, 14 * day}) {
    if (step < secondsPerLabel) continue;
    for (double seconds = std::ceil(begin / step) * step; seconds <= end; seconds += step)
      add(seconds, step < day ? dateAndMinute(seconds) : dayDescription(Date{seconds}));
    return ticks;
  }
  for (const double seconds : monthsWithin(scale.span, roundMonths(secondsPerLabel)))
    add(seconds, dayDescription(Date{seconds}));
  return ticks;
}

}  // namespace pelmarix::ui
