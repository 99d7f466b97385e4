// A package receipt as a binary property list, for tests. They compile tests/plist/binary_builder.cpp too.
#pragma once

#include <bit>
#include <cstdint>
#include <string>

#include "tests/plist/binary_builder.h"

namespace pelmarix::test {

/// `identifier` has 1 to 14 characters of ASCII; the date is in seconds since the reference date.
inline std::string binaryReceipt(const std::string& identifier, double date) {
  using plist::bigEndianBytes;
  using plist::hex;
  return plist::binary({hex("D2 01 02 03 04"), hex("5F 10 11") + "PackageIdentifier",
                        hex("5B") + "InstallDate", bigEndianBytes(0x50 + identifier.size(), 1) + identifier,
                        hex("33") + bigEndianBytes(std::bit_cast<std::uint64_t>(date), 8)});
}

}  // namespace pelmarix::test
