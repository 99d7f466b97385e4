// UTF-8, byte by byte: what is well-formed and what is plain ASCII (The Unicode Standard, table 3-7).
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace pelmarix {

/// The length of the well-formed UTF-8 sequence at the start of [first, last), which is not empty; 0 where it
/// is overlong, truncated, a surrogate or otherwise malformed.
std::size_t utf8SequenceLength(const char* first, const char* last);

/// The first byte in [first, last) that begins no well-formed UTF-8 sequence; `last` if there is none.
const char* findInvalidUtf8(const char* first, const char* last);

inline std::uint64_t loadEightBytes(const char* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

inline constexpr std::uint64_t highBitOfEachByte = 0x8080808080808080;
inline constexpr std::uint64_t lowBitOfEachByte = 0x0101010101010101;

/// The first byte from 0x80 in [first, last); `last` if there is none.
inline const char* findNonAscii(const char* first, const char* last) {
  while (last - first >= 8 && (loadEightBytes(first) & highBitOfEachByte) == 0) first += 8;
  while (first != last && (static_cast<unsigned char>(*first) & 0x80) == 0) ++first;
  return first;
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
