#include "lsbom/record.h"

#include <gtest/gtest.h>

#include <string>

namespace pelmarix::lsbom {
namespace {

// The fixed part: type, 1, flags, mode, user, group, modification time, size, 1.
std::string fixedPart(char type, char flagsHigh = 0) {
  std::string bytes{type, 1, flagsHigh, 0x0F};
  bytes += {'\x81', '\xA4', 0, 0, 1, '\xF5', 0, 0, 0, 20, '\x5B', '\xAC', '\x56', '\x0F', 0, 0, 2, 1, 1};
  return bytes;
}

std::string zeros(std::size_t count) { return std::string(count, '\0'); }

TEST(Record, HoldsTheFixedPart) {
  const auto record = decodeRecord(fixedPart(2));
  ASSERT_TRUE(record);
  EXPECT_EQ(record->kind, Kind::folder);
  EXPECT_EQ(record->mode, 0100644);
  EXPECT_EQ(record->user, 501U);
  EXPECT_EQ(record->group, 20U);
  EXPECT_EQ(record->modificationTime, 1538020879U);
  EXPECT_EQ(record->size, 513U);
}

TEST(Record, OfAFileHoldsTheChecksumInTheOldFormAndInTodays) {
  for (const std::string& rest : {std::string("\x12\x34\x56\x78"), "\x12\x34\x56\x78" + zeros(8)}) {
    const auto record = decodeRecord(fixedPart(1) + rest);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->kind, Kind::file);
    EXPECT_EQ(record->checksum, 0x12345678U);
  }
}

TEST(Record, OfAPlaceholderFileHasTheChecksumZero) {
  for (const std::size_t rest : {0U, 8U}) {
    const auto record = decodeRecord(fixedPart(1) + zeros(rest));
    ASSERT_TRUE(record);
    EXPECT_EQ(record->checksum, 0U);
  }
}

TEST(Record, OfALinkHoldsTheTarget) {
  const std::string bytes = fixedPart(3) + "\x12\x34\x56\x78" + std::string("\0\0\0\3ab\0", 7);
  for (const std::size_t rest : {0U, 8U}) {
    const std::string whole = bytes + zeros(rest);
    const auto record = decodeRecord(whole);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->kind, Kind::link);
    EXPECT_EQ(record->checksum, 0x12345678U);
    EXPECT_EQ(record->linkTarget, "ab");
  }
}

TEST(Record, OfALinkEndsTheTargetAtItsFirstNul) {
  const std::string bytes = fixedPart(3) + zeros(4) + std::string("\0\0\0\4a\0b\0", 8);
  const auto record = decodeRecord(bytes);
  ASSERT_TRUE(record);
  EXPECT_EQ(record->linkTarget, "a");
}

TEST(Record, OfAProgramHoldsThePartsOfItsArchitectures) {
  const std::string bytes = fixedPart(1, 0x20) + "\x12\x34\x56\x78" + std::string("\1\0\0\0\2", 5) +
                            std::string("\1\0\0\7\0\0\0\3\0\0\0\5\0\0\0\6", 16) +
                            std::string("\0\0\0\7\0\0\0\3\0\0\0\x8\0\0\0\x9", 16) + zeros(8);
  const auto record = decodeRecord(bytes);
  ASSERT_TRUE(record);
  EXPECT_EQ(record->checksum, 0x12345678U);
  ASSERT_TRUE(record->programPart(0x1000007));
  EXPECT_EQ(record->programPart(0x1000007)->size, 5U);
  EXPECT_EQ(record->programPart(0x1000007)->checksum, 6U);
  ASSERT_TRUE(record->programPart(7));
  EXPECT_EQ(record->programPart(7)->size, 8U);
  EXPECT_FALSE(record->programPart(12));
}

TEST(Record, IsAProgramsWithAnyOfFourFlags) {
  const std::string rest = zeros(4) + std::string("\1\xFF\xFF\xFF\xFF", 5);  // too many parts
  for (const char flags : {'\x10', '\x20', '\x40', '\x80'})
    EXPECT_FALSE(decodeRecord(fixedPart(1, flags) + rest)) << static_cast<int>(flags);
  EXPECT_TRUE(decodeRecord(fixedPart(1, 0x0F) + rest));
}

TEST(Record, OfAProgramMayLackTheParts) {
  for (const std::size_t rest : {0U, 8U}) {
    const auto record = decodeRecord(fixedPart(1, 0x10) + "\x12\x34\x56\x78" + zeros(rest));
    ASSERT_TRUE(record);
    EXPECT_EQ(record->checksum, 0x12345678U);
    EXPECT_FALSE(record->programPart(7));
  }
}

TEST(Record, MayHoldADigest) {
  const std::string digest = std::string("\0\0\0\x14", 4) + std::string(20, 'd');
  const auto record = decodeRecord(fixedPart(1) + "\x12\x34\x56\x78" + digest + zeros(8));
  ASSERT_TRUE(record);
  EXPECT_EQ(record->checksum, 0x12345678U);
  EXPECT_TRUE(record->programParts.empty());
}

TEST(Record, OfADeviceNeedsTheFixedPartOnly) {
  const auto record = decodeRecord(fixedPart(4));
  ASSERT_TRUE(record);
  EXPECT_EQ(record->kind, Kind::device);
}

TEST(Record, OfAnUnknownTypeIsTakenAsItIs) {
  for (const char type : {'\0', '\5', '\xFF'}) {
    const auto record = decodeRecord(fixedPart(type));
    ASSERT_TRUE(record);
    EXPECT_EQ(record->kind, Kind::other);
    EXPECT_EQ(record->mode, 0100644);
  }
}

}  // namespace
}  // namespace pelmarix::lsbom
