#include <gtest/gtest.h>

#include "tests/plist/binary_builder.h"
#include "tests/plist/describe.h"

namespace pelmarix::plist {
namespace {

using namespace std::string_literals;

class BinaryAccepts : public testing::TestWithParam<Accepted> {};

TEST_P(BinaryAccepts, theFile) { EXPECT_EQ(decoded(GetParam().bytes), GetParam().description); }

std::string repeated(std::string_view text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

/// An array of two integers, with every offset and reference of these widths.
std::string ofWidths(std::size_t offsetWidth, std::size_t referenceWidth) {
  return BinaryPlist{
      .objects = {hex("A2") + bigEndianBytes(1, referenceWidth) + bigEndianBytes(2, referenceWidth),
                  hex("10 07"), hex("10 08")},
      .offsetWidth = offsetWidth,
      .referenceWidth = referenceWidth}
      .bytes();
}

std::string withHeaderEnding(char byte) {
  std::string file = binary({hex("09")});
  file[7] = byte;
  return file;
}

std::string withUnusedTrailerBytes() {
  std::string file = binary({hex("09")});
  const std::size_t trailer = file.size() - 32;
  for (std::size_t i = 0; i < 6; ++i) file[trailer + i] = '\xFF';
  return file;
}

/// 254 nulls in an array: 255 objects, as many as references of one byte can number.
std::string withAsManyObjectsAsReferencesCanNumber() {
  std::string references;
  std::vector<std::string> objects{""};
  for (int i = 1; i < 255; ++i) {
    references += static_cast<char>(i);
    objects.push_back(hex("00"));
  }
  objects[0] = hex("AF 10 FE") + references;
  return BinaryPlist{.objects = objects, .offsetWidth = 2}.bytes();
}

const std::string lowercaseAlphabet = "abcdefghijklmnopqrstuvwxyz";

const std::vector<Accepted> header = {
    {"AnyByteAfterTheMagic", withHeaderEnding('\xFF'), "true"},
    {"VersionOne", withHeaderEnding('1'), "true"},
    {"NonZeroUnusedTrailerBytes", withUnusedTrailerBytes(), "true"},
    {"OffsetsOf2Bytes", ofWidths(2, 1), "[7, 8]"},
    {"OffsetsOf3Bytes", ofWidths(3, 1), "[7, 8]"},
    {"OffsetsOf4Bytes", ofWidths(4, 1), "[7, 8]"},
    {"OffsetsOf5Bytes", ofWidths(5, 1), "[7, 8]"},
    {"OffsetsOf6Bytes", ofWidths(6, 1), "[7, 8]"},
    {"OffsetsOf7Bytes", ofWidths(7, 1), "[7, 8]"},
    {"OffsetsOf8Bytes", ofWidths(8, 1), "[7, 8]"},
    {"ReferencesOf1Byte", ofWidths(1, 1), "[7, 8]"},
    {"ReferencesOf2Bytes", ofWidths(1, 2), "[7, 8]"},
    {"ReferencesOf3Bytes", ofWidths(1, 3), "[7, 8]"},
    {"ReferencesOf4Bytes", ofWidths(1, 4), "[7, 8]"},
    {"ReferencesOf5Bytes", ofWidths(1, 5), "[7, 8]"},
    {"ReferencesOf6Bytes", ofWidths(1, 6), "[7, 8]"},
    {"ReferencesOf7Bytes", ofWidths(1, 7), "[7, 8]"},
    {"ReferencesOf8Bytes", ofWidths(1, 8), "[7, 8]"},
    {"AsManyObjectsAsReferencesCanNumber", withAsManyObjectsAsReferencesCanNumber(),
     "[null" + repeated(", null", 253) + "]"},
    {"SlackBetweenObjectsAndTable", BinaryPlist{.objects = {hex("09")}, .slack = "slack"}.bytes(), "true"},
    {"AnotherTopObject", BinaryPlist{.objects = {hex("08"), hex("09")}, .topObject = 1}.bytes(), "true"},
};
INSTANTIATE_TEST_SUITE_P(Layout, BinaryAccepts, testing::ValuesIn(header), nameOfRow<Accepted>);

const std::vector<Accepted> objects = {
    {"Null", binary({hex("00")}), "null"},
    {"False", binary({hex("08")}), "false"},
    {"True", binary({hex("09")}), "true"},
    {"AnIntegerOf1ByteReadUnsigned", binary({hex("10 FF")}), "255"},
    {"AnIntegerOf2BytesReadUnsigned", binary({hex("11 FF FE")}), "65534"},
    {"AnIntegerOf4BytesReadUnsigned", binary({hex("12 FF FF FF FE")}), "4294967294"},
    {"AnIntegerOf8BytesReadSigned", binary({hex("13 FF FF FF FF FF FF FF FE")}), "-2"},
    {"TheLeastIntegerOf8Bytes", binary({hex("13 80 00 00 00 00 00 00 00")}), "-9223372036854775808"},
    {"AnIntegerOf16BytesReadByItsLow8Unsigned",
     binary({hex("14 12 34 00 00 00 00 00 00 FF FF FF FF FF FF FF FF")}), "18446744073709551615"},
    {"AnIntegerOf16BytesThatFitsSigned", binary({hex("14 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 2A")}),
     "42"},
    {"ARealOf4Bytes", binary({hex("22 3F C0 00 00")}), "real 1.5"},
    {"ARealOf8Bytes", binary({hex("23 BF F8 00 00 00 00 00 00")}), "real -1.5"},
    {"ARealThatIsNotANumber", binary({hex("23 7F F8 00 00 00 00 00 00")}), "real nan"},
    {"AnInfiniteReal", binary({hex("22 FF 80 00 00")}), "real -inf"},
    {"ADateWithAFraction", binary({hex("33 3F D0 00 00 00 00 00 00")}), "date 0.25"},
    {"ADateBeforeTheReferenceDate", binary({hex("33 C1 6D 75 5C 00 00 00 00")}), "date -15444704"},
    {"ADateThatIsNotANumber", binary({hex("33 7F F8 00 00 00 00 00 00")}), "date nan"},
    {"AnInfiniteDate", binary({hex("33 7F F0 00 00 00 00 00 00")}), "date inf"},
    {"Data", binary({hex("43 00 FF 80")}), "data 00ff80"},
    {"EmptyData", binary({hex("40")}), "data "},
    {"AString", binary({hex("53") + "abc"}), "\"abc\""},
    {"AnEmptyString", binary({hex("50")}), "\"\""},
    {"NulInAString", binary({hex("53") + "a\0b"s}), "\"a\0b\""s},
    {"ALongString", binary({hex("5F 10 1A") + lowercaseAlphabet}), '"' + lowercaseAlphabet + '"'},
    {"ACountOf2Bytes", binary({hex("5F 11 00 1A") + lowercaseAlphabet}), '"' + lowercaseAlphabet + '"'},
    {"ACountOf4Bytes", binary({hex("5F 12 00 00 00 1A") + lowercaseAlphabet}), '"' + lowercaseAlphabet + '"'},
    {"ACountOf8Bytes", binary({hex("5F 13 00 00 00 00 00 00 00 1A") + lowercaseAlphabet}),
     '"' + lowercaseAlphabet + '"'},
    {"ACountOf16Bytes", binary({hex("5F 14") + bigEndianBytes(26, 16) + lowercaseAlphabet}),
     '"' + lowercaseAlphabet + '"'},
    {"AnAsciiStringWithBytesFrom80ReadAsLatin1", binary({hex("54") + "caf\xE9"}), "\"caf\u00E9\""},
    {"AUtf16String", binary({hex("63 00 61 20 AC 00 62")}), "\"a\u20ACb\""},
    {"ASurrogatePair", binary({hex("62 D8 3D DE 00")}), "\"\U0001F600\""},
    {"TheFirstSurrogatePair", binary({hex("62 D8 00 DC 00")}), "\"\U00010000\""},
    {"TheLastSurrogatePair", binary({hex("62 DB FF DF FF")}), "\"\U0010FFFF\""},
    {"WhatStandsBesideSurrogates", binary({hex("62 D7 FF E0 00")}), "\"\uD7FF\uE000\""},
    {"LoneSurrogatesAtTheirBounds", binary({hex("66 DC 00 DF FF D8 00 00 61 DB FF 00 61")}),
     "\"\uFFFD\uFFFD\uFFFDa\uFFFDa\""},
    {"ALoneHighSurrogate", binary({hex("62 D8 3D 00 61")}), "\"\uFFFDa\""},
    {"ALoneLowSurrogate", binary({hex("62 DE 00 00 61")}), "\"\uFFFDa\""},
    {"AHighSurrogateAtTheEnd", binary({hex("61 D8 3D")}), "\"\uFFFD\""},
    {"NulInAUtf16String", binary({hex("62 00 00 00 61")}), "\"\0a\""s},
    {"AUidOf1Byte", binary({hex("80 07")}), "uid 7"},
    {"AUidOf3Bytes", binary({hex("82 01 00 00")}), "uid 65536"},
    {"TheLargestUid", binary({hex("83 FF FF FF FF")}), "uid 4294967295"},
    {"AUidOf16Bytes", binary({hex("8F") + bigEndianBytes(7, 16)}), "uid 7"},
    {"AnEmptyArray", binary({hex("A0")}), "[]"},
    {"AnEmptySet", binary({hex("C0")}), "set[]"},
    {"ASet", binary({hex("C2 01 02"), hex("10 01"), hex("10 02")}), "set[1, 2]"},
    {"AnEmptyDictionary", binary({hex("D0")}), "{}"},
    {"ADictionary",
     binary({hex("D2 01 02 03 04"), hex("51") + "a", hex("51") + "b", hex("10 01"), hex("A0")}),
     R"({"a": 1, "b": []})"},
    {"AnEmptyKey", binary({hex("D1 01 02"), hex("50"), hex("09")}), R"({"": true})"},
    {"AUtf16Key", binary({hex("D1 01 02"), hex("61 20 AC"), hex("09")}), "{\"\u20AC\": true}"},
    {"ASharedReference", binary({hex("A3 01 01 01"), hex("A1 02"), hex("08")}),
     "[[false], [false], [false]]"},
    {"AKeyThatIsAlsoAValue", binary({hex("D1 01 01"), hex("51") + "a"}), R"({"a": "a"})"},
};
INSTANTIATE_TEST_SUITE_P(Object, BinaryAccepts, testing::ValuesIn(objects), nameOfRow<Accepted>);

const std::vector<Accepted> places = {
    {"AnUnreferencedObject", binary({hex("09"), hex("08")}), "true"},
    {"AnUnreferencedObjectOfNoKind", binary({hex("09"), hex("77")}), "true"},
    {"AnUnusedOffsetBelowTheObjects", BinaryPlist{.objects = {hex("09")}, .furtherOffsets = {0, 7}}.bytes(),
     "true"},
    {"TwoObjectsInOnePlace",
     BinaryPlist{.objects = {hex("A2 01 02"), hex("09")}, .furtherOffsets = {11}}.bytes(), "[true, true]"},
    // The string at 11 is "Qa"; the "Q" is the marker of another string, "a".
    {"OverlappingObjects",
     BinaryPlist{.objects = {hex("A2 01 02"), hex("52") + "Qa"}, .furtherOffsets = {12}}.bytes(),
     R"(["Qa", "a"])"},
};
INSTANTIATE_TEST_SUITE_P(Place, BinaryAccepts, testing::ValuesIn(places), nameOfRow<Accepted>);

TEST(BinaryDictionary, theLastOfARepeatedKeyWins) {
  const std::string file = binary({hex("D3 01 02 03 04 05 06"), hex("51") + "a", hex("51") + "b",
                                   hex("51") + "a", hex("10 01"), hex("10 02"), hex("10 03")});
  const Result<Document, Error> document = Document::decode(file);
  ASSERT_TRUE(document);
  EXPECT_EQ(document->root().find("a")->integer(), 3);
  EXPECT_EQ(document->root().find("b")->integer(), 2);
}

}  // namespace
}  // namespace pelmarix::plist
