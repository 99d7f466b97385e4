#include "qt/widgets/utf8_search.h"

#include <gtest/gtest.h>

#include <QString>
#include <random>
#include <string>

#include "qt/services/text_conversion.h"
#include "qt/widgets/text_search.h"

namespace pelmarix::qt {
namespace {

// Where a match begins, as text; empty when there is none.
std::optional<std::size_t> first(const std::string& text, const char16_t* sought, std::size_t from = 0) {
  const auto match = SoughtText(QString::fromUtf16(sought)).firstIn(text, {from, text.size()});
  return match ? std::optional(match->begin) : std::nullopt;
}
std::optional<std::size_t> last(const std::string& text, const char16_t* sought) {
  const auto match = SoughtText(QString::fromUtf16(sought)).lastIn(text, {0, text.size()});
  return match ? std::optional(match->begin) : std::nullopt;
}

TEST(Utf8Search, FindsTheFirstAndTheLastPlace) {
  const std::string text = "Mail, mail and MAIL";
  EXPECT_EQ(first(text, u"mail"), 0U);
  EXPECT_EQ(first(text, u"mAIL", 1), 6U);
  EXPECT_EQ(first(text, u"mail", 15), 15U);
  EXPECT_EQ(first(text, u"mail", 16), std::nullopt);
  EXPECT_EQ(last(text, u"mail"), 15U);
  EXPECT_EQ(last(text.substr(0, 18), u"mail"), 6U);
  EXPECT_EQ(first(text, u"notes"), std::nullopt);
  EXPECT_EQ(last(text, u"notes"), std::nullopt);
}

TEST(Utf8Search, FindsWhatBeginsInARangeAndEndsBehindIt) {
  const SoughtText mail(QStringLiteral("mail"));
  EXPECT_EQ(mail.firstIn("Mail, mail", {1, 7}), (TextRange{6, 10}));
  EXPECT_EQ(mail.firstIn("Mail, mail", {1, 6}), std::nullopt);
  EXPECT_EQ(mail.lastIn("Mail, mail", {0, 7}), (TextRange{6, 10}));
  EXPECT_EQ(mail.lastIn("Mail, mail", {0, 6}), (TextRange{0, 4}));
}

TEST(Utf8Search, FindsOneLetterAndTheWholeText) {
  EXPECT_EQ(first("abc", u"C"), 2U);
  EXPECT_EQ(last("abc", u"A"), 0U);
  EXPECT_EQ(first("abc", u"ABC"), 0U);
  EXPECT_EQ(last("abc", u"ABC"), 0U);
  EXPECT_EQ(first("abc", u"abcd"), std::nullopt);
  EXPECT_EQ(last("abc", u"abcd"), std::nullopt);
}

TEST(Utf8Search, FindsNothingInNothingAndNoEmptyText) {
  EXPECT_EQ(first("", u"a"), std::nullopt);
  EXPECT_EQ(last("", u"a"), std::nullopt);
  EXPECT_EQ(first("abc", u"", 1), std::nullopt);
  EXPECT_EQ(last("abc", u""), std::nullopt);
}

TEST(Utf8Search, FindsLettersWhoseFormsHaveDifferentLengths) {
  EXPECT_EQ(SoughtText(QStringLiteral("K!")).firstIn("300 \u212a!", {0, 8}), (TextRange{4, 8}));
  EXPECT_EQ(SoughtText(QStringLiteral("no break")).firstIn("no\u00a0break", {0, 9}), (TextRange{0, 9}));
  EXPECT_EQ(first("gro\u00dfe \u00c4pfel", u"\u00e4PFEL"), 7U);
  EXPECT_EQ(first("x\U0001f600y", u"\U0001f600Y"), 1U);
}

TEST(Utf8Search, FindsEveryFormOfEveryLetterThatListsTakeForIt) {
  for (char32_t code = 1; code < 0x10000; ++code) {
    if (QChar::isSurrogate(code)) continue;
    const auto unit = static_cast<char16_t>(code);
    if (folded(QChar(unit)) == unit && QChar(unit).toUpper() == QChar(unit)) continue;
    const QString letter(1, QChar(unit));
    const SoughtText sought(letter);
    for (const QString& other :
         {letter, QString(QChar(folded(QChar(unit)))), letter.toUpper(), letter.toLower()}) {
      const std::string text = std::string(100, '.') + toUtf8(other) + std::string(100, '.');
      const bool isFound = sought.firstIn(text, {0, text.size()}).has_value();
      ASSERT_EQ(isFound, indexOfIgnoringCase(other, letter) >= 0)
          << static_cast<unsigned>(code) << " in " << toUtf8(other);
    }
  }
}

// Few different letters, so that there are many near misses: of one to four bytes, and one that folds to an
// ASCII letter.
TEST(Utf8Search, FindsWhatIsFoundInLists) {
  const char32_t letters[] = {U'a',   U'A', U'b',   U'B',    0x0161, 0x0160, 0x0141,
                              0x212a, U'k', 0x20ac, 0x1f600, 0xa0,   U' '};
  std::mt19937 random(20190326);
  const auto anyText = [&](std::size_t longest) {
    QString text;
    for (std::size_t size = random() % (longest + 1); size > 0; --size)
      text += QString::fromUcs4(&letters[random() % std::size(letters)], 1);
    return text;
  };
  int found = 0;
  for (int round = 0; round < 4'000; ++round) {
    const QString text = QString(static_cast<qsizetype>(random() % 200), QLatin1Char('.')) + anyText(40) +
                         QString(static_cast<qsizetype>(random() % 200), QLatin1Char('.'));
    const QString sought = anyText(4);
    const std::string utf8 = toUtf8(text);
    const auto placeOf = [&](qsizetype unit) {
      return unit < 0 ? std::nullopt : std::optional(bytesOfUtf16(utf8, static_cast<std::size_t>(unit)));
    };
    qsizetype lastOne = -1;
    for (qsizetype at = -1; (at = indexOfIgnoringCase(text, sought, at + 1)) >= 0;) lastOne = at;
    const SoughtText compiled(sought);
    const auto firstMatch = compiled.firstIn(utf8, {0, utf8.size()});
    const auto lastMatch = compiled.lastIn(utf8, {0, utf8.size()});
    ASSERT_EQ(firstMatch ? std::optional(firstMatch->begin) : std::nullopt,
              placeOf(indexOfIgnoringCase(text, sought)))
        << utf8 << ", " << toUtf8(sought);
    ASSERT_EQ(lastMatch ? std::optional(lastMatch->begin) : std::nullopt, placeOf(lastOne))
        << utf8 << ", " << toUtf8(sought);
    if (firstMatch) {
      ++found;
      ASSERT_EQ(indexOfIgnoringCase(
                    toQString(utf8.substr(firstMatch->begin, firstMatch->end - firstMatch->begin)), sought),
                0);
    }
  }
  EXPECT_GT(found, 500);
}

TEST(Utf8Search, FindsANul) {
  const std::string text("a\0b\0", 4);
  const SoughtText sought{QString(QChar::Null)};
  EXPECT_EQ(sought.firstIn(text, {0, 4}), (TextRange{1, 2}));
  EXPECT_EQ(sought.lastIn(text, {0, 4}), (TextRange{3, 4}));
  const char32_t firstWithTwoUnits = 0x10000;
  EXPECT_EQ(SoughtText(QString::fromUcs4(&firstWithTwoUnits, 1)).firstIn(text, {0, 4}), std::nullopt);
}

TEST(Utf8Search, FindsWhatBeginsInARangeWhereverItEnds) {
  std::string text(1000, '.');
  for (const std::size_t place : {100U, 500U, 996U}) text.replace(place, 4, "here");
  const SoughtText sought(QStringLiteral("here"));
  for (std::size_t begin = 90; begin < 110; ++begin) {
    for (std::size_t end = 490; end < 510; ++end) {
      const bool hasFirst = begin <= 100;
      const bool hasNext = end > 500;
      const auto first = sought.firstIn(text, {begin, end});
      const auto last = sought.lastIn(text, {begin, end});
      const std::size_t none = text.size();
      EXPECT_EQ(first ? first->begin : none, hasFirst ? 100 : hasNext ? 500 : none) << begin << ", " << end;
      EXPECT_EQ(last ? last->begin : none, hasNext ? 500 : hasFirst ? 100 : none) << begin << ", " << end;
    }
  }
  EXPECT_EQ(sought.firstIn(text, {501, 1000}), (TextRange{996, 1000}));
  EXPECT_EQ(sought.firstIn(text, {997, 1000}), std::nullopt);
  EXPECT_EQ(sought.lastIn(text, {0, 100}), std::nullopt);
}

TEST(Utf8Search, FindsTheLastOfAVeryLongTextWhereverItIs) {
  constexpr std::size_t partSize = 262144;  // from the end, one after the other
  const SoughtText sought(QStringLiteral("here"));
  for (const std::size_t fromEnd : {std::size_t{4}, partSize - 1, partSize, partSize + 1, partSize + 2,
                                    2 * partSize, 2 * partSize + 3, 3 * partSize}) {
    std::string text(3 * partSize, '.');
    text.replace(text.size() - fromEnd, 4, "here");
    EXPECT_EQ(sought.lastIn(text, {0, text.size()}),
              (TextRange{text.size() - fromEnd, text.size() - fromEnd + 4}))
        << fromEnd;
    text.replace(0, 4, "here");
    if (fromEnd == text.size()) continue;
    EXPECT_EQ(sought.lastIn(text, {0, text.size() - fromEnd}), (TextRange{0, 4})) << fromEnd;
  }
}

}  // namespace
}  // namespace pelmarix::qt
