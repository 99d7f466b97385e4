#include "sample/property_list.h"

#include <gtest/gtest.h>

#include <string>

namespace pelmarix::sample {
namespace {

using std::string_literals::operator""s;

TEST(XmlForm, IsTheOneTheSystemWrites) {
  const PropertyList root = {Array{{Dictionary{
      {"date", {Date{575287872.75}}},
      {"displayName", {"Draw & Paint <Studio> für Ünicode"s}},
      {"packageIdentifiers", {Array{{"com.example.one"s}, {"com.example.two"s}}}},
      {"none", {Array{}}},
      {"nothing", {Dictionary{}}},
  }}}};
  EXPECT_EQ(xmlForm(root), R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<array>
	<dict>
		<key>date</key>
		<date>2019-03-26T10:11:12Z</date>
		<key>displayName</key>
		<string>Draw &amp; Paint &lt;Studio&gt; für Ünicode</string>
		<key>packageIdentifiers</key>
		<array>
			<string>com.example.one</string>
			<string>com.example.two</string>
		</array>
		<key>none</key>
		<array/>
		<key>nothing</key>
		<dict/>
	</dict>
</array>
</plist>
)");
}

TEST(BinaryForm, HasItsObjectsThenTheirOffsetsThenTheTrailer) {
  const PropertyList root = {Dictionary{{"a", {Date{1.5}}}, {"bc", {Array{{"a"s}, {"é🌒"s}}}}}};
  EXPECT_EQ(binaryForm(root),
            "bplist00"
            "\xd2\x01\x02\x03\x04"  // 0, at 8: two keys, then two values
            "\x51"
            "a"  // 1, at 13
            "\x52"
            "bc"                                    // 2, at 15
            "\x33\x3f\xf8\x00\x00\x00\x00\x00\x00"  // 3, at 18: 1.5 seconds
            "\xa2\x01\x05"                          // 4, at 27: the "a" that was there already, and
            "\x63\x00\xe9\xd8\x3c\xdf\x12"          // 5, at 30: three units of UTF-16
            "\x08\x0d\x0f\x12\x1b\x1e"              // the offsets, at 37
            "\0\0\0\0\0\0\x01\x01"
            "\0\0\0\0\0\0\0\x06"
            "\0\0\0\0\0\0\0\0"
            "\0\0\0\0\0\0\0\x25"s);
}

TEST(BinaryForm, PutsCountsFromFifteenOnIntoAnIntegerOfTheirOwn) {
  EXPECT_EQ(binaryForm({std::string(14, 'x')}).substr(8, 2), "\x5ex");
  EXPECT_EQ(binaryForm({std::string(15, 'x')}).substr(8, 4), "\x5f\x10\x0fx");
  EXPECT_EQ(binaryForm({std::string(256, 'x')}).substr(8, 5), "\x5f\x11\x01\x00x"s);
  EXPECT_EQ(binaryForm({std::string(65536, 'x')}).substr(8, 7), "\x5f\x12\x00\x01\x00\x00x"s);
}

TEST(BinaryForm, WidensItsReferencesWithTheNumberOfObjects) {
  const auto arrayOf = [](int count) {
    Array array;
    for (int i = 0; i < count; ++i) array.push_back({std::to_string(i)});
    return binaryForm({array});
  };
  const auto referenceWidthOf = [](const std::string& bytes) { return bytes[bytes.size() - 25]; };
  EXPECT_EQ(referenceWidthOf(arrayOf(255)), 1);  // with the array itself 256 objects, 0 to 255
  EXPECT_EQ(referenceWidthOf(arrayOf(256)), 2);
}

}  // namespace
}  // namespace pelmarix::sample
