#include "plist/error.h"

#include <gtest/gtest.h>

#include <optional>
#include <set>

#include "tests/plist/binary_builder.h"
#include "tests/plist/describe.h"

namespace pelmarix::plist {
namespace {

std::optional<Error> errorOf(std::string_view bytes) {
  const Result<Document, Error> document = Document::decode(bytes);
  if (document) return std::nullopt;
  return document.error();
}

TEST(Reason, hasADescriptionOfItsOwn) {
  std::set<std::string_view> descriptions;
  const auto last = static_cast<unsigned>(Reason::tooMuchOverlap);
  for (unsigned i = 0; i <= last; ++i) {
    const std::string_view text = description(static_cast<Reason>(i));
    EXPECT_TRUE(text.ends_with('.')) << i;
    EXPECT_TRUE(descriptions.insert(text).second) << text;
  }
}

TEST(Reason, thatDoesNotExistHasNoDescription) { EXPECT_EQ(description(static_cast<Reason>(255)), ""); }

TEST(Error, namesLineAndByteOfXml) {
  EXPECT_EQ(errorOf("<plist>\n<array>\n  text\n</array></plist>"), (Error{Reason::unexpectedText, 18, 3}));
  EXPECT_EQ(errorOf("\uFEFF<array>\ntext</array>"), (Error{Reason::unexpectedText, 11, 2}));
  EXPECT_EQ(errorOf("<string>\xFF</string>"), (Error{Reason::invalidUtf8, 8, 1}));
  EXPECT_EQ(errorOf("\n<!DOCTYPE plist [\n]>"), (Error{Reason::malformedDocumentType, 17, 2}));
}

TEST(Error, countsInTheUtf8FormOfOtherEncodings) {
  EXPECT_EQ(errorOf("<?xml version='1.0' encoding='ISO-8859-1'?>\n<string>\xE9&</string>"),
            (Error{Reason::malformedReference, 54, 2}));
  EXPECT_EQ(errorOf(hex("FE FF") + std::string("\0<\0a\0>", 6)), (Error{Reason::unknownTag, 0, 1}));
}

TEST(Error, namesTheByteWhereAnEncodingIsWrong) {
  EXPECT_EQ(errorOf(hex("FE FF 00 3C DE 00")), (Error{Reason::wrongEncoding, 4, 0}));
  EXPECT_EQ(errorOf("<?xml encoding='latin9'?><true/>"), (Error{Reason::unknownEncoding, 16, 0}));
}

TEST(Error, namesTheByteOfABinaryFile) {
  EXPECT_EQ(errorOf(binary({hex("A2 01 02"), hex("77"), hex("09")})), (Error{Reason::unknownMarker, 11, 0}));
  EXPECT_EQ(errorOf(binary({hex("A2 01 09"), hex("09"), hex("09")})), (Error{Reason::badReference, 10, 0}));
}

TEST(Error, isTheFirstInAFileThatHasSeveral) {
  EXPECT_EQ(errorOf("<array><integer>x</integer><text/></array>"), (Error{Reason::malformedInteger, 16, 1}));
  EXPECT_EQ(errorOf("<string>&;\xFF</text>"), (Error{Reason::malformedReference, 8, 1}));
  EXPECT_EQ(errorOf("<string>\xFF&;</string>"), (Error{Reason::invalidUtf8, 8, 1}));
  EXPECT_EQ(errorOf("<dict><true/></array>"), (Error{Reason::keyExpected, 6, 1}));
  // The table is looked at first, then what the top object leads to.
  EXPECT_EQ(errorOf(BinaryPlist{.objects = {hex("77")}, .furtherOffsets = {255}}.bytes()),
            (Error{Reason::badOffset, 10, 0}));
  EXPECT_EQ(errorOf(binary({hex("A2 01 09"), hex("77")})), (Error{Reason::unknownMarker, 11, 0}));
  EXPECT_EQ(errorOf(binary({hex("A2 09 01"), hex("77")})), (Error{Reason::badReference, 9, 0}));
  EXPECT_EQ(errorOf(binary({hex("D1 01 01"), hex("77")})), (Error{Reason::unknownMarker, 11, 0}));
}

TEST(Error, describesItselfWithItsPlace) {
  EXPECT_EQ(description(Error{Reason::keyExpected, 123, 7}),
            "A key is missing in a dictionary. (line 7, byte 123)");
  EXPECT_EQ(description(Error{Reason::cycle, 9}), "A container holds itself. (byte 9)");
}

}  // namespace
}  // namespace pelmarix::plist
