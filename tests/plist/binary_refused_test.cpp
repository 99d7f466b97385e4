#include <gtest/gtest.h>

#include "tests/plist/binary_builder.h"
#include "tests/plist/describe.h"

namespace pelmarix::plist {
namespace {

/// {"name": "AB", "date": 2019-03-26 13:33:20}. Where the rows below change a byte, they name its place here.
std::string goodFile() {
  return hex(
      "62 70 6C 69 73 74 30 30"     // 00  header "bplist00"
      "D2 01 02 03 04"              // 08  object 0: dictionary, keys 1 and 2, values 3 and 4
      "54 6E 61 6D 65"              // 0D  object 1: "name"
      "54 64 61 74 65"              // 12  object 2: "date"
      "62 00 41 00 42"              // 17  object 3: "AB" in UTF-16
      "33 41 C1 25 30 D0 00 00 00"  // 1C  object 4: date
      "08 0D 12 17 1C"              // 25  table
      "00 00 00 00 00 00"           // 2A  trailer: unused
      "01"                          // 30  width of an offset
      "01"                          // 31  width of a reference
      "00 00 00 00 00 00 00 05"     // 32  number of objects
      "00 00 00 00 00 00 00 00"     // 3A  top object
      "00 00 00 00 00 00 00 25");   // 42  start of the table
}

struct ChangedByte {
  std::string name;
  std::size_t place;
  unsigned char byte;
  Reason reason;

  friend void PrintTo(const ChangedByte& row, std::ostream* out) { *out << row.name; }
};

class BinaryFileWithChangedByte : public testing::TestWithParam<ChangedByte> {};

TEST_P(BinaryFileWithChangedByte, isRefused) {
  std::string file = goodFile();
  ASSERT_EQ(decoded(file), R"({"name": "AB", "date": date 575300000})");
  file[GetParam().place] = static_cast<char>(GetParam().byte);
  EXPECT_EQ(refusal(file), GetParam().reason);
}

const std::vector<ChangedByte> corruptions = {
    {"otherMagic", 0x06, '1', Reason::unexpectedText},
    {"offsetWidthZero", 0x30, 0, Reason::badWidth},
    {"offsetWidthNine", 0x30, 9, Reason::badWidth},
    {"offsetWidth255", 0x30, 255, Reason::badWidth},
    {"offsetWidthTwo", 0x30, 2, Reason::lengthDiffers},
    {"referenceWidthZero", 0x31, 0, Reason::badWidth},
    {"referenceWidthNine", 0x31, 9, Reason::badWidth},
    {"referenceWidthTwo", 0x31, 2, Reason::badReference},
    {"noObjects", 0x39, 0, Reason::noObjects},
    {"tooSmallObjectCount", 0x39, 4, Reason::lengthDiffers},
    {"tooLargeObjectCount", 0x39, 6, Reason::lengthDiffers},
    {"hugeObjectCount", 0x32, 0xFF, Reason::lengthDiffers},
    {"badTopObject", 0x41, 5, Reason::badTopObject},
    {"hugeTopObject", 0x3A, 0x80, Reason::badTopObject},
    {"tableStartInHeader", 0x49, 0x08, Reason::badTableStart},
    {"tableStartAtTrailer", 0x49, 0x2A, Reason::lengthDiffers},
    {"tableStartPastTrailer", 0x49, 0x2B, Reason::badTableStart},
    {"hugeTableStart", 0x42, 0xFF, Reason::badTableStart},
    {"tableStartTooEarly", 0x49, 0x24, Reason::lengthDiffers},
    {"tableStartTooLate", 0x49, 0x26, Reason::lengthDiffers},
    {"offsetBelowObjects", 0x25, 0x07, Reason::badOffset},
    {"offsetAtTableStart", 0x29, 0x25, Reason::badOffset},
    {"offsetPastTableStart", 0x29, 0xFF, Reason::badOffset},
    {"firstOffsetAtTableStart", 0x25, 0x25, Reason::badOffset},
    {"firstOffsetPastTableStart", 0x25, 0x26, Reason::badOffset},
    {"referenceToNoObject", 0x0C, 0x05, Reason::badReference},
    {"referenceFarAway", 0x0C, 0xFF, Reason::badReference},
    {"keyIsDate", 0x09, 0x04, Reason::keyNotString},
    {"keyIsItsOwnDictionary", 0x09, 0x00, Reason::cycle},
    {"valueIsItsOwnDictionary", 0x0B, 0x00, Reason::cycle},
    {"entriesThatRunIntoOtherObjects", 0x08, 0xDE, Reason::keyNotString},
    {"utf16WithinItsCountButNotItsBytes", 0x17, 0x68, Reason::objectTooLong},
    {"stringWithCountThatIsNoInteger", 0x0D, 0x5F, Reason::badCount},
    {"dateMarker30", 0x1C, 0x30, Reason::unknownMarker},
    {"dateMarker32", 0x1C, 0x32, Reason::unknownMarker},
    {"dateMarker34", 0x1C, 0x34, Reason::unknownMarker},
};
INSTANTIATE_TEST_SUITE_P(Corrupt, BinaryFileWithChangedByte, testing::ValuesIn(corruptions),
                         nameOfRow<ChangedByte>);

class BinaryRefuses : public testing::TestWithParam<Refused> {};

TEST_P(BinaryRefuses, theFile) { EXPECT_EQ(refusal(GetParam().bytes), GetParam().reason); }

/// Nulls in an array with references of one byte.
std::string withObjects(std::size_t count) {
  std::vector<std::string> objects(count, hex("00"));
  objects[0] = hex("A1 01");
  return BinaryPlist{.objects = objects, .offsetWidth = 2}.bytes();
}

/// One object of so many bytes that the table starts at `tableStart`.
std::string withTableAt(std::size_t tableStart) {
  const std::size_t size = tableStart - 12;
  return binary({hex("4F 11") + bigEndianBytes(size, 2) + std::string(size, 'x')});
}

std::string withObjectCount(std::uint64_t count) {
  std::string file = BinaryPlist{.objects = {hex("09")}, .offsetWidth = 8}.bytes();
  return file.replace(file.size() - 24, 8, bigEndianBytes(count, 8));
}

const std::string smallest = binary({hex("09")});

const std::vector<Refused> layouts = {
    {"NothingButTheMagic", "bplist00", Reason::tooShort},
    {"OneByteLessThanTheSmallest", "bplist00" + smallest.substr(10), Reason::tooShort},
    {"NoRoomForAnObject",
     "bplist00" + std::string(7, '\0') + hex("01 01") + bigEndianBytes(1, 8) + bigEndianBytes(0, 8) +
         bigEndianBytes(8, 8),
     Reason::badTableStart},
    {"MoreObjectsThanReferencesCanNumber", withObjects(256), Reason::referenceTooNarrow},
    {"OffsetsTooNarrowForTheTableStart", withTableAt(256), Reason::offsetTooNarrow},
    {"SlackBetweenTableAndTrailer", smallest.substr(0, 10) + '\0' + smallest.substr(10),
     Reason::lengthDiffers},
    {"AByteAfterTheTrailer", BinaryPlist{.objects = {hex("09")}}.bytes() + '\0', Reason::badWidth},
    {"ATableSizeThatOverflows", withObjectCount((std::uint64_t{1} << 61) + 1), Reason::lengthDiffers},
};
INSTANTIATE_TEST_SUITE_P(Layout, BinaryRefuses, testing::ValuesIn(layouts), nameOfRow<Refused>);

/// The byte that the error names, counted from where the trailer starts.
std::ptrdiff_t placeInTrailer(const std::string& file) {
  const Result<Document, Error> document = Document::decode(file);
  const std::size_t place = document ? 0 : document.error().offset;
  return static_cast<std::ptrdiff_t>(place) - static_cast<std::ptrdiff_t>(file.size() - 32);
}

TEST(BinaryFile, isRefusedWithThePlaceOfTheFieldOfItsTrailerThatIsWrong) {
  const auto with = [](std::size_t place, unsigned char byte) {
    std::string file = goodFile();
    file[place] = static_cast<char>(byte);
    return file;
  };
  EXPECT_EQ(placeInTrailer(with(0x30, 0)), 6);
  EXPECT_EQ(placeInTrailer(with(0x31, 0)), 7);
  EXPECT_EQ(placeInTrailer(with(0x39, 0)), 8);
  EXPECT_EQ(placeInTrailer(with(0x39, 6)), 8);
  EXPECT_EQ(placeInTrailer(with(0x41, 5)), 16);
  EXPECT_EQ(placeInTrailer(with(0x49, 8)), 24);
  EXPECT_EQ(placeInTrailer(withTableAt(256)), 6);
  EXPECT_EQ(placeInTrailer(withObjects(256)), 7);
  EXPECT_EQ(placeInTrailer(goodFile().substr(0, 40)), 32);  // where it should go on
}

TEST(BinaryFile, mayHaveATableStartThatItsOffsetsJustReach) {
  EXPECT_TRUE(Document::decode(withTableAt(255)));
}

TEST(BinaryFile, isNeverRetriedAsXml) {
  EXPECT_EQ(refusal("bplist00<plist><string>text that is long enough for a trailer</string></plist>"),
            Reason::badWidth);
}

const std::vector<Refused> objects = {
    {"ACountOfNoIntegerInAnArray", binary({hex("AF 09")}), Reason::badCount},
    {"ACountOf32Bytes", binary({hex("5F 15") + bigEndianBytes(1, 32) + 'a'}), Reason::badCount},
    {"ACountMarkerInTheTable", binary({hex("5F")}), Reason::objectTooLong},
    {"ACountThatReachesIntoTheTable", binary({hex("5F 12 00")}), Reason::objectTooLong},
    {"AnIntegerOf32Bytes", binary({hex("15") + bigEndianBytes(1, 32)}), Reason::unknownMarker},
    {"AnIntegerThatReachesIntoTheTable", binary({hex("13 00 00 00 00 00 00 00")}), Reason::objectTooLong},
    {"ARealOf1Byte", binary({hex("20 00")}), Reason::unknownMarker},
    {"ARealOf2Bytes", binary({hex("21 00 00")}), Reason::unknownMarker},
    {"ARealOf16Bytes", binary({hex("24") + bigEndianBytes(0, 16)}), Reason::unknownMarker},
    {"ARealThatReachesIntoTheTable", binary({hex("23 00")}), Reason::objectTooLong},
    {"ADateThatReachesIntoTheTable", binary({hex("33 00 00 00 00 00 00 00")}), Reason::objectTooLong},
    {"DataThatReachesIntoTheTable", binary({hex("43 00 00")}), Reason::objectTooLong},
    {"AStringThatReachesIntoTheTable", binary({hex("53") + "ab"}), Reason::objectTooLong},
    {"AUtf16StringThatReachesIntoTheTable", binary({hex("62 00 41 00")}), Reason::objectTooLong},
    {"AnArrayThatReachesIntoTheTable", binary({hex("A2 01"), hex("09")}), Reason::badReference},
    {"AnArrayOfTooManyReferences", binary({hex("A2 00")}), Reason::objectTooLong},
    {"ASetOfTooManyReferences", binary({hex("C2 00")}), Reason::objectTooLong},
    {"ADictionaryOfTooManyReferences", binary({hex("D1 00")}), Reason::objectTooLong},
    {"DataWhoseCountOverflows", binary({hex("4F 13 FF FF FF FF FF FF FF FF")}), Reason::objectTooLong},
    {"AUtf16CountThatOverflowsWhenDoubled", binary({hex("6F 13 80 00 00 00 00 00 00 01 00 41")}),
     Reason::objectTooLong},
    {"AnArrayCountThatOverflowsWhenMultiplied",
     BinaryPlist{.objects = {hex("AF 13 20 00 00 00 00 00 00 00")}, .referenceWidth = 8}.bytes(),
     Reason::objectTooLong},
    {"ADictionaryCountThatOverflowsWhenMultiplied",
     BinaryPlist{.objects = {hex("DF 13 10 00 00 00 00 00 00 00")}, .referenceWidth = 8}.bytes(),
     Reason::objectTooLong},
    {"AUidAbove32Bits", binary({hex("84 01 00 00 00 00")}), Reason::badUid},
    {"AUidAbove64Bits", binary({hex("88 01 00 00 00 00 00 00 00 00")}), Reason::badUid},
    {"AUidThatReachesIntoTheTable", binary({hex("81 00")}), Reason::objectTooLong},
    {"AKeyThatIsAnArray", binary({hex("D1 01 02"), hex("A0"), hex("09")}), Reason::keyNotString},
    {"AKeyThatIsAnInteger", binary({hex("D1 01 02"), hex("10 01"), hex("09")}), Reason::keyNotString},
    {"AKeyThatIsData", binary({hex("D1 01 02"), hex("41") + "a", hex("09")}), Reason::keyNotString},
    {"AnArrayInItself", binary({hex("A1 00")}), Reason::cycle},
    {"TwoArraysInEachOther", binary({hex("A1 01"), hex("A1 00")}), Reason::cycle},
    {"ASetInItself", binary({hex("C1 00")}), Reason::cycle},
    {"ADictionaryInItself", binary({hex("D1 01 00"), hex("51") + "a"}), Reason::cycle},
    {"AUsedOffsetBelowTheObjects", BinaryPlist{.objects = {hex("A1 01")}, .furtherOffsets = {7}}.bytes(),
     Reason::badOffset},
    {"AnUnusedOffsetAtTheTable", BinaryPlist{.objects = {hex("09")}, .furtherOffsets = {9}}.bytes(),
     Reason::badOffset},
};
INSTANTIATE_TEST_SUITE_P(Object, BinaryRefuses, testing::ValuesIn(objects), nameOfRow<Refused>);

std::vector<Refused> unknownMarkers() {
  std::vector<unsigned> markers;
  for (unsigned marker = 0x01; marker <= 0x07; ++marker) markers.push_back(marker);
  for (unsigned marker = 0x0A; marker <= 0x0F; ++marker) markers.push_back(marker);
  for (const unsigned high : {0x70U, 0x90U, 0xB0U, 0xE0U, 0xF0U})
    for (unsigned low = 0; low <= 0xF; ++low) markers.push_back(high | low);

  constexpr std::string_view digits = "0123456789ABCDEF";
  std::vector<Refused> rows;
  for (const unsigned marker : markers) {
    const std::string name{'M', 'a', 'r', 'k', 'e', 'r', digits[marker >> 4], digits[marker & 0xF]};
    rows.push_back(
        {name, binary({static_cast<char>(marker) + std::string(32, '\0')}), Reason::unknownMarker});
  }
  return rows;
}
INSTANTIATE_TEST_SUITE_P(UnknownMarker, BinaryRefuses, testing::ValuesIn(unknownMarkers()),
                         nameOfRow<Refused>);

}  // namespace
}  // namespace pelmarix::plist
