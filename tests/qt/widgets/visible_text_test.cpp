#include "qt/widgets/visible_text.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace pelmarix::test {
namespace {

std::string visible(const QString& text) { return qt::visible(text).toStdString(); }

TEST(VisibleText, LeavesNoCharacterThatTurnsWritingAround) {
  const std::set<QChar::Direction> turning{QChar::DirLRE, QChar::DirLRO, QChar::DirRLE,
                                           QChar::DirRLO, QChar::DirPDF, QChar::DirLRI,
                                           QChar::DirRLI, QChar::DirFSI, QChar::DirPDI};
  int signs = 0;
  for (char16_t code = 0; code < 0xffff; ++code) {
    const QString shown = qt::visible(QString(QChar(code)));
    ASSERT_EQ(shown.size(), 1);
    EXPECT_FALSE(turning.contains(shown.front().direction())) << std::hex << int{code};
    signs += static_cast<int>(shown == QStringLiteral("\u21c4") && code != 0x21c4);
  }
  EXPECT_EQ(signs, 12);
}

TEST(VisibleText, HasASignForMarksOfDirectionAndLeavesLettersAndJoinersAlone) {
  EXPECT_EQ(visible(QStringLiteral("a\u200eb\u200fc\u061cd")), "a\u21c4b\u21c4c\u21c4d");
  const QString ordinary = QStringLiteral("a\u05d0\u0627\u200c\u200d\u00a0e\u0301\U0001f600\n\t");
  EXPECT_EQ(visible(ordinary), ordinary.toStdString());
}

TEST(VisibleText, HasASignForControlsAndSeparators) {
  EXPECT_EQ(visible(QString(QChar::Null)), "\u2400");
  EXPECT_EQ(visible(QStringLiteral("\u001b\u007f\u2028\u2029\ufffc")), "\u241b\u2421\u2424\u2424\ufffd");
}

TEST(VisibleText, HasSignsForLineEndsAndTabsWhereItStandsInOneLine) {
  EXPECT_EQ(qt::visibleInOneLine(QStringLiteral("a\nb\tc\u200ed")).toStdString(), "a\u240ab\u2409c\u21c4d");
}

}  // namespace
}  // namespace pelmarix::test
