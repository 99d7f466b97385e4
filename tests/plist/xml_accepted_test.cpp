#include <gtest/gtest.h>

#include <locale>

#include "tests/plist/describe.h"

namespace pelmarix::plist {
namespace {

using namespace std::string_literals;

class XmlAccepts : public testing::TestWithParam<Accepted> {};

TEST_P(XmlAccepts, theFile) { EXPECT_EQ(decoded(GetParam().bytes), GetParam().description); }

const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
const std::string documentType =
    "<!DOCTYPE plist PUBLIC \"-//Example//DTD PLIST 1.0//EN\" "
    "\"http://www.example.com/PropertyList-1.0.dtd\">\n";

const std::vector<Accepted> documents = {
    {"ADeclarationADocumentTypeAndAPlist",
     declaration + documentType + "<plist version=\"1.0\">\n<true/>\n</plist>\n", "true"},
    {"NoDeclaration", documentType + "<plist><true/></plist>", "true"},
    {"NoDocumentType", declaration + "<plist><true/></plist>", "true"},
    {"NoPlistAroundTheObject", declaration + documentType + "<true/>", "true"},
    {"WhiteSpaceBeforeTheDeclaration", " \r\n\t" + declaration + "<plist><true/></plist>", "true"},
    {"AttributesOnAnyTag",
     "<plist a='1'><dict b='2'><key c='3'>k</key><array d='4'><string e='5'>s</string><integer "
     "f='6'>1</integer>"
     "<real g='7'>1.5</real><date h='8'>2001-01-01T00:00:00Z</date><data i='9'>AAAA</data><true j='10'/>"
     "<false k='11'></false></array></dict></plist>",
     R"({"k": ["s", 1, real 1.5, date 0, data 000000, true, false]})"},
    {"WhiteSpaceAfterATagsName", "<plist ><array\n><true\t/></array></plist>", "[true]"},
    {"WhiteSpaceInClosingTags", "<plist><array><string>a</string ></array\n></plist\t>", "[\"a\"]"},
    {"CommentsBetweenElements",
     "<!-- a --><plist><!----><array><!-- <b> & - -- > --><true/><!-- c --></array><!-- d --></plist>",
     "[true]"},
    {"ProcessingInstructionsBetweenElements", "<?a?><plist><?b > ?><array><?c?><true/></array></plist>",
     "[true]"},
    {"ProcessingInstructionsSideBySide", "<?a?><?b?><plist><?c?><?\?><true/></plist>", "true"},
    {"InvalidUtf8InComments", "<!-- \xFF\xC0 --><true/>", "true"},
    {"AnythingAfterTheRootElement", "<plist><true/></plist> & < </dict> \xFF", "true"},
    {"AnythingAfterARootWithoutPlist", "<true/><false/>", "true"},
    {"NestedPlistElements", "<plist><plist><plist><true/></plist></plist></plist>", "true"},
    {"APlistElementAsAValue",
     "<dict><key>a</key><plist><true/></plist><key>b</key><array><plist><false/></plist></array></dict>",
     R"({"a": true, "b": [false]})"},
};
INSTANTIATE_TEST_SUITE_P(Document, XmlAccepts, testing::ValuesIn(documents), nameOfRow<Accepted>);

const std::vector<Accepted> texts = {
    {"AString", "<string>abc</string>", "\"abc\""},
    {"AnEmptyString", "<string></string>", "\"\""},
    {"AnEmptyStringTag", "<string/>", "\"\""},
    {"TheFiveEntities", "<string>&lt;&gt;&amp;&apos;&quot;</string>", "\"<>&'\"\""},
    {"ADecimalReference", "<string>&#65;&#0169;</string>", "\"A\u00A9\""},
    {"AHexadecimalReference", "<string>&#x41;&#x20aC;</string>", "\"A\u20AC\""},
    {"TheFirstAndLastCharactersOfEveryUtf8LengthByReference",
     "<string>&#x7F;&#x80;&#x7FF;&#x800;&#xFFFF;&#x10000;</string>",
     "\"\x7F\u0080\u07FF\u0800\uFFFF\U00010000\""},
    {"TheLastCharacterByReference", "<string>&#x10FFFF;</string>", "\"\U0010FFFF\""},
    {"NulByReference", "<string>a&#0;b</string>", "\"a\0b\""s},
    {"TextAroundReferences", "<string>one &amp; two &lt; three</string>", "\"one & two < three\""},
    {"CharacterData", "<string>a<![CDATA[<b> & &amp; ]] > ]]>c</string>", "\"a<b> & &amp; ]] > c\""},
    {"CharacterDataThatEndsInMarkup", "<string><![CDATA[a<]]></string>", "\"a<\""},
    {"SeveralCharacterDataSections", "<string><![CDATA[a]]><![CDATA[]]>&amp;<![CDATA[b]]></string>",
     "\"a&b\""},
    {"Utf8InCharacterData", "<string><![CDATA[\u20AC]]>\u20AC</string>", "\"\u20AC\u20AC\""},
    {"CharacterDataInAKey", "<dict><key><![CDATA[a&b]]></key><true/></dict>", R"({"a&b": true})"},
    {"ALongMixedText", "<string>" + std::string(5000, 'x') + "&amp;</string>",
     '"' + std::string(5000, 'x') + "&\""},
    {"Utf8OfEveryLength", "<string>a\u00E9\u20AC\U0001F600z</string>", "\"a\u00E9\u20AC\U0001F600z\""},
    {"TheFirstAndLastCharactersOfEveryUtf8Length",
     "<string>"
     "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"
     "</string>",
     "\"\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"
     "\""},
    {"ControlCharactersInStrings", "<string>\x01\x1F\x7F\r\n</string>", "\"\x01\x1F\x7F\r\n\""},
    {"NulInStrings", "<string>a\0b</string>"s, "\"a\0b\""s},
    {"WhiteSpaceKeptInStrings", "<string> a\n\tb </string>", "\" a\n\tb \""},
    {"AKeyAsTheRoot", "<key>a</key>", "\"a\""},
    {"AKeyAsAValue", "<dict><key>a</key><key>b</key></dict>", R"({"a": "b"})"},
    {"AKeyInAnArray", "<array><key>a</key></array>", "[\"a\"]"},
    {"AnEmptyKey", "<dict><key></key><true/></dict>", R"({"": true})"},
    {"AnEmptyKeyTag", "<dict><key/><true/></dict>", R"({"": true})"},
};
INSTANTIATE_TEST_SUITE_P(Text, XmlAccepts, testing::ValuesIn(texts), nameOfRow<Accepted>);

const std::vector<Accepted> scalars = {
    {"TrueAndFalse", "<array><true/><false/><true></true><false></false></array>",
     "[true, false, true, false]"},
    {"AnInteger", "<integer>42</integer>", "42"},
    {"AnIntegerWithLeadingSpace", "<integer> \n\t42</integer>", "42"},
    {"AnIntegerWithAnySpaceAhead", "<integer>\r\f\v42</integer>", "42"},
    {"APositiveSign", "<integer>+42</integer>", "42"},
    {"ANegativeInteger", "<integer>-42</integer>", "-42"},
    {"SpaceAfterASign", "<integer>- 42</integer>", "-42"},
    {"SpaceBeforeASign", "<integer> -42</integer>", "-42"},
    {"LeadingZeros", "<integer>0000000000000000000000000042</integer>", "42"},
    {"NegativeZero", "<integer>-0</integer>", "0"},
    {"AHexadecimalInteger", "<integer>0xfF</integer>", "255"},
    {"ACapitalHexadecimalPrefix", "<integer>0X10</integer>", "16"},
    {"ANegativeHexadecimalInteger", "<integer>-0x10</integer>", "-16"},
    {"TheLargestInteger", "<integer>18446744073709551615</integer>", "18446744073709551615"},
    {"TheLargestHexadecimalInteger", "<integer>0xFFFFFFFFFFFFFFFF</integer>", "18446744073709551615"},
    {"TheLeastInteger", "<integer>-9223372036854775808</integer>", "-9223372036854775808"},
    {"AReal", "<real>1.5</real>", "real 1.5"},
    {"ARealWithoutFraction", "<real>-3</real>", "real -3"},
    {"ARealThatEndsInAPoint", "<real>3.</real>", "real 3"},
    {"ARealThatBeginsWithAPoint", "<real>+.5</real>", "real 0.5"},
    {"AnExponent", "<real>125E-2</real>", "real 1.25"},
    {"AnExponentOfOneDigit", "<real>5e2</real>", "real 500"},
    {"ARealWithLeadingSpace", "<real> \n1.5</real>", "real 1.5"},
    {"AReferenceInAReal", "<real>1&#46;5</real>", "real 1.5"},
    {"NotANumberInAnyCase", "<array><real>nan</real><real>NAN</real></array>", "[real nan, real nan]"},
    {"InfinityInAnyCase",
     "<array><real>inf</real><real>+INF</real><real>-Infinity</real><real>infinity</real></array>",
     "[real inf, real inf, real -inf, real inf]"},
    {"ARealTooLargeBecomingInfinite", "<array><real>1e999</real><real>-1e999</real></array>",
     "[real inf, real -inf]"},
    {"ARealTooSmallBecomingZero", "<real>1e-999</real>", "real 0"},
    {"TheLargestFiniteReal", "<real>1.7976931348623157e308</real>", "real 1.7976931348623157e+308"},
    {"Data", "<data>aGVsbG8=</data>", "data 68656c6c6f"},
    {"EmptyData", "<data></data>", "data "},
    {"EveryBase64Letter", "<data>ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/</data>",
     "data 00108310518720928b30d38f41149351559761969b71d79f8218a39259a7a29aabb2dbafc31cb3d35db7e39ebbf3dfbf"},
    {"DataOverSeveralLines", "<data>\n\taGVs\n\tbG8=\n\t</data>", "data 68656c6c6f"},
    {"OtherAsciiCharactersInDataSkipped", "<data>a-G*V.s!</data>", "data 68656c"},
    {"AnIncompleteLastGroupOfDataDropped", "<data>aGVsbG</data>", "data 68656c"},
    {"DataInSeveralPaddedPieces", "<data>aA==aQ==aGVs</data>", "data 686968656c"},
    {"PaddingWithinAGroupOfDataAsZeros", "<data>aA=A</data>", "data 680000"},
    {"SpaceWithinPaddingOfData", "<data>aA=\n=</data>", "data 68"},
};
INSTANTIATE_TEST_SUITE_P(Scalar, XmlAccepts, testing::ValuesIn(scalars), nameOfRow<Accepted>);

const std::vector<Accepted> dates = {
    {"TheReferenceDate", "<date>2001-01-01T00:00:00Z</date>", "date 0"},
    {"ALaterDate", "<date>2019-03-26T10:11:12Z</date>", "date 575287872"},
    {"ALeapDay", "<date>2000-02-29T00:00:00Z</date>", "date -26524800"},
    {"TheYearZero", "<date>0000-01-01T00:00:00Z</date>", "date -63145526400"},
    {"ANegativeYear", "<date>-0001-12-31T23:59:59Z</date>", "date -63145526401"},
    {"AYearOf5Digits", "<date>12019-03-26T10:11:12Z</date>", "date 316144807872"},
    {"AYearOf9Digits", "<date>123456789-01-01T00:00:00Z</date>", "date 3895856819078400"},
    {"January32AsFebruary1", "<date>2001-01-32T00:00:00Z</date>", "date 2678400"},
    {"DayZeroAsTheDayBeforeTheFirst", "<date>2001-01-00T00:00:00Z</date>", "date -86400"},
    {"Hour24AsTheNextDay", "<date>2001-01-01T24:00:00Z</date>", "date 86400"},
    {"Minute60AsTheNextHour", "<date>2001-01-01T00:60:00Z</date>", "date 3600"},
    {"Second99CarryingOver", "<date>2001-01-01T00:00:99Z</date>", "date 99"},
};
INSTANTIATE_TEST_SUITE_P(Date, XmlAccepts, testing::ValuesIn(dates), nameOfRow<Accepted>);

const std::vector<Accepted> containers = {
    {"AnArray", "<array><integer>1</integer><array><integer>2</integer></array><integer>3</integer></array>",
     "[1, [2], 3]"},
    {"AnEmptyArray", "<array></array>", "[]"},
    {"AnEmptyArrayTag", "<array/>", "[]"},
    {"ADictionary", "<dict><key>a</key><dict><key>b</key><true/></dict><key>c</key><false/></dict>",
     R"({"a": {"b": true}, "c": false})"},
    {"AnEmptyDictionary", "<dict></dict>", "{}"},
    {"AnEmptyDictionaryTag", "<dict/>", "{}"},
};
INSTANTIATE_TEST_SUITE_P(Container, XmlAccepts, testing::ValuesIn(containers), nameOfRow<Accepted>);

TEST(XmlDictionary, theLastOfARepeatedKeyWins) {
  const Result<Document, Error> document = Document::decode(
      "<dict><key>a</key><array><true/></array><key>b</key><integer>2</integer><key>&#97;</key><integer>3</"
      "integer>"
      "</dict>");
  ASSERT_TRUE(document);
  EXPECT_EQ(document->root().find("a")->integer(), 3);
  EXPECT_EQ(document->root().find("b")->integer(), 2);
}

TEST(XmlString, mayHaveAReferenceOrAnotherLetterAtAnyPlace) {
  for (std::size_t length = 0; length < 20; ++length) {
    // "=" and "%" are the neighbours of what is looked for, and "\x7F" that of what is not ASCII.
    const std::string before(length, '=');
    const std::string after = "%\x7F;' " + before;
    for (const auto& [written, read] : {std::pair{"&lt;", "<"}, std::pair{"&#xE9;", "\u00E9"},
                                        std::pair{"\u00E9", "\u00E9"}, std::pair{"<![CDATA[&]]>", "&"}})
      EXPECT_EQ(decoded("<string>" + before + written + after + "</string>"),
                "\"" + before + read + after + "\"");
  }
}

TEST(XmlArray, mayBeOfAnySize) {
  for (const std::size_t count : {1U, 300U, 700U, 20000U}) {
    std::string text = "<array>";
    std::string description = "[";
    for (std::size_t i = 0; i < count; ++i) {
      text += "<true/>";
      description += i == 0 ? "true" : ", true";
    }
    EXPECT_EQ(decoded(text + "</array>"), description + "]");
  }
}

TEST(XmlString, mayHaveTenMillionBytes) {
  std::string text;
  text.assign(10000000, 'x');
  const std::string file = "<plist><string>" + text + "</string></plist>";
  const Result<Document, Error> document = Document::decode(file);
  ASSERT_TRUE(document);
  EXPECT_EQ(document->root().string(), text);
}

TEST(XmlReal, hasAPointInEveryLocale) {
  struct WithComma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
  };
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new WithComma));
  EXPECT_EQ(decoded("<real>1.5</real>"), "real 1.5");
  std::locale::global(before);
}

}  // namespace
}  // namespace pelmarix::plist
