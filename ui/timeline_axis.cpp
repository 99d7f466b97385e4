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
  // By some days at most too early or too late, which is made up for by the beginning of the month.
  const double month = referenceYear * monthsPerYear + span.begin / secondsPerMonth;
  std::vector<double> firsts;
  for (auto i = static_cast<long long>(std::floor(month / static_cast<double>(step))) * step;
       secondsOfMonth(i) <= span.end; i += step)
    if (secondsOfMonth(i) >= span.begin) firsts.push_back(secondsOfMonth(i));
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
    const auto first = static_cast<long long>(std::ceil(begin / step));
    const auto last = static_cast<long long>(std::floor(end / step));
    for (long long i = first; i <= last; ++i) {
      const double seconds = static_cast<double>(i) * step;
      add(seconds, step < day ? dateAndMinute(seconds) : dayDescription(Date{seconds}));
    }
    return ticks;
  }
  for (const double seconds : monthsWithin(scale.span, roundMonths(secondsPerLabel)))
    add(seconds, dayDescription(Date{seconds}));
  return ticks;
}

}  // namespace pelmarix::ui
