// Good files that were cut short, or in which one thing was replaced.
#include <gtest/gtest.h>

#include "tests/plist/binary_builder.h"
#include "tests/plist/describe.h"

namespace pelmarix::plist {
namespace {

const std::string goodXml = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Example//DTD PLIST 1.0//EN" "http://www.example.com/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>name</key>
	<string>R&amp;D caf&#xE9; é <![CDATA[<raw>]]></string>
	<key>list</key>
	<array>
		<integer>-7</integer>
		<real>1.5</real>
		<date>2019-03-26T10:11:12Z</date>
		<data>aGVsbG8=</data>
		<true/>
		<!-- note -->
		<array/>
	</array>
</dict>
</plist>)";

std::string utf16Of(std::string_view ascii) {
  std::string bytes = "\xFF\xFE";
  for (const char character : ascii) bytes.append(1, character).append(1, '\0');
  return bytes;
}

const std::string goodBinary = binary(
    {hex("D3 01 02 03 04 05 06"), hex("51") + "a", hex("61 20 AC"), hex("5F 10 02") + "bc", hex("A1 07"),
     hex("33 00 00 00 00 00 00 00 00"), hex("C1 08"), hex("12 00 00 00 01"), hex("42 00 01")});

TEST(DamagedFile, isNoneBeforeItIsDamaged) {
  EXPECT_EQ(decoded(goodXml),
            "{\"name\": \"R&D caf\u00E9 \u00E9 <raw>\", \"list\": [-7, real 1.5, date 575287872, data "
            "68656c6c6f, true, "
            "[]]}");
  EXPECT_EQ(decoded(goodBinary), "{\"a\": [1], \"\u20AC\": date 0, \"bc\": set[data 0001]}");
  EXPECT_EQ(decoded(utf16Of("<plist><array><string>a&lt;</string></array></plist>")), "[\"a<\"]");
}

void expectEveryPrefixRefused(std::string_view good) {
  for (std::size_t size = 0; size < good.size(); ++size) {
    const ExactBlock prefix(good.substr(0, size));
    EXPECT_FALSE(Document::decode(prefix)) << "cut to " << size << " bytes";
  }
}

TEST(DamagedFile, isRefusedWhereverAnXmlFileIsCut) { expectEveryPrefixRefused(goodXml); }
TEST(DamagedFile, isRefusedWhereverABinaryFileIsCut) { expectEveryPrefixRefused(goodBinary); }
TEST(DamagedFile, isRefusedWhereverAUtf16FileIsCut) {
  expectEveryPrefixRefused(utf16Of("<plist><array><string>a&lt;</string></array></plist>"));
}

struct Replacement {
  std::string name;
  std::string from;
  std::string to;

  friend void PrintTo(const Replacement& row, std::ostream* out) { *out << row.name; }
};

class XmlWithReplacement : public testing::TestWithParam<Replacement> {};

TEST_P(XmlWithReplacement, isRefused) {
  const auto& [name, from, to] = GetParam();
  const std::size_t place = goodXml.find(from);
  ASSERT_NE(place, std::string::npos);
  std::string file = goodXml;
  file.replace(place, from.size(), to);
  EXPECT_FALSE(Document::decode(ExactBlock(file)));
}

const std::vector<Replacement> replacements = {
    {"anotherEncoding", "UTF-8", "UTF-7"},
    {"lowerCaseDocumentType", "<!DOCTYPE", "<!doctype"},
    {"documentTypeWithBracket", "plist PUBLIC", "plist [ PUBLIC"},
    {"unclosedDeclaration", "?>", ">"},
    {"misspelledRoot", "<plist", "<plost"},
    {"capitalTag", "<dict>", "<Dict>"},
    {"unclosedKey", "</key>", "<key>"},
    {"keyClosedAsString", "</key>", "</string>"},
    {"missingKey", "<key>name</key>", ""},
    {"missingValue", "<array>", "</dict></plist><array>"},
    {"keyIsString", "<key>name</key>", "<string>name</string>"},
    {"keyIsInteger", "<key>name</key>", "<integer>1</integer>"},
    {"textBetweenElements", "<true/>", "true"},
    {"entityWithoutSemicolon", "&amp;", "&amp "},
    {"bareAmpersand", "&amp;", "&"},
    {"unknownEntity", "&amp;", "&and;"},
    {"surrogateReference", "&#xE9;", "&#xD800;"},
    {"capitalHexadecimalReference", "&#xE9;", "&#XE9;"},
    {"brokenUtf8", "\u00E9", "\xC3"},
    {"unclosedCharacterData", "]]>", "]]"},
    {"characterDataInLowerCase", "CDATA", "cdata"},
    {"commentInString", "<![CDATA[<raw>]]>", "<!-- raw -->"},
    {"integerWithLetter", "-7", "-7a"},
    {"emptyInteger", "-7", ""},
    {"realWithTwoPoints", "1.5", "1.5.1"},
    {"dateWithSpace", "T10", " 10"},
    {"dateWithoutZone", "12Z", "12"},
    {"month13", "-03-", "-13-"},
    {"dataWithHighByte", "aGVs", "aGV\xFF"},
    {"openTrue", "<true/>", "<true>"},
    {"unclosedComment", "-->", "->"},
    {"emptyArrayClosedAgain", "<array/>", "<array/></array>"},
    {"emptyDate", "<array/>", "<date/>"},
    {"nul", "<true/>", std::string(1, '\0')},
};
INSTANTIATE_TEST_SUITE_P(Plist, XmlWithReplacement, testing::ValuesIn(replacements), nameOfRow<Replacement>);

}  // namespace
}  // namespace pelmarix::plist
