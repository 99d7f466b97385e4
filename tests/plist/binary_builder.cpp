#include "tests/plist/binary_builder.h"

#include <utility>

namespace pelmarix::plist {
namespace {

int valueOf(char digit) { return digit <= '9' ? digit - '0' : digit - 'A' + 10; }

}  // namespace

std::string hex(std::string_view digits) {
  std::string bytes;
  int half = -1;
  for (const char digit : digits) {
    if (digit == ' ') continue;
    if (half >= 0) bytes += static_cast<char>(half * 16 + valueOf(digit));
    half = half >= 0 ? -1 : valueOf(digit);
  }
  return bytes;
}

std::string bigEndianBytes(std::uint64_t number, std::size_t width) {
  std::string bytes;
  for (std::size_t i = width; i-- > 0;) bytes += static_cast<char>(i < 8 ? number >> (8 * i) & 0xFF : 0);
  return bytes;
}

std::string BinaryPlist::bytes() const {
  std::string file = "bplist00";
  std::vector<std::uint64_t> offsets;
  for (const std::string& object : objects) {
    offsets.push_back(file.size());
    file += object;
  }
  file += slack;
  offsets.insert(offsets.end(), furtherOffsets.begin(), furtherOffsets.end());
  const std::uint64_t tableStart = file.size();
  for (const std::uint64_t offset : offsets) file += bigEndianBytes(offset, offsetWidth);
  file += std::string(6, '\0');
  file += static_cast<char>(offsetWidth);
  file += static_cast<char>(referenceWidth);
  return file + bigEndianBytes(offsets.size(), 8) + bigEndianBytes(topObject, 8) +
         bigEndianBytes(tableStart, 8);
}

std::string binary(std::vector<std::string> objects) {
  return BinaryPlist{.objects = std::move(objects)}.bytes();
}

}  // namespace pelmarix::plist
