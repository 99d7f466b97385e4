#include "receipts/bom_receipt_record.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "tests/support/binary_receipt.h"
#include "tests/support/property_list_text.h"

namespace pelmarix {
namespace {

using test::binaryReceipt;
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

TEST(BoMReceiptRecord, IsReadFromABinaryPropertyListToo) {
  const auto record = decodeBoMReceipt(binaryReceipt("pkg", 2));
  ASSERT_TRUE(record);
  EXPECT_EQ(record->PackageIdentifier, "pkg");
  EXPECT_EQ(record->InstallDate, Date{2});
}

TEST(BoMReceiptRecord, RefusesAnIdentifierOfMoreThanAMebibyte) {
  const auto identified = [](std::size_t size) {
    return decode(key("PackageIdentifier", string(std::string(size, 'i'))) + aDate);
  };
  EXPECT_TRUE(identified(1048576));
  EXPECT_FALSE(identified(1048577));
}

TEST(BoMReceiptRecord, RefusesADateThatIsNotFinite) {
  EXPECT_FALSE(decodeBoMReceipt(binaryReceipt("pkg", std::numeric_limits<double>::infinity())));
  EXPECT_FALSE(decodeBoMReceipt(binaryReceipt("pkg", std::numeric_limits<double>::quiet_NaN())));
}

}  // namespace
}  // namespace pelmarix
