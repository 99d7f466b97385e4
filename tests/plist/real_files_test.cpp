// Files that other programs wrote, from a folder outside the project: the environment says where it is.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "tests/plist/describe.h"

namespace pelmarix::plist {
namespace {

std::string contents(const std::string& path) {
  const char* const folder = std::getenv("PELMARIX_REAL_DATA");
  std::ifstream file(std::string(folder == nullptr ? "" : folder) + '/' + path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string decodedFile(const std::string& path) { return decoded(contents("property-lists/" + path)); }

TEST(RealFile, isRefusedWhereItIsBroken) {
  EXPECT_EQ(refusal(contents("property-lists/invalid_tag.plist")), Reason::malformedMarkup);
  EXPECT_EQ(refusal(contents("property-lists/malformed_dict.bplist")), Reason::keyNotString);
  EXPECT_EQ(refusal(contents("property-lists/recursion.bplist")), Reason::lengthDiffers);
  EXPECT_EQ(refusal(contents("property-lists/amp.plist")), Reason::malformedReference);
}

TEST(RealFile, isTheSameWithWiderOffsetsAndReferences) {
  const std::string expected = decodedFile("offxml.plist");
  EXPECT_EQ(expected, R"({"A": "B"})");
  for (const char* const name : {"off1byte.bplist", "off3bytes.bplist", "off8bytes.bplist",
                                 "dictref1byte.bplist", "dictref3bytes.bplist", "dictref8bytes.bplist"})
    EXPECT_EQ(decodedFile(name), expected) << name;
}

TEST(RealFile, isTheSameInBothForms) {
  EXPECT_EQ(decodedFile("order.plist"), R"({"test": [1, 1], "foo": [[1], {"test": "foo"}, [1], [1]]})");
  EXPECT_EQ(decodedFile("order.bplist"), decodedFile("order.plist"));
  EXPECT_EQ(decodedFile("signed.plist"), "-1");
  EXPECT_EQ(decodedFile("signed.bplist"), "-1");
  EXPECT_EQ(decodedFile("unsigned.plist"), "18446744073709551615");
  EXPECT_EQ(decodedFile("unsigned.bplist"), "18446744073709551615");
}

TEST(RealFile, holdsDatesFromEarlyToLate) {
  const std::string bytes = contents("property-lists/7.plist");
  const Result<Document, Error> document = Document::decode(bytes);
  ASSERT_TRUE(document);
  EXPECT_EQ(description(*document->root().find("Time3")->date()), "1869-01-03 08:16:32 +0000");
  EXPECT_EQ(description(*document->root().find("Time4")->date()), "2199-08-20 01:10:11 +0000");
}

TEST(RealFile, holdsHexadecimalIntegersUidsAndCharacterData) {
  EXPECT_EQ(decodedFile("hex.plist"), "7932961166869");
  EXPECT_EQ(decodedFile("uid.bplist"), "uid 7");
  EXPECT_TRUE(
      decodedFile("cdata.plist").starts_with("{\"cdata&key\": \"string with cdata content:  !\"#$%&"));
  EXPECT_TRUE(decodedFile("entities.plist").find("\"a\u2F23b\u2F24c\u2F25d\"") != std::string::npos);
}

std::string installDate(const std::string& path) {
  const std::string bytes = contents(path);
  const Result<Document, Error> document = Document::decode(bytes);
  return document ? description(*document->root().find("InstallDate")->date()) : "refused";
}

TEST(RealReceipt, saysWhenItsPackageWasInstalled) {
  EXPECT_EQ(installDate("receipts/us.zoom.pkg.videomeeting.plist"), "2024-11-08 11:44:04 +0000");
  EXPECT_EQ(installDate("receipts/com.wazuh.pkg.wazuh-agent.plist"), "2024-11-07 08:58:38 +0000");
}

TEST(RealHistory, beginsWithItsFirstSystemInstall) {
  const std::string bytes = contents("install-history/osx-10.9.plist");
  const Result<Document, Error> document = Document::decode(bytes);
  ASSERT_TRUE(document);
  ASSERT_EQ(document->root().count(), 7U);
  int configData = 0;
  for (const Value entry : document->root().elements())
    if (const auto type = entry.find("contentType"); type && type->string() == "config-data") ++configData;
  EXPECT_EQ(configData, 5);
  const Value first = *document->root().elements().begin();
  EXPECT_EQ(first.find("displayName")->string(), "OS X");
  EXPECT_EQ(first.find("displayVersion")->string(), "10.9 (13A603)");
  EXPECT_EQ(description(*first.find("date")->date()), "2013-11-12 02:59:35 +0000");
}

}  // namespace
}  // namespace pelmarix::plist
