#include "qt/widgets/text_search.h"

#include <gtest/gtest.h>

#include <QString>
#include <random>

namespace pelmarix::qt {
namespace {

TEST(TextSearch, FindsTheFirstAndTheLastPlace) {
  const QString text = QStringLiteral("Mail, mail and MAIL");
  EXPECT_EQ(indexOfIgnoringCase(text, u"mail"), 0);
  EXPECT_EQ(indexOfIgnoringCase(text, u"mAIL", 1), 6);
  EXPECT_EQ(indexOfIgnoringCase(text, u"mail", 15), 15);
  EXPECT_EQ(indexOfIgnoringCase(text, u"mail", 16), -1);
  EXPECT_EQ(indexOfIgnoringCase(text, u"notes"), -1);
}

TEST(TextSearch, FindsOneLetterAndTheWholeText) {
  EXPECT_EQ(indexOfIgnoringCase(u"abc", u"C"), 2);
  EXPECT_EQ(indexOfIgnoringCase(u"abc", u"ABC"), 0);
  EXPECT_EQ(indexOfIgnoringCase(u"abc", u"abcd"), -1);
}

TEST(TextSearch, FindsNothingInNothingAndNoEmptyText) {
  EXPECT_EQ(indexOfIgnoringCase(u"", u"a"), -1);
  EXPECT_EQ(indexOfIgnoringCase(u"abc", u"", 1), -1);
}

TEST(TextSearch, KnowsTheCasesOfAllLetters) {
  EXPECT_EQ(indexOfIgnoringCase(u"gro\u00dfe \u00c4pfel", u"\u00e4PFEL"), 6);
  EXPECT_EQ(indexOfIgnoringCase(u"\u0416\u0423\u041a", u"\u0436\u0443\u043a"), 0);
  EXPECT_EQ(indexOfIgnoringCase(u"300 \u212a", u"k"), 4);
}

TEST(TextSearch, TakesNoBreakSpacesForBlanks) {
  EXPECT_EQ(indexOfIgnoringCase(u"no\u00a0break", u"NO BREAK"), 0);
  EXPECT_EQ(indexOfIgnoringCase(u"no break", u"no\u00a0break"), 0);
}

// Few different letters, so that there are many near misses, and one that folds to an ASCII letter.
TEST(TextSearch, FindsWhatTheToolkitFinds) {
  constexpr char16_t letters[] = {u'a', u'A', u'b', u'B', 0x0161, 0x0160, 0x0141, 0x212a, u'k', u'!'};
  std::mt19937 random(20190326);
  const auto anyText = [&](std::size_t longest) {
    QString text;
    for (std::size_t size = random() % (longest + 1); size > 0; --size)
      text += QChar(letters[random() % std::size(letters)]);
    return text;
  };
  int found = 0;
  for (int round = 0; round < 20'000; ++round) {
    // Sparse texts of several blocks, too.
    const QString text = QString(static_cast<qsizetype>(random() % 200), QLatin1Char('.')) + anyText(40) +
                         QString(static_cast<qsizetype>(random() % 200), QLatin1Char('.'));
    const QString sought = anyText(4);
    if (sought.isEmpty()) continue;
    const auto from = static_cast<qsizetype>(random() % static_cast<unsigned>(text.size() + 1));
    const qsizetype first = text.indexOf(sought, from, Qt::CaseInsensitive);
    ASSERT_EQ(indexOfIgnoringCase(text, sought, from), first)
        << text.toStdString() << ", " << sought.toStdString();
    if (first >= 0) ++found;
  }
  EXPECT_GT(found, 1000);
}

}  // namespace
}  // namespace pelmarix::qt
