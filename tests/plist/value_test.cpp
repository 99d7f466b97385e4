#include "plist/value.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "tests/plist/binary_builder.h"
#include "tests/plist/describe.h"

namespace pelmarix::plist {
namespace {

/// Which getters answer for a value.
std::vector<std::string> answers(Value value) {
  std::vector<std::string> names;
  if (value.string()) names.emplace_back("string");
  if (value.date()) names.emplace_back("date");
  if (value.boolean()) names.emplace_back("boolean");
  if (value.integer()) names.emplace_back("integer");
  if (value.unsignedInteger()) names.emplace_back("unsignedInteger");
  if (value.real()) names.emplace_back("real");
  if (value.uid()) names.emplace_back("uid");
  if (value.data()) names.emplace_back("data");
  return names;
}

std::vector<std::string> answersFor(const std::string& bytes) {
  const Result<Document, Error> document = Document::decode(bytes);
  return document ? answers(document->root()) : std::vector<std::string>{"refused"};
}

TEST(Value, answersForItsOwnTypeOnly) {
  using testing::ElementsAre;
  EXPECT_THAT(answersFor("<string/>"), ElementsAre("string"));
  EXPECT_THAT(answersFor("<date>2001-01-01T00:00:00Z</date>"), ElementsAre("date"));
  EXPECT_THAT(answersFor("<true/>"), ElementsAre("boolean"));
  EXPECT_THAT(answersFor("<integer>1</integer>"), ElementsAre("integer", "unsignedInteger"));
  EXPECT_THAT(answersFor("<integer>-1</integer>"), ElementsAre("integer"));
  EXPECT_THAT(answersFor("<integer>18446744073709551615</integer>"), ElementsAre("unsignedInteger"));
  EXPECT_THAT(answersFor("<real>1</real>"), ElementsAre("real"));
  EXPECT_THAT(answersFor("<data></data>"), ElementsAre("data"));
  EXPECT_THAT(answersFor(binary({hex("80 01")})), ElementsAre("uid"));
  EXPECT_THAT(answersFor(binary({hex("41 00")})), ElementsAre("data"));
  EXPECT_THAT(answersFor(binary({hex("00")})), ElementsAre());
  EXPECT_THAT(answersFor("<array/>"), ElementsAre());
  EXPECT_THAT(answersFor("<dict/>"), ElementsAre());
}

/// The number as a signed and as an unsigned one.
std::string signedAndUnsigned(const std::string& bytes) {
  const auto text = [](const auto& number) { return number ? std::to_string(*number) : "none"; };
  const Result<Document, Error> document = Document::decode(bytes);
  if (!document) return "refused";
  return text(document->root().integer()) + " " + text(document->root().unsignedInteger());
}

TEST(Value, ofAnIntegerIsSignedAndUnsignedAsFarAsEachReaches) {
  EXPECT_EQ(signedAndUnsigned("<integer>0</integer>"), "0 0");
  EXPECT_EQ(signedAndUnsigned(binary({hex("10 00")})), "0 0");
  EXPECT_EQ(signedAndUnsigned("<integer>-0</integer>"), "0 0");
  EXPECT_EQ(signedAndUnsigned("<integer>9223372036854775807</integer>"),
            "9223372036854775807 9223372036854775807");
  EXPECT_EQ(signedAndUnsigned(binary({hex("13 7F FF FF FF FF FF FF FF")})),
            "9223372036854775807 9223372036854775807");
  EXPECT_EQ(signedAndUnsigned("<integer>9223372036854775808</integer>"), "none 9223372036854775808");
  EXPECT_EQ(signedAndUnsigned(binary({hex("14 00 00 00 00 00 00 00 00 80 00 00 00 00 00 00 00")})),
            "none 9223372036854775808");
  EXPECT_EQ(signedAndUnsigned("<integer>-9223372036854775808</integer>"), "-9223372036854775808 none");
}

TEST(Value, thatIsNoContainerHasNeitherElementsNorEntries) {
  const Result<Document, Error> document = Document::decode("<string>a</string>");
  ASSERT_TRUE(document);
  const Value root = document->root();
  EXPECT_EQ(root.count(), 0U);
  EXPECT_EQ(root.elements().begin(), root.elements().end());
  EXPECT_EQ(root.entries().begin(), root.entries().end());
  EXPECT_FALSE(root.find("a"));
}

TEST(Value, thatIsAnArrayHasNoKeys) {
  const Result<Document, Error> document =
      Document::decode("<array><string>a</string><string>b</string></array>");
  ASSERT_TRUE(document);
  EXPECT_FALSE(document->root().find("a"));
}

class Container : public testing::TestWithParam<std::string> {};

TEST_P(Container, isWalkedInFileOrder) {
  const Result<Document, Error> document = Document::decode(GetParam());
  ASSERT_TRUE(document);
  const Value root = document->root();
  EXPECT_EQ(root.count(), 2U);
  EXPECT_EQ(root.elements().begin(), root.elements().end());

  auto entry = root.entries().begin();
  EXPECT_EQ((*entry).key, "a");
  const Value array = (*entry).value;
  ++entry;
  EXPECT_EQ((*entry).key, "b");
  EXPECT_EQ((*entry).value.integer(), 2);
  EXPECT_EQ(++entry, root.entries().end());

  EXPECT_EQ(array.count(), 2U);
  EXPECT_EQ(array.entries().begin(), array.entries().end());
  auto element = array.elements().begin();
  EXPECT_EQ((*element).type(), Type::array);
  ++element;
  EXPECT_EQ((*element).integer(), 1);
  EXPECT_EQ(++element, array.elements().end());
}

TEST_P(Container, findsValuesByWholeKeys) {
  const Result<Document, Error> document = Document::decode(GetParam());
  ASSERT_TRUE(document);
  EXPECT_EQ(document->root().find("b")->integer(), 2);
  EXPECT_EQ(document->root().find("a")->type(), Type::array);
  EXPECT_FALSE(document->root().find("A"));
  EXPECT_FALSE(document->root().find(""));
  EXPECT_FALSE(document->root().find("bb"));
}

INSTANTIATE_TEST_SUITE_P(
    Xml, Container,
    testing::Values("<dict><key>a</key><array><array><true/></array><integer>1</integer></array>"
                    "<key>b</key><integer>2</integer></dict>"));
INSTANTIATE_TEST_SUITE_P(Binary, Container,
                         testing::Values(binary({hex("D2 01 02 03 04"), hex("51") + "a", hex("51") + "b",
                                                 hex("A2 05 06"), hex("10 02"), hex("A0"), hex("10 01")})));

TEST(Value, showsTextInPlaceWhereItIsPlain) {
  const std::string file = "<string>plain</string>";
  const Result<Document, Error> document = Document::decode(file);
  ASSERT_TRUE(document);
  EXPECT_EQ(document->root().string()->data(), file.data() + 8);
}

TEST(Document, keepsItsValuesWhenItIsMoved) {
  Result<Document, Error> decodedFile = Document::decode("<string>&lt;</string>");
  ASSERT_TRUE(decodedFile);
  const Value root = decodedFile->root();
  Document moved = *std::move(decodedFile);
  Result<Document, Error> other = Document::decode("<true/>");
  ASSERT_TRUE(other);
  Document assigned = *std::move(other);
  assigned = std::move(moved);
  EXPECT_EQ(root.string(), "<");
  EXPECT_EQ(assigned.root().string()->data(), root.string()->data());
}

}  // namespace
}  // namespace pelmarix::plist
