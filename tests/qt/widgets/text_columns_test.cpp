#include "qt/widgets/text_columns.h"

#include <gtest/gtest.h>

#include <QFontDatabase>
#include <QFontMetricsF>
#include <string>

namespace pelmarix::qt {
namespace {

/// Path, size to the right, date. The letters of the font are all of one width.
class TabStops : public testing::Test {
 protected:
  /// In letters.
  std::vector<qreal> of(std::string text) const {
    std::vector<qreal> places;
    for (const QTextOption::Tab& tab : tabStops(TextIndex(platform::shareText(std::move(text))), types, font))
      places.push_back(tab.position / QFontMetricsF(font).horizontalAdvance(QLatin1Char('0')));
    return places;
  }

  QList<QTextOption::TabType> types{QTextOption::RightTab, QTextOption::LeftTab};
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
};

void expectNear(const std::vector<qreal>& stops, qreal first, qreal second) {
  ASSERT_EQ(stops.size(), 2U);
  EXPECT_NEAR(stops[0], first, 0.01);
  EXPECT_NEAR(stops[1], second, 0.01);
}

TEST_F(TabStops, LeaveTwoLettersBetweenTheWidestFieldsOfTheColumns) {
  expectNear(of("./abc\t12\tMon\n./a\t1234\tTuesday\n./abcd\t1\tWed\n"), 6 + 2 + 4, 6 + 2 + 4 + 2);
}

TEST_F(TabStops, AreNotMovedByTheFewFieldsThatAreMuchWiderThanTheOthers) {
  std::string text;
  for (int line = 0; line < 9; ++line) text += std::string(30, 'x') + "\t1\tMon\n";
  expectNear(of(text + std::string(60, 'x') + "\t1\tMon\n"), 60 + 2 + 1, 60 + 2 + 1 + 2);
  expectNear(of(text + std::string(61, 'x') + "\t1\tMon\n"), 30 + 2 + 1, 30 + 2 + 1 + 2);
}

TEST_F(TabStops, AreWideEnoughForALargeSizeAmongSmallOnes) {
  expectNear(of("./a\t1\tMon\n./a\t1\tMon\n./a\t123456789\tMon\n"), 3 + 2 + 9, 3 + 2 + 9 + 2);
}

TEST_F(TabStops, TakeLinesFromAllOfALongText) {
  std::string text;
  for (int line = 0; line < 50'000; ++line)
    text += (line < 25'000 ? "./a" : "./abcde") + std::string("\t1\tMon\n");
  expectNear(of(text), 7 + 2 + 1, 7 + 2 + 1 + 2);
}

TEST_F(TabStops, TakeEachOfTenThousandLines) {
  std::string text;
  for (int line = 1; line < 10'000; ++line) text += "./a\t1\tMon\n";
  expectNear(of(text + "./abcde\t1\tMon"), 7 + 2 + 1, 7 + 2 + 1 + 2);
}

TEST_F(TabStops, AreThereWhereNoLineHasFields) {
  expectNear(of("No information"), 2, 4);
  expectNear(of("./Applications\t1"), 14 + 2, 14 + 2 + 2);
  expectNear(of("\t1\tMon\n"), 0 + 2 + 1, 0 + 2 + 1 + 2);
}

TEST_F(TabStops, AreNoneWhereThereAreNoColumns) {
  types = {};
  EXPECT_EQ(of("a\tb\n").size(), 0U);
}

}  // namespace
}  // namespace pelmarix::qt
