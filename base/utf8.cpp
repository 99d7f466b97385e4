#include "base/utf8.h"

namespace pelmarix {
namespace {

// The length of the well-formed sequence at the start of [first, last), which begins with a byte that is not
// ASCII; 0 where there is none (The Unicode Standard, table 3-7).
std::size_t sequenceLength(const char* first, const char* last) {
  const auto byte = [first](std::size_t i) { return static_cast<unsigned char>(first[i]); };
  const auto isContinuation = [byte](std::size_t i) { return (byte(i) & 0xC0) == 0x80; };
  const unsigned lead = byte(0);
  const std::size_t length = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
  if (length > static_cast<std::size_t>(last - first)) return 0;
  for (std::size_t i = 1; i < length; ++i)
    if (!isContinuation(i)) return 0;
  // What remains are overlong forms, surrogates, and numbers above 10FFFF: the second byte tells them.
  if (lead == 0xE0 && byte(1) < 0xA0) return 0;
  if (lead == 0xED && byte(1) > 0x9F) return 0;
  if (lead == 0xF0 && byte(1) < 0x90) return 0;
  if (lead == 0xF4 && byte(1) > 0x8F) return 0;
  return length;
}

}  // namespace

const char* findInvalidUtf8(const char* first, const char* last) {
  for (;;) {
    first = findNonAscii(first, last);
    if (first == last) return last;
    const std::size_t length = sequenceLength(first, last);
    if (length == 0) return first;
    first += length;
  }
}

}  // namespace pelmarix
