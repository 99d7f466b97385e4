#include "platform/text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "platform/services.h"

namespace pelmarix {
namespace {

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// The number of bytes that continue a sequence beginning with `lead`, and the range that the first of them
/// must lie in (The Unicode Standard, table 3-7); a range without members means that no sequence begins so.
struct Continuation {
  std::size_t count;
  unsigned char first, last;
};

constexpr Continuation continuationOf(unsigned char lead) {
  if (lead >= 0xC2 && lead <= 0xDF) return {1, 0x80, 0xBF};
  if (lead == 0xE0) return {2, 0xA0, 0xBF};
  if (lead == 0xED) return {2, 0x80, 0x9F};
  if (lead >= 0xE1 && lead <= 0xEF) return {2, 0x80, 0xBF};
  if (lead == 0xF0) return {3, 0x90, 0xBF};
  if (lead >= 0xF1 && lead <= 0xF3) return {3, 0x80, 0xBF};
  if (lead == 0xF4) return {3, 0x80, 0x8F};
  return {1, 1, 0};
}

}  // namespace

bool isValidUtf8(std::string_view bytes) {
  const auto byteAt = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  for (std::size_t i = 0; i < bytes.size();) {
    // A listing is nearly all ASCII: eight bytes at a time as long as it lasts.
    std::uint64_t eight = 0;
    while (bytes.size() - i >= sizeof eight) {
      std::memcpy(&eight, bytes.data() + i, sizeof eight);
      if ((eight & 0x8080808080808080U) != 0) break;
      i += sizeof eight;
    }
    if (i == bytes.size()) break;
    const unsigned char lead = byteAt(i++);
    if (lead < 0x80) continue;
    const auto [count, first, last] = continuationOf(lead);
    if (bytes.size() - i < count || byteAt(i) < first || byteAt(i) > last) return false;
    for (std::size_t k = 1; k < count; ++k)
      if (byteAt(i + k) < 0x80 || byteAt(i + k) > 0xBF) return false;
    i += count;
  }
  return true;
}

std::string composed(std::string_view text) { return isAscii(text) ? std::string(text) : composedForm(text); }

bool textEquals(std::string_view text, std::string_view other) {
  if (text == other) return true;
  if (isAscii(text) && isAscii(other)) return false;
  return composed(text) == composed(other);
}

bool textContains(std::string_view text, std::string_view literal) {
  if (isAscii(text) && isAscii(literal)) return text.find(literal) != std::string_view::npos;
  return composed(text).find(composed(literal)) != std::string::npos;
}

}  // namespace pelmarix
