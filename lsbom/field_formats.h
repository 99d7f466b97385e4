// The forms of single values in a listing.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace pelmarix::lsbom {

/// "drwxr-xr-x": the type, and what owner, group and others may do. A type without a letter of its own is
/// "?".
std::string symbolicMode(std::uint16_t mode);

/// "1,234,567".
std::string groupedNumber(std::uint32_t number);

/// Seconds since 1970 in the C library's classic form and in UTC: "Thu Sep 27 04:03:27 2018".
std::array<char, 24> classicTime(std::uint32_t seconds);

}  // namespace pelmarix::lsbom
