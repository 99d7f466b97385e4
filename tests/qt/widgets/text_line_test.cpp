#include "qt/widgets/text_line.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPainter>

#include "qt/widgets/visible_text.h"
#include "tests/qt/widgets/pictures.h"

namespace pelmarix::qt {
namespace {

// A name of Hebrew letters, a version that begins with one, a date.
const QString hebrew = QStringLiteral("\u05e9\u05dc\u05d5\u05dd: \u05d010 2019-03-26 10:11:12 +0000");

TextLine lineOf(const QString& text) { return TextLine(visible(text), QApplication::font()); }

// The left edge of the leftmost and the right edge of the rightmost unit.
std::pair<qreal, qreal> extent(const TextLine& line, qsizetype begin, qsizetype end) {
  std::pair<qreal, qreal> edges{1e9, -1e9};
  for (qsizetype unit = begin; unit < end; ++unit)
    edges = {std::min(edges.first, line.xOf(unit)), std::max(edges.second, line.xOf(unit))};
  return edges;
}

TEST(TextLine, KeepsItsFieldsFromLeftToRightWhateverTheirScript) {
  for (const QString& text : {hebrew, QStringLiteral("\u0627\u0644: \u0628 2019-03-26 10:11:12 +0000"),
                              QStringLiteral("\u05e9\u05dc: 10.14 12019-03-26 10:11:12 +0000"),
                              QStringLiteral("\u05e9\u05dc: 10.14 -0001-03-26 10:11:12 +0000")}) {
    const TextLine line = lineOf(text);
    const qsizetype version = text.indexOf(QLatin1Char(':')) + 2;
    const qsizetype date = text.indexOf(QLatin1Char('-'), text.size() - 22) < 0
                               ? 0
                               : text.lastIndexOf(QLatin1Char(' '), text.size() - 17);
    const auto nameEdges = extent(line, 0, version - 2);
    const auto versionEdges = extent(line, version, date);
    const auto dateEdges = extent(line, date + 1, text.size());
    EXPECT_LE(nameEdges.second, versionEdges.first) << text.toStdString();
    EXPECT_LE(versionEdges.second, dateEdges.first) << text.toStdString();
  }
}

TEST(TextLine, KeepsPathSizeAndTimeFromLeftToRight) {
  const TextLine line = lineOf(QStringLiteral("./\u05e9\u05dc/\u05d0\t123\t\u05d1 2019\n"));
  EXPECT_LE(extent(line, 0, 6).second, line.xOf(7));
  EXPECT_LE(line.xOf(9), extent(line, 11, 17).first);
}

TEST(TextLine, IsNotTurnedRoundByControlsOfDirection) {
  const TextLine line = lineOf(QStringLiteral("evil \u202ename: 1 2019"));
  for (qsizetype unit = 0; unit + 1 < 18; ++unit) EXPECT_LT(line.xOf(unit), line.xOf(unit + 1)) << unit;
}

TEST(TextLine, FindsPlacesWhereTheyAre) {
  for (const QString& text :
       {QStringLiteral("plain text"), QStringLiteral("a\tb\t\tc"), QStringLiteral("x: y"), QString()}) {
    const TextLine line = lineOf(text);
    for (qsizetype unit = 0; unit <= text.size(); ++unit)
      EXPECT_EQ(line.unitAt(line.xOf(unit)), unit) << text.toStdString();
    EXPECT_EQ(line.unitAt(-100), 0);
    EXPECT_EQ(line.unitAt(1e6), text.size());
  }
}

TEST(TextLine, HasTabStopsEightBlanksApart) {
  const qreal blank = QFontMetricsF(QApplication::font()).horizontalAdvance(QLatin1Char(' '));
  const TextLine line = lineOf(QStringLiteral("\ta\t\tb"));
  EXPECT_DOUBLE_EQ(line.xOf(1), 8 * blank);
  EXPECT_DOUBLE_EQ(line.xOf(3), 16 * blank);
  EXPECT_DOUBLE_EQ(line.xOf(4), 24 * blank);
}

TEST(TextLine, BeginsOrEndsItsFieldsWhereTabsStop) {
  const QString text = QStringLiteral("a\tbcd\te\tf");
  const TextLine line(
      text, QApplication::font(),
      {QTextOption::Tab(200, QTextOption::RightTab), QTextOption::Tab(220, QTextOption::LeftTab)});
  EXPECT_DOUBLE_EQ(line.xAfter(4), 200);
  EXPECT_DOUBLE_EQ(line.xOf(6), 220);
  const qreal blank = QFontMetricsF(QApplication::font()).horizontalAdvance(QLatin1Char(' '));
  EXPECT_DOUBLE_EQ(line.xOf(8), (std::floor(line.xAfter(6) / (8 * blank)) + 1) * 8 * blank);
  for (qsizetype unit = 0; unit <= text.size(); ++unit) EXPECT_EQ(line.unitAt(line.xOf(unit)), unit);
}

TEST(TextLine, GoesOnBehindAFieldThatIsWiderThanItsColumn) {
  const TextLine line(
      QStringLiteral("a long path\t1\tx"), QApplication::font(),
      {QTextOption::Tab(20, QTextOption::RightTab), QTextOption::Tab(30, QTextOption::LeftTab)});
  const qreal blank = QFontMetricsF(QApplication::font()).horizontalAdvance(QLatin1Char(' '));
  const qreal right = line.xAfter(10);
  EXPECT_GT(line.xOf(12), right);
  EXPECT_LE(line.xOf(12), right + 8 * blank);
  EXPECT_GT(line.xOf(14), line.xAfter(12));
}

TEST(TextLine, LaysOutTheMiddleOfVeryManyFieldsAsOne) {
  const qreal blank = QFontMetricsF(QApplication::font()).horizontalAdvance(QLatin1Char(' '));
  EXPECT_DOUBLE_EQ(lineOf(QString(16, QLatin1Char('\t'))).width(), 16 * 8 * blank);
  EXPECT_LT(lineOf(QString(1016, QLatin1Char('\t'))).width(), (1000 + 17 * 8) * blank);
}

TEST(TextLine, KeepsItsLastFieldsFromLeftToRightHoweverManyThereAre) {
  for (const char* const field : {"a: ", "a\t", " 2019-01-01 "}) {
    const QString text = QString::fromLatin1(field).repeated(500) + hebrew;
    const TextLine line = lineOf(text);
    const qsizetype name = text.size() - hebrew.size();
    const qsizetype version = name + hebrew.indexOf(QLatin1Char(':')) + 2;
    const qsizetype date = name + hebrew.indexOf(QStringLiteral(" 2019")) + 1;
    EXPECT_LE(line.xOf(name - 20), extent(line, name, version - 2).first) << field;
    EXPECT_LE(extent(line, name, version - 2).second, extent(line, version, date - 1).first) << field;
    EXPECT_LE(extent(line, version, date - 1).second, extent(line, date, text.size()).first) << field;
  }
}

TEST(TextLine, EndsInABlankForItsLineFeed) {
  EXPECT_GT(lineOf(QStringLiteral("a\n")).width(), lineOf(QStringLiteral("a")).width());
  EXPECT_EQ(lineOf(QStringLiteral("a\n")).unitAt(1e6), 1);
}

TEST(TextLine, DrawsHighlightsOfLettersTabsAndLineFeed) {
  const TextLine line = lineOf(QStringLiteral("ab\tcd\n"));
  const auto picture = [&](int begin, int length) {
    QImage image(300, 40, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QTextLayout::FormatRange highlight{begin, length, {}};
    highlight.format.setBackground(Qt::yellow);
    line.draw(painter, {0, 0}, {highlight});
    return image;
  };
  const QImage plain = picture(0, 0);
  const auto expectChange = [&](int begin, int length, qreal left, qreal right) {
    const QRect changed = test::changedPart(plain, picture(begin, length));
    EXPECT_NEAR(changed.left(), left, 1.5) << begin;
    EXPECT_NEAR(changed.right() + 1, right, 1.5) << begin;
  };
  expectChange(1, 1, line.xOf(1), line.xOf(2));
  expectChange(2, 1, line.xOf(2), line.xOf(3));
  expectChange(1, 3, line.xOf(1), line.xOf(4));
  expectChange(5, 1, line.xOf(5), line.width());
}

}  // namespace
}  // namespace pelmarix::qt
