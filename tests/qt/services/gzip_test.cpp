#include "qt/services/gzip.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <cstdint>

namespace pelmarix::qt {
namespace {

using namespace std::string_literals;

constexpr std::size_t plenty = std::size_t{1} << 20U;

std::string littleEndian(std::uint32_t number) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xFF);
  return bytes;
}

std::uint32_t checksum(const std::string& text) {
  std::uint32_t crc = ~std::uint32_t{0};
  for (const char c : text) {
    crc ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320 : 0);
  }
  return ~crc;
}

std::string member(const std::string& blocks, const std::string& text,
                   const std::string& flagsAndFields = "\0"s) {
  return "\x1F\x8B\x08"s + flagsAndFields[0] + "\0\0\0\0\0\x03"s + flagsAndFields.substr(1) + blocks +
         littleEndian(checksum(text)) + littleEndian(static_cast<std::uint32_t>(text.size()));
}

/// Packed by the toolkit, whose format has the same blocks between another head and another end.
std::string packed(const std::string& text, int level, const std::string& flagsAndFields = "\0"s) {
  const std::string zlib =
      qCompress(reinterpret_cast<const uchar*>(text.data()), static_cast<qsizetype>(text.size()), level)
          .toStdString();
  return member(zlib.substr(6, zlib.size() - 10), text, flagsAndFields);
}

/// Text with long and short repetitions and with bytes of all kinds.
std::string variedText(std::size_t size) {
  std::string text;
  std::uint32_t random = 1;
  while (text.size() < size) {
    random = random * 1664525 + 1013904223;
    if (random >> 28 < 4 && !text.empty())
      text += text.substr(random % text.size(), random >> 16 & 0x1FF);
    else
      text += static_cast<char>(random >> 24);
  }
  return text;
}

TEST(Gzip, IsUnpackedWhateverItsBlocksAre) {
  for (const std::string& text :
       {"a"s, "abcabcabcabcabcabc"s, std::string(100'000, 'x'), variedText(100), variedText(500'000)})
    for (const int level : {0, 1, 6, 9}) EXPECT_EQ(unpackGzip(packed(text, level), plenty), text) << level;
}

TEST(Gzip, MayHoldNothing) { EXPECT_EQ(unpackGzip(member("\x03\0"s, ""), plenty), ""); }

TEST(Gzip, MayNameItsFileAndSayMore) {
  EXPECT_EQ(unpackGzip(packed("text", 9, "\x1E\x03\0xyzlist.plist\0a comment\0cc"s), plenty), "text");
}

TEST(Gzip, MayHaveSeveralMembers) {
  EXPECT_EQ(unpackGzip(packed("one, ", 9) + packed("two", 0), plenty), "one, two");
}

TEST(Gzip, IsRefusedWhereverItIsCut) {
  const std::string text = variedText(2000);
  for (const int level : {0, 1, 9}) {
    const std::string whole = packed(text, level, "\x1E\x03\0xyzname\0comment\0cc"s);
    for (std::size_t size = 0; size < whole.size(); ++size)
      ASSERT_FALSE(unpackGzip(std::string(whole, 0, size), plenty)) << level << ' ' << size;
  }
}

TEST(Gzip, IsNeverUnpackedToSomethingElse) {
  const std::string text = variedText(600);
  for (const int level : {0, 1, 9}) {
    const std::string whole = packed(text, level);
    for (std::size_t bit = 0; bit < 8 * whole.size(); ++bit) {
      std::string damaged = whole;
      damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ 1 << bit % 8);
      const auto unpacked = unpackGzip(damaged, plenty);
      // Some bits mean nothing: of the head, and those before a block that is not packed.
      ASSERT_EQ(unpackGzip(damaged, plenty).value_or(text), text) << level << ' ' << bit;
    }
  }
}

TEST(Gzip, IsRefusedWithCodesThatCannotBe) {
  // A block of kind 2 with 19 lengths of 1 bit each, of which there can be two.
  EXPECT_FALSE(unpackGzip(member("\x05\xE0\x49\x92\x24\x49\x92\x24\x49\x92\x24\x49\x92\x24"s, ""), plenty));
  EXPECT_FALSE(unpackGzip(member("\x07"s, ""), plenty)) << "a kind of block that there isn't";
  EXPECT_FALSE(unpackGzip(member("\x03\x02\0"s, ""), plenty)) << "a distance before the beginning";
}

TEST(Gzip, IsRefusedWhenItHoldsMoreThanIsAllowed) {
  for (const int level : {0, 9}) {
    const std::string file = packed(std::string(100'000, 'x'), level);
    EXPECT_TRUE(unpackGzip(file, 100'000));
    EXPECT_FALSE(unpackGzip(file, 99'999));
    EXPECT_FALSE(unpackGzip(file + file, 199'999));
  }
}

TEST(Gzip, IsRefusedWithSomethingBehindIt) {
  EXPECT_FALSE(unpackGzip(packed("text", 9) + "more", plenty));
  EXPECT_FALSE(unpackGzip("text", plenty));
}

}  // namespace
}  // namespace pelmarix::qt
