#include "receipts/bom_receipt_record.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/property_list_text.h"

namespace pelmarix {
namespace {

using test::date;
using test::key;
using test::propertyList;
using test::string;

const std::string anIdentifier = key("PackageIdentifier", string("com.example.pkg.writer"));
const std::string aDate = key("InstallDate", date("2019-03-26T10:11:12Z"));

std::optional<theBoMReceipt> decode(const std::string& pairs) {
  return decodeBoMReceipt(propertyList("<dict>" + pairs + "</dict>"));
}

TEST(BoMReceiptRecord, TakesItsFieldsFromTheKeysOfTheSameNames) {
  const auto record = decode(anIdentifier + aDate);
  ASSERT_TRUE(record);
  EXPECT_EQ(record->PackageIdentifier, "com.example.pkg.writer");
  EXPECT_EQ(record->InstallDate, Date{575287872});
}

TEST(BoMReceiptRecord, IgnoresOtherKeys) {
  EXPECT_TRUE(decode(anIdentifier + aDate + key("PackageVersion", "<integer>1</integer>") +
                     key("Groups", "<array/>")));
}

TEST(BoMReceiptRecord, WithoutAKeyDoesNotDecode) {
  EXPECT_FALSE(decode(anIdentifier));
  EXPECT_FALSE(decode(aDate));
  EXPECT_FALSE(decode(""));
}

TEST(BoMReceiptRecord, CountsAKeyInAnotherCaseAsMissing) {
  EXPECT_FALSE(decode(anIdentifier + key("installDate", date("2019-03-26T10:11:12Z"))));
  EXPECT_FALSE(decode(key("packageIdentifier", string("a")) + aDate));
}

TEST(BoMReceiptRecord, RefusesValuesOfAnotherType) {
  EXPECT_FALSE(decode(anIdentifier + key("InstallDate", string("2019-03-26T10:11:12Z"))));
  EXPECT_FALSE(decode(key("PackageIdentifier", "<integer>1</integer>") + aDate));
}

TEST(BoMReceiptRecord, RefusesAnotherRootAndWhatIsNoPropertyList) {
  EXPECT_FALSE(decodeBoMReceipt(propertyList("<array><dict>" + anIdentifier + aDate + "</dict></array>")));
  EXPECT_FALSE(decodeBoMReceipt(propertyList("<string>a</string>")));
  EXPECT_FALSE(decodeBoMReceipt(""));
  EXPECT_FALSE(decodeBoMReceipt("bplist00"));
}

/// A binary receipt of "pkg" with the date's eight bytes.
std::string binaryReceipt(const std::string& dateBytes) {
  std::string bytes = "bplist00";
  bytes += "\xD2\x01\x02\x03\x04";  // 8: the dictionary
  bytes +=
      "\x5F\x10\x11"
      "PackageIdentifier";  // 13
  bytes +=
      "\x5B"
      "InstallDate";  // 33
  bytes +=
      "\x53"
      "pkg";                                        // 45
  bytes += "\x33" + dateBytes;                      // 49
  bytes += std::string("\x08\x0D\x21\x2D\x31", 5);  // 58: the offset table
  bytes += std::string(
      "\0\0\0\0\0\0\x01\x01"
      "\0\0\0\0\0\0\0\x05"
      "\0\0\0\0\0\0\0\0"
      "\0\0\0\0\0\0\0\x3A",
      32);
  return bytes;
}

TEST(BoMReceiptRecord, IsReadFromABinaryPropertyListToo) {
  const auto record = decodeBoMReceipt(binaryReceipt(std::string("\x40\x00\0\0\0\0\0\0", 8)));
  ASSERT_TRUE(record);
  EXPECT_EQ(record->PackageIdentifier, "pkg");
  EXPECT_EQ(record->InstallDate, Date{2});
}

TEST(BoMReceiptRecord, RefusesADateThatIsNotFinite) {
  EXPECT_FALSE(decodeBoMReceipt(binaryReceipt(std::string("\x7F\xF0\0\0\0\0\0\0", 8))));
  EXPECT_FALSE(decodeBoMReceipt(binaryReceipt(std::string("\x7F\xF8\0\0\0\0\0\x01", 8))));
}

}  // namespace
}  // namespace pelmarix
