// The forms of single values in a listing.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace pelmarix::lsbom {

// "drwxr-xr-x": the type, and what owner, group and others may do. A type without a letter of its own is "?".
std::array<char, 10> symbolicMode(std::uint16_t mode);

// "1,234,567".
std::string groupedNumber(std::uint32_t number);

// In double quotes; quotes and backslashes behind a backslash, control characters as a backslash and three
// octal digits.
std::string quoted(std::string_view text);

// Times in the C library's classic form and in UTC: "Thu Sep 27 04:03:27 2018". An object keeps the day of
// the last time it was asked for, since many files of a package are of one day.
class TimeText {
 public:
  // Seconds since 1970. The view is valid until the next call.
  std::string_view operator()(std::uint32_t seconds);

 private:
  std::uint32_t day_ = UINT32_MAX;  // none: the last day of 32 bits of seconds is 49710
  std::array<char, 24> text_{};
};

}  // namespace pelmarix::lsbom
