#include "base/csv.h"

#include <gtest/gtest.h>

namespace pelmarix {
namespace {

std::string record(std::initializer_list<std::string_view> fields) {
  std::string text;
  appendCsvRecord(text, fields);
  return text;
}

TEST(CsvRecord, HasCommasBetweenItsFieldsAndALineEnd) {
  EXPECT_EQ(record({"macOS Mojave", "10.14"}), "macOS Mojave,10.14\r\n");
  EXPECT_EQ(record({"", "", ""}), ",,\r\n");
}

TEST(CsvRecord, HasQuotesAroundAFieldThatWouldBeTakenForSeveral) {
  EXPECT_EQ(record({"a,b", "c"}), "\"a,b\",c\r\n");
  EXPECT_EQ(record({"a\nb", "c\r", "\r\n"}), "\"a\nb\",\"c\r\",\"\r\n\"\r\n");
}

TEST(CsvRecord, DoublesTheQuotesOfAField) {
  EXPECT_EQ(record({"19\" screen", "\""}), "\"19\"\" screen\",\"\"\"\"\r\n");
}

TEST(CsvRecord, LeavesAllElseAsItIs) {
  EXPECT_EQ(record({" a b ", "=1+1", "\t;'", "b\u00e9\u2028\U0001f600\u202e"}),
            " a b ,=1+1,\t;',b\u00e9\u2028\U0001f600\u202e\r\n");
  using namespace std::string_view_literals;
  EXPECT_EQ(record({"a\0b"sv}), "a\0b\r\n"sv);
}

TEST(CsvRecord, IsUtf8WhateverBytesItIsGiven) {
  EXPECT_EQ(record({"a\xff\xfe\"b", "\xc3", "\xc3\xa9"}), "\"a\uFFFD\uFFFD\"\"b\",\uFFFD,\u00e9\r\n");
}

TEST(CsvRecord, FollowsTheOnesBefore) {
  std::string text = "a\r\n";
  appendCsvRecord(text, {"b"});
  EXPECT_EQ(text, "a\r\nb\r\n");
}

}  // namespace
}  // namespace pelmarix
