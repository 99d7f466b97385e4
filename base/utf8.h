// UTF-8: what is well-formed and what is plain ASCII (The Unicode Standard, table 3-7).
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace pelmarix {

/// The length of the well-formed UTF-8 sequence at the start of [first, last), which is not empty; 0 where it
/// is overlong, truncated, a surrogate or otherwise malformed.
std::size_t utf8SequenceLength(const char* first, const char* last);

/// The first byte in [first, last) that begins no well-formed UTF-8 sequence; `last` if there is none.
const char* findInvalidUtf8(const char* first, const char* last);

/// Eight bytes as one number, the first byte lowest. Compilers make one load of it.
inline std::uint64_t loadEightBytes(const char* bytes) {
  const auto byte = [bytes](std::size_t i) { return std::uint64_t{static_cast<unsigned char>(bytes[i])}; };
  return byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24 | byte(4) << 32 | byte(5) << 40 |
         byte(6) << 48 | byte(7) << 56;
}

inline constexpr std::uint64_t highBitOfEachByte = 0x8080808080808080;
inline constexpr std::uint64_t lowBitOfEachByte = 0x0101010101010101;

/// The first of eight loaded bytes whose high bit is set; at least one is.
inline std::ptrdiff_t firstHighBit(std::uint64_t word) {
  return std::countr_zero(word & highBitOfEachByte) / 8;
}

/// The first byte from 0x80 in [first, last); `last` if there is none.
inline const char* findNonAscii(const char* first, const char* last) {
  if (last - first < 8) return std::find_if(first, last, [](char byte) { return (byte & 0x80) != 0; });
  // Of the last eight some may be seen twice.
  const char* const lastEight = last - 8;
  for (;; first = std::min(first + 8, lastEight)) {
    const std::uint64_t word = loadEightBytes(first);
    if ((word & highBitOfEachByte) != 0) return first + firstHighBit(word);
    if (first == lastEight) return last;
  }
}

/// True when all of the text is well-formed. NUL is a character like any other.
inline bool isValidUtf8(std::string_view text) {
  const char* const last = text.data() + text.size();
  return findInvalidUtf8(text.data(), last) == last;
}

inline bool isAscii(std::string_view text) {
  const char* const last = text.data() + text.size();
  return findNonAscii(text.data(), last) == last;
}

}  // namespace pelmarix
