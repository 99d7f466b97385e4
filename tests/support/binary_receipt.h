// A package receipt as a binary property list, for tests.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>

namespace pelmarix::test {

/// `identifier` has 1 to 14 characters of ASCII; the date is in seconds since the reference date.
inline std::string binaryReceipt(const std::string& identifier, double date) {
  const auto byte = [](std::size_t value) { return static_cast<char>(value); };
  std::string bytes = "bplist00";
  bytes += "\xD2\x01\x02\x03\x04";  // 8: the dictionary
  bytes +=
      "\x5F\x10\x11"
      "PackageIdentifier";  // 13
  bytes +=
      "\x5B"
      "InstallDate";                        // 33
  bytes += byte(0x50 + identifier.size());  // 45
  bytes += identifier;
  const std::size_t dateOffset = bytes.size();
  bytes += '\x33';
  for (int shift = 56; shift >= 0; shift -= 8)
    bytes += byte(std::bit_cast<std::uint64_t>(date) >> shift & 0xFF);
  const std::size_t tableOffset = bytes.size();
  bytes += std::string("\x08\x0D\x21\x2D", 4) + byte(dateOffset);
  bytes += std::string(
      "\0\0\0\0\0\0\x01\x01"
      "\0\0\0\0\0\0\0\x05"
      "\0\0\0\0\0\0\0\0"
      "\0\0\0\0\0\0\0",
      31);
  return bytes + byte(tableOffset);
}

}  // namespace pelmarix::test
