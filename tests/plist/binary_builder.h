// Binary property lists made by hand.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pelmarix::plist {

/// Bytes written as pairs of hexadecimal digits; blanks are passed over.
std::string hex(std::string_view digits);

/// The last `width` bytes of a number, the most significant first.
std::string bigEndianBytes(std::uint64_t number, std::size_t width);

struct BinaryPlist {
  /// Each with its marker.
  std::vector<std::string> objects;
  std::size_t offsetWidth = 1;
  std::size_t referenceWidth = 1;
  std::uint64_t topObject = 0;
  /// Between the last object and the table.
  std::string slack = {};
  /// Table entries behind those of the objects above.
  std::vector<std::uint64_t> furtherOffsets = {};

  std::string bytes() const;
};

/// A file of these objects, the first on top, everything one byte wide.
std::string binary(std::vector<std::string> objects);

}  // namespace pelmarix::plist
