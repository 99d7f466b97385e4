#include <gtest/gtest.h>

#include "tests/plist/describe.h"

namespace pelmarix::plist {
namespace {

using namespace std::string_literals;

enum class Order { big, little };

/// Text in units of 2 or 4 bytes, from characters that are given as such units already.
template <typename Text>
std::string encoded(const Text& text, std::size_t width, Order order) {
  std::string bytes;
  for (const auto unit : text) {
    for (std::size_t i = 0; i < width; ++i) {
      const std::size_t shift = 8 * (order == Order::big ? width - 1 - i : i);
      bytes += static_cast<char>(static_cast<std::uint32_t>(unit) >> shift & 0xFF);
    }
  }
  return bytes;
}

std::string utf16(const std::u16string& text, Order order) { return encoded(u"\uFEFF" + text, 2, order); }
std::string utf32(const std::u32string& text, Order order) { return encoded(U"\uFEFF" + text, 4, order); }

const std::u16string text16 = u"<plist><string>caf\u00E9 \u20AC \U0001F600 &amp;</string></plist>";
const std::u32string text32 = U"<plist><string>caf\u00E9 \u20AC \U0001F600 &amp;</string></plist>";
const std::string text = "\"caf\u00E9 \u20AC \U0001F600 &\"";

class XmlEncodingAccepts : public testing::TestWithParam<Accepted> {};

TEST_P(XmlEncodingAccepts, theFile) { EXPECT_EQ(decoded(GetParam().bytes), GetParam().description); }

const std::vector<Accepted> accepted = {
    {"Utf8", "<plist><string>caf\u00E9 \u20AC \U0001F600 &amp;</string></plist>", text},
    {"Utf8WithAByteOrderMark", "\uFEFF<plist><string>caf\u00E9 \u20AC \U0001F600 &amp;</string></plist>",
     text},
    {"Utf8WithAByteOrderMarkWhateverItDeclares",
     "\uFEFF<?xml version='1.0' encoding='ISO-8859-1'?><string>\u00E9</string>", "\"\u00E9\""},
    {"Utf16AtTheLimitsOfSurrogates", utf16(u"<string>\uD7FF\uE000\U00010000\U0010FFFF</string>", Order::big),
     "\"\uD7FF\uE000\U00010000\U0010FFFF\""},
    {"Utf16LittleEndian", utf16(text16, Order::little), text},
    {"Utf16BigEndian", utf16(text16, Order::big), text},
    {"Utf32LittleEndian", utf32(text32, Order::little), text},
    {"Utf32BigEndian", utf32(text32, Order::big), text},
    {"Utf16ThatDeclaresItself", utf16(u"<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + text16, Order::big),
     text},
    {"DeclaredUtf8InAnyCase", "<?xml version='1.0' encoding='utf-8'?><string>\u00E9</string>", "\"\u00E9\""},
    {"DeclaredLatin1", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><string>caf\xE9 \xFF</string>",
     "\"caf\u00E9 \u00FF\""},
    {"DeclaredAscii", "<?xml version=\"1.0\" encoding=\"US-ASCII\"?><string>cafe</string>", "\"cafe\""},
    {"DeclaredAsciiInSmallLetters", "<?xml version='1.0' encoding='us-ascii'?><string>cafe</string>",
     "\"cafe\""},
    {"DeclaredAsciiInAnyCase", "<?xml version='1.0' encoding='us-Ascii'?><string>cafe</string>", "\"cafe\""},
    {"NoDeclaredEncoding", "<?xml version=\"1.0\"?><string>\u00E9</string>", "\"\u00E9\""},
    {"AnEncodingWithoutQuotesAsNone", "<?xml encoding=UTF-16?><string>\u00E9</string>", "\"\u00E9\""},
    {"AnEncodingWithoutClosingQuoteAsNone", "<?xml encoding='UTF-16?><string>\u00E9</string>", "\"\u00E9\""},
    {"AnEncodingBehindAGreaterThanSignAsNone", "<?xml > encoding='UTF-16'?><string>\u00E9</string>",
     "\"\u00E9\""},
    {"AnEncodingBehindAQuestionMarkAsNone", "<?xml? encoding='UTF-16'?><string>\u00E9</string>",
     "\"\u00E9\""},
    {"AnEncodingWithoutNameAsNone", "<?xml encoding=?><string>\u00E9</string>", "\"\u00E9\""},
};
INSTANTIATE_TEST_SUITE_P(Plist, XmlEncodingAccepts, testing::ValuesIn(accepted), nameOfRow<Accepted>);

class XmlEncodingRefuses : public testing::TestWithParam<Refused> {};

TEST_P(XmlEncodingRefuses, theFile) { EXPECT_EQ(refusal(GetParam().bytes), GetParam().reason); }

std::string declared(const std::string& encoding) {
  return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?><string>caf\xC3\xA9</string>";
}

const std::vector<Refused> refused = {
    {"DeclaredUtf16InUtf8", declared("UTF-16"), Reason::wrongEncoding},
    {"DeclaredUtf32InUtf8", declared("UTF-32"), Reason::wrongEncoding},
    {"DeclaredAsciiWithOtherBytes", declared("US-ASCII"), Reason::wrongEncoding},
    {"DeclaredUtf8InLatin1", "<?xml version='1.0' encoding='UTF-8'?><string>caf\xE9</string>",
     Reason::invalidUtf8},
    {"AnUnknownEncoding", declared("EBCDIC-US"), Reason::unknownEncoding},
    {"AnotherOfTheIso8859Encodings", declared("ISO-8859-15"), Reason::unknownEncoding},
    {"AnEmptyNameOfAnEncoding", declared(""), Reason::unknownEncoding},
    {"Utf16WithALoneHighSurrogate", utf16(u"<string>"s + u'\xD83D' + u"</string>", Order::little),
     Reason::wrongEncoding},
    {"Utf16WithALoneLowSurrogate", utf16(u"<string>"s + u'\xDE00' + u"</string>", Order::big),
     Reason::wrongEncoding},
    {"Utf16WithTwoHighSurrogates", utf16(u"<string>"s + u'\xD83D' + u'\xDBFF' + u"</string>", Order::big),
     Reason::wrongEncoding},
    {"Utf16WithAHighSurrogateAndNoLowOne",
     utf16(u"<string>"s + u'\xD83D' + u'\xE000' + u"</string>", Order::big), Reason::wrongEncoding},
    {"Utf16ThatEndsInAHighSurrogate", utf16(u"<true/>"s + u'\xD83D', Order::big), Reason::wrongEncoding},
    {"Utf32WithAPairOfSurrogates",
     utf32(U"<string>"s + char32_t{0xD83D} + char32_t{0xDE00} + U"</string>", Order::big),
     Reason::wrongEncoding},
    {"Utf16OfAnOddNumberOfBytes", utf16(text16, Order::big) + '\0', Reason::wrongEncoding},
    {"Utf16WithoutAByteOrderMark", encoded(text16, 2, Order::little), Reason::unknownTag},
    {"Utf32WithASurrogate", utf32(U"<string>"s + static_cast<char32_t>(0xD83D) + U"</string>", Order::big),
     Reason::wrongEncoding},
    {"Utf32Above10FFFF", utf32(U"<string>"s + static_cast<char32_t>(0x110000) + U"</string>", Order::little),
     Reason::wrongEncoding},
    {"Utf32CutShort", utf32(text32, Order::little) + '\0', Reason::wrongEncoding},
    {"AByteOrderMarkOfUtf8Alone", "\uFEFF", Reason::noObject},
    {"AByteOrderMarkOfUtf16Alone", utf16(u"", Order::big), Reason::noObject},
    {"AByteOrderMarkOfUtf32Alone", utf32(U"", Order::big), Reason::noObject},
};
INSTANTIATE_TEST_SUITE_P(Plist, XmlEncodingRefuses, testing::ValuesIn(refused), nameOfRow<Refused>);

}  // namespace
}  // namespace pelmarix::plist
