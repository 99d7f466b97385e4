#include "qt/services/text_conversion.h"

#include <gtest/gtest.h>

#include "platform/text.h"
#include "tests/support/test_services.h"

namespace pelmarix::qt {
namespace {

TEST(TextConversion, KeepsEveryLetterBothWays) {
  const std::string text = "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x92\xBE";
  EXPECT_EQ(toQString(text), QString::fromUtf16(u"caf\u00e9 \u20ac \U0001F4BE"));
  EXPECT_EQ(toUtf8(toQString(text)), text);
}

TEST(TextConversion, KeepsNulAndByteOrderMarks) {
  using namespace std::string_literals;
  const std::string mark = "\xEF\xBB\xBF";
  for (const std::string& text : {mark, mark + "a\0b"s, mark + mark + "a", "a" + mark, mark + "\xC3\xA9"}) {
    EXPECT_EQ(toUtf8(toQString(text)), text);
    EXPECT_EQ(toQString(text).count(QChar(QChar::ByteOrderMark)), text.starts_with(mark + mark) ? 2 : 1);
  }
}

TEST(TextConversion, ReplacesBytesThatAreNotUtf8) {
  EXPECT_EQ(toUtf8(toQString("a\xFF"
                             "b")),
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_EQ(toUtf8(toQString("cut \xC3")), "cut \xEF\xBF\xBD");
  EXPECT_EQ(toUtf8(toQString("")), "");
}

TEST(TextConversion, ReplacesALoneSurrogateByAQuestionMark) {
  EXPECT_EQ(toUtf8(QString(QChar(0xD800)) + QChar(u'x')), "?x");
}

TEST(TextConversion, KeepsFileNamesInUtf8) {
  EXPECT_EQ(toFileName(toQString("/tmp/caf\xC3\xA9.txt")), "/tmp/caf\xC3\xA9.txt");
}

TEST(Address, IsWhatKeepsToTheGenericSyntax) {
  for (const char* text :
       {"https://downloads.example/a/b.zip?x=1&y=%C3%A9#top", "https://[::1]:8080/", "https://a.example/%41",
        "https://a.example/#a#b", "mailto:x", "//host/x", "-x", "a%4A"})
    EXPECT_TRUE(isValidAddress(text)) << text;
}

TEST(Address, IsNoEmptyText) { EXPECT_FALSE(isValidAddress("")); }

TEST(Address, IsNoTextWithCharactersOutsideTheSyntax) {
  for (const char* text : {"https://a.example/b c", "https://a.example/<b>", "https://a.example/{b}", "a\nb",
                           "a\\b", "https://a.example/\xC3\xA9", "\"a\"", "a|b", "a^b", "a`b"})
    EXPECT_FALSE(isValidAddress(text)) << text;
  EXPECT_FALSE(isValidAddress(std::string("a\0b", 3)));
}

TEST(Address, IsNoTextWithABrokenPercentEscape) {
  for (const char* text : {"a%", "a%4", "a%4g", "a%g4", "100%"}) EXPECT_FALSE(isValidAddress(text)) << text;
}

TEST(Address, HasAHostAndAPortThatCanBe) {
  for (const char* text : {"https://[::1/x", "https://[::g]/", "https://host:99999/", "https://host:x/",
                           "https://a..b/", "https://a!b/"})
    EXPECT_FALSE(isValidAddress(text)) << text;
}

TEST(ComposedForm, JoinsALetterAndItsAccent) {
  EXPECT_EQ(composedForm("macOS Sierra U\xCC\x88"), "macOS Sierra \xC3\x9C");
  EXPECT_EQ(composedForm("\xC3\x9C"), "\xC3\x9C");
}

TEST(ComposedForm, MakesTheKelvinSignTheLetterK) {
  EXPECT_EQ(composedForm("Incompatible \xE2\x84\xAA"
                         "ernel"),
            "Incompatible Kernel");
}

TEST(ComposedForm, LeavesAsciiAndCompatibilityLettersAlone) {
  EXPECT_EQ(composedForm("MRTConfigData"), "MRTConfigData");
  EXPECT_EQ(composedForm("\xEF\xAC\x81"), "\xEF\xAC\x81");
}

TEST(ComposedForm, ReplacesBytesThatAreNotUtf8) { EXPECT_EQ(composedForm("\x80"), "\xEF\xBF\xBD"); }

TEST(FoldedForm, IsTheSameForAllCasesAndSpellingsOfALetter) {
  for (const char* text : {"\u00E9", "\u00C9", "e\u0301", "E\u0301"}) EXPECT_EQ(foldedForm(text), "\u00E9");
  EXPECT_EQ(foldedForm("\u212A\u017F"), "ks");
  EXPECT_EQ(foldedForm("STRA\u00DFE"), "stra\u00DFe");  // letter by letter
  EXPECT_EQ(foldedForm("a\u00A0b/*?"), "a b/*?");
  EXPECT_EQ(foldedForm("\u65E5\u672C \U0001F312"), "\u65E5\u672C \U0001F312");
  EXPECT_EQ(foldedForm("\u1F88\u0345"), foldedForm("\u1F80\u0345"));
}

// What is folded without the toolkit changes nothing of the form.
TEST(FoldedForm, OfATextIsThatOfItsParts) {
  test::TestServices services;
  services.services.foldedForm = foldedForm;
  const std::string parts[] = {"a",      "E",      "/",      " ",      "K",      "\u0301", "\u0345",
                               "\u00C9", "\u1F88", "\u212A", "\u0130", "\u1100", "\u1161", "\u00A0",
                               "\uFEFF", "\u0327", "\u3099", "\u304B", "\u0338", "=",      "\U0001F312"};
  for (const auto& first : parts)
    for (const auto& second : parts)
      for (const auto& third : parts)
        for (const auto& fourth : parts) {
          const std::string text = first + second + third + fourth;
          ASSERT_EQ(platform::folded(text), foldedForm(text)) << text;
        }
}

}  // namespace
}  // namespace pelmarix::qt
