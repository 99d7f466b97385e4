// The format, from RFC 1952 (gzip) and RFC 1951 (deflate).
//
//   member    1F 8B 08, flags, 6 bytes, what the flags announce, blocks, CRC-32 and size of the contents
//   block     1 bit: it is the last one; 2 bits: its kind
//     kind 0  up to a whole byte; size, its complement, that many bytes as they are
//     kind 1  symbols, in codes that are fixed
//     kind 2  the lengths of the codes, themselves coded; symbols in these codes
//
// A symbol below 256 is a byte, 256 the end of the block, any other a length, which is followed by a
// distance: so many of the bytes before come again. Numbers are little-endian, and bits are taken from the
// low end.

#include "qt/services/gzip.h"

#include <array>
#include <bit>
#include <cstdint>
#include <vector>

namespace pelmarix::qt {
namespace {

constexpr std::size_t longestCode = 15;
constexpr std::size_t endOfBlock = 256;
constexpr std::size_t firstLength = 257;

struct Range {
  std::uint16_t first;
  std::uint8_t extraBits;
};
constexpr std::array<Range, 29> lengthRanges{
    {{3, 0},  {4, 0},  {5, 0},  {6, 0},   {7, 0},   {8, 0},   {9, 0},   {10, 0},  {11, 1}, {13, 1},
     {15, 1}, {17, 1}, {19, 2}, {23, 2},  {27, 2},  {31, 2},  {35, 3},  {43, 3},  {51, 3}, {59, 3},
     {67, 4}, {83, 4}, {99, 4}, {115, 4}, {131, 5}, {163, 5}, {195, 5}, {227, 5}, {258, 0}}};
constexpr std::array<Range, 30> distanceRanges{
    {{1, 0},     {2, 0},     {3, 0},     {4, 0},      {5, 1},      {7, 1},     {9, 2},     {13, 2},
     {17, 3},    {25, 3},    {33, 4},    {49, 4},     {65, 5},     {97, 5},    {129, 6},   {193, 6},
     {257, 7},   {385, 7},   {513, 8},   {769, 8},    {1025, 9},   {1537, 9},  {2049, 10}, {3073, 10},
     {4097, 11}, {6145, 11}, {8193, 12}, {12289, 12}, {16385, 13}, {24577, 13}}};
// The order in which the lengths of the codes for lengths stand.
constexpr std::array<std::uint8_t, 19> orderOfLengths{16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                      11, 4,  12, 3, 13, 2, 14, 1, 15};

// A prefix code: the codes of one length are consecutive numbers, in the order of their symbols.
struct Code {
  std::array<std::uint16_t, longestCode + 1> codesOfLength{};
  std::vector<std::uint16_t> symbols;  // in the order of their codes
};

// Nothing when there are more codes than there can be. There may be fewer.
std::optional<Code> makeCode(const std::uint8_t* lengths, std::size_t count) {
  Code code;
  std::size_t room = std::size_t{1} << longestCode;
  for (std::size_t length = 1; length <= longestCode; ++length)
    for (std::size_t symbol = 0; symbol < count; ++symbol) {
      if (lengths[symbol] != length) continue;
      const std::size_t taken = std::size_t{1} << (longestCode - length);
      if (taken > room) return std::nullopt;
      room -= taken;
      ++code.codesOfLength[length];
      code.symbols.push_back(static_cast<std::uint16_t>(symbol));
    }
  return code;
}

// Functions are false where the file is damaged, cut or too large.
class Unpacker {
 public:
  Unpacker(std::string_view packed, std::size_t maximumSize) : packed_(packed), maximumSize_(maximumSize) {}

  bool unpackAll() {
    do {
      if (!unpackMember()) return false;
    } while (at_ != packed_.size());
    return true;
  }
  std::string takeContents() { return std::move(contents_); }

 private:
  // Bits, of which there are at most 16 at a time.
  bool take(std::size_t count, std::uint32_t& value) {
    while (bitCount_ < count) {
      if (at_ == packed_.size()) return false;
      bits_ |= std::uint32_t{static_cast<unsigned char>(packed_[at_++])} << bitCount_;
      bitCount_ += 8;
    }
    value = bits_ & ((std::uint32_t{1} << count) - 1);
    bits_ >>= count;
    bitCount_ -= count;
    return true;
  }
  void skipToByte() {
    bits_ = 0;
    bitCount_ = 0;
  }
  bool takeBytes(std::size_t count, std::string_view& bytes) {
    if (count > packed_.size() - at_) return false;
    bytes = packed_.substr(at_, count);
    at_ += count;
    return true;
  }
  bool takeNumber(std::size_t width, std::uint32_t& number) {
    std::string_view bytes;
    if (!takeBytes(width, bytes)) return false;
    number = 0;
    while (width-- > 0) number = number << 8 | static_cast<unsigned char>(bytes[width]);
    return true;
  }

  bool unpackMember();
  bool skipHeader();
  bool unpackBlock(std::uint32_t kind);
  bool copyBlock();
  bool readCodes(Code& symbols, Code& distances);
  bool unpackSymbols(const Code& symbols, const Code& distances);
  bool takeSymbol(const Code& code, std::size_t& symbol);
  bool repeat(std::size_t lengthSymbol, const Code& distances);

  std::string_view packed_;
  std::size_t maximumSize_;
  std::size_t at_ = 0;
  std::uint32_t bits_ = 0;
  std::size_t bitCount_ = 0;
  std::string contents_;
  std::size_t startOfMember_ = 0;
};

std::uint32_t crc32(std::string_view bytes) {
  static const auto table = [] {
    std::array<std::uint32_t, 256> values{};
    for (std::uint32_t i = 0; i < values.size(); ++i) {
      std::uint32_t value = i;
      for (int bit = 0; bit < 8; ++bit) value = value >> 1 ^ ((value & 1) != 0 ? 0xEDB88320U : 0U);
      values[i] = value;
    }
    return values;
  }();
  std::uint32_t crc = ~std::uint32_t{0};
  for (const char byte : bytes) crc = crc >> 8 ^ table[(crc ^ static_cast<unsigned char>(byte)) & 0xFF];
  return ~crc;
}

bool Unpacker::unpackMember() {
  startOfMember_ = contents_.size();
  if (!skipHeader()) return false;
  std::uint32_t isLast = 0;
  while (isLast == 0) {
    std::uint32_t kind = 0;
    if (!take(1, isLast) || !take(2, kind) || !unpackBlock(kind)) return false;
  }
  skipToByte();
  const std::string_view contents = std::string_view(contents_).substr(startOfMember_);
  std::uint32_t checksum = 0;
  std::uint32_t size = 0;
  return takeNumber(4, checksum) && takeNumber(4, size) && checksum == crc32(contents) &&
         size == contents.size();
}

bool Unpacker::skipHeader() {
  std::string_view header;
  if (!takeBytes(10, header) || !header.starts_with("\x1F\x8B\x08")) return false;
  const auto flags = static_cast<unsigned char>(header[3]);
  std::string_view skipped;
  std::uint32_t size = 0;
  if ((flags & 4U) != 0 && (!takeNumber(2, size) || !takeBytes(size, skipped)))
    return false;                          // further fields
  for (const unsigned text : {8U, 16U}) {  // the file's name, a comment
    if ((flags & text) == 0) continue;
    const std::size_t end = packed_.find('\0', at_);
    if (end == std::string_view::npos) return false;
    at_ = end + 1;
  }
  return (flags & 2U) == 0 || takeBytes(2, skipped);  // the header's checksum
}

bool Unpacker::unpackBlock(std::uint32_t kind) {
  Code symbols;
  Code distances;
  if (kind == 0) return copyBlock();
  if (kind == 1) {
    std::array<std::uint8_t, 288> lengths{};
    for (std::size_t i = 0; i < lengths.size(); ++i)
      lengths[i] = static_cast<std::uint8_t>(i < 144 ? 8 : i < 256 ? 9 : i < 280 ? 7 : 8);
    symbols = *makeCode(lengths.data(), lengths.size());
    lengths.fill(5);
    distances = *makeCode(lengths.data(), 32);
  } else if (kind != 2 || !readCodes(symbols, distances)) {
    return false;
  }
  return unpackSymbols(symbols, distances);
}

bool Unpacker::copyBlock() {
  skipToByte();
  std::uint32_t size = 0;
  std::uint32_t complement = 0;
  std::string_view bytes;
  if (!takeNumber(2, size) || !takeNumber(2, complement) || (size ^ complement) != 0xFFFF) return false;
  if (!takeBytes(size, bytes) || size > maximumSize_ - contents_.size()) return false;
  contents_ += bytes;
  return true;
}

bool Unpacker::readCodes(Code& symbols, Code& distances) {
  std::uint32_t symbolCount = 0;
  std::uint32_t distanceCount = 0;
  std::uint32_t lengthCount = 0;
  if (!take(5, symbolCount) || !take(5, distanceCount) || !take(4, lengthCount)) return false;
  symbolCount += 257;
  distanceCount += 1;
  std::array<std::uint8_t, 19> lengthsOfLengths{};
  for (std::size_t i = 0; i < lengthCount + 4; ++i) {
    std::uint32_t length = 0;
    if (!take(3, length)) return false;
    lengthsOfLengths[orderOfLengths[i]] = static_cast<std::uint8_t>(length);
  }
  const auto lengthCode = makeCode(lengthsOfLengths.data(), lengthsOfLengths.size());
  if (!lengthCode) return false;

  std::vector<std::uint8_t> lengths;
  while (lengths.size() < symbolCount + distanceCount) {
    std::size_t symbol = 0;
    if (!takeSymbol(*lengthCode, symbol)) return false;
    if (symbol < 16) {
      lengths.push_back(static_cast<std::uint8_t>(symbol));
      continue;
    }
    if (symbol == 16 && lengths.empty()) return false;
    const std::uint8_t repeated = symbol == 16 ? lengths.back() : std::uint8_t{0};
    std::uint32_t times = 0;
    if (!take(symbol == 16 ? 2 : symbol == 17 ? 3 : 7, times)) return false;
    lengths.insert(lengths.end(), times + (symbol == 18 ? 11 : 3), repeated);
  }
  if (lengths.size() != symbolCount + distanceCount) return false;
  const auto symbolCode = makeCode(lengths.data(), symbolCount);
  const auto distanceCode = makeCode(lengths.data() + symbolCount, distanceCount);
  if (!symbolCode || !distanceCode) return false;
  symbols = *symbolCode;
  distances = *distanceCode;
  return true;
}

bool Unpacker::unpackSymbols(const Code& symbols, const Code& distances) {
  for (;;) {
    std::size_t symbol = 0;
    if (!takeSymbol(symbols, symbol)) return false;
    if (symbol == endOfBlock) return true;
    if (symbol > endOfBlock) {
      if (!repeat(symbol - firstLength, distances)) return false;
    } else {
      if (contents_.size() == maximumSize_) return false;
      contents_ += static_cast<char>(symbol);
    }
  }
}

bool Unpacker::takeSymbol(const Code& code, std::size_t& symbol) {
  std::size_t number = 0;
  std::size_t firstNumber = 0;
  std::size_t symbolsBefore = 0;
  for (std::size_t length = 1; length <= longestCode; ++length) {
    std::uint32_t bit = 0;
    if (!take(1, bit)) return false;
    number = number << 1 | bit;
    const std::size_t codes = code.codesOfLength[length];
    if (number < firstNumber + codes) {
      symbol = code.symbols[symbolsBefore + number - firstNumber];
      return true;
    }
    symbolsBefore += codes;
    firstNumber = (firstNumber + codes) << 1;
  }
  return false;
}

bool Unpacker::repeat(std::size_t lengthSymbol, const Code& distances) {
  std::size_t distanceSymbol = 0;
  std::uint32_t moreLength = 0;
  std::uint32_t moreDistance = 0;
  if (lengthSymbol >= lengthRanges.size() || !take(lengthRanges[lengthSymbol].extraBits, moreLength))
    return false;
  if (!takeSymbol(distances, distanceSymbol) || distanceSymbol >= distanceRanges.size() ||
      !take(distanceRanges[distanceSymbol].extraBits, moreDistance))
    return false;
  const std::size_t length = lengthRanges[lengthSymbol].first + moreLength;
  const std::size_t distance = distanceRanges[distanceSymbol].first + moreDistance;
  if (distance > contents_.size() - startOfMember_ || length > maximumSize_ - contents_.size()) return false;
  for (std::size_t i = 0; i < length; ++i) contents_ += contents_[contents_.size() - distance];
  return true;
}

}  // namespace

std::optional<std::string> unpackGzip(std::string_view packed, std::size_t maximumSize) {
  Unpacker unpacker(packed, maximumSize);
  if (!unpacker.unpackAll()) return std::nullopt;
  return unpacker.takeContents();
}

}  // namespace pelmarix::qt
