#include "qt/widgets/text_pane.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QScrollBar>
#include <algorithm>
#include <cmath>
#include <string>

#include "qt/widgets/plain_text_view.h"
#include "tests/qt/widgets/pictures.h"
#include "tests/qt/widgets/thick_frames.h"

namespace pelmarix::test {
namespace {

constexpr int margin = 4;
constexpr std::size_t partSize = 2048;  // of long lines, in bytes

/// A pane is no widget of its own: the text view is one.
class TextPane : public testing::Test {
 protected:
  TextPane() {
    view.resize(400, 300);
    view.show();
    lineHeight = static_cast<int>(view.rectOf(0).height());
  }

  void show(const std::string& text) {
    view.showText(platform::shareText(text));
    QApplication::processEvents();
  }
  static std::string lines(int count) {
    std::string text = "zero";
    for (int i = 1; i < count; ++i) text += "\nline " + std::to_string(i);
    return text;
  }
  static std::string times(int count, const char* line) {
    return (QByteArray(line) + '\n').repeated(count).toStdString();
  }
  /// How far the first line in view goes when other lines come between those above and below.
  int linesMoved(const std::string& above, const std::string& before, const std::string& after,
                 const std::string& below) {
    const auto first = static_cast<int>(std::count(above.begin(), above.end(), '\n'));
    show(above + before + below);
    vertical().setValue(first);
    show(above + after + below);
    return vertical().value() - first;
  }
  void giveRoomFor(QSize size) {
    view.resize(view.size() + size - view.viewport()->size());
    QApplication::processEvents();
    ASSERT_EQ(view.viewport()->size(), size);
  }
  QImage picture() { return view.viewport()->grab().toImage(); }
  std::size_t lineBegin(std::size_t line) const { return view.index().line(line).begin; }
  QScrollBar& vertical() { return *view.verticalScrollBar(); }
  QScrollBar& horizontal() { return *view.horizontalScrollBar(); }
  /// Where the places from `begin` to `end` are, in whole pixels.
  QRect rectOf(std::size_t begin, std::size_t end) {
    return view.rectOf(begin).united(view.rectOf(end - 1)).toAlignedRect();
  }

  qt::PlainTextView view;
  int lineHeight;
};

TEST_F(TextPane, ScrollsByWholeLinesAsFarAsTheLastOne) {
  giveRoomFor({400, margin + 10 * lineHeight});
  show(lines(10));
  EXPECT_EQ(vertical().maximum(), 0);
  show(lines(11));
  EXPECT_EQ(vertical().maximum(), 1);
  show(lines(1000));
  EXPECT_EQ(vertical().minimum(), 0);
  EXPECT_EQ(vertical().maximum(), 990);
  EXPECT_EQ(vertical().pageStep(), 10);
  giveRoomFor({400, margin + 10 * lineHeight - 1});
  EXPECT_EQ(vertical().maximum(), 991);
  EXPECT_EQ(vertical().pageStep(), 9);
  giveRoomFor({400, lineHeight / 2});
  EXPECT_EQ(vertical().pageStep(), 1) << "where not even one fits";
}

TEST_F(TextPane, ScrollsSidewaysAsFarAsTheWidestLineThatHasBeenInView) {
  giveRoomFor({200, margin + 5 * lineHeight});
  const auto farthest = [this](std::size_t place) {
    return static_cast<int>(std::ceil(view.xOf(place) + 2 * margin)) - view.viewport()->width();
  };
  const std::string wide = std::string(60, 'x') + "\n" + lines(20) + "\n" + std::string(90, 'x');
  show(wide);
  // A blank is drawn where a line ends.
  const int blank = QFontMetrics(view.font()).horizontalAdvance(u' ');
  EXPECT_NEAR(horizontal().maximum(), farthest(60) + blank, 1);
  EXPECT_EQ(horizontal().pageStep(), view.viewport()->width());
  EXPECT_EQ(horizontal().singleStep(), lineHeight);
  vertical().setValue(vertical().maximum());
  EXPECT_NEAR(horizontal().maximum(), farthest(wide.size()), 1);
  const int most = horizontal().maximum();
  vertical().setValue(0);
  EXPECT_EQ(horizontal().maximum(), most) << "it stays";
  show(lines(20));
  EXPECT_EQ(horizontal().maximum(), 0) << "another text begins anew";
  show(wide);
  EXPECT_LT(horizontal().maximum(), most);
}

TEST_F(TextPane, ScrollsSidewaysToThePointWhereALineIsWiderThanTheView) {
  show("0123456789");
  const int needed = static_cast<int>(std::ceil(view.xOf(10))) + 2 * margin;
  giveRoomFor({needed, 100});
  EXPECT_EQ(horizontal().maximum(), 0);
  view.resize(view.width() - 1, view.height());
  EXPECT_EQ(horizontal().maximum(), 1);
}

TEST_F(TextPane, DoesNotScrollSidewaysForShortLinesHoweverManyThereAre) {
  show(lines(5000));
  for (const int first : {0, 100, 4000, vertical().maximum()}) {
    vertical().setValue(first);
    EXPECT_EQ(horizontal().maximum(), 0) << first;
  }
}

TEST_F(TextPane, HasItsLinesBelowOneAnother) {
  giveRoomFor({400, margin + 10 * lineHeight});
  show(lines(100));
  for (const int first : {0, 1, 50}) {
    vertical().setValue(first);
    for (const int row : {-1, 0, 1, 9, 10}) {
      const int line = first + row;
      if (line < 0) continue;
      const QRectF rect = view.rectOf(lineBegin(static_cast<std::size_t>(line)));
      EXPECT_EQ(rect.topLeft(), QPointF(margin, margin + row * lineHeight)) << first << row;
      EXPECT_EQ(rect.height(), lineHeight);
      EXPECT_NEAR(rect.width(), QFontMetricsF(view.font()).horizontalAdvance(line == 0 ? u'z' : u'l'), 1);
    }
  }
}

TEST_F(TextPane, FindsThePlaceNearestToAPoint) {
  giveRoomFor({400, margin + 10 * lineHeight});
  show(lines(100));
  vertical().setValue(20);
  const auto lineUnder = [this](double y) { return view.index().lineAt(view.placeAt({margin, y})); };
  EXPECT_EQ(lineUnder(margin), 20U);
  EXPECT_EQ(lineUnder(margin + lineHeight - 0.5), 20U);
  EXPECT_EQ(lineUnder(margin + lineHeight), 21U);
  EXPECT_EQ(lineUnder(margin + 9.5 * lineHeight), 29U);
  EXPECT_EQ(lineUnder(margin - 0.5), 19U) << "what is above the view";
  EXPECT_EQ(lineUnder(-1000), 0U);
  EXPECT_EQ(lineUnder(100.0 * lineHeight), 99U);
  const std::size_t begin = lineBegin(21);
  for (const std::size_t letter : {0U, 3U, 6U}) {
    const QRectF rect = view.rectOf(begin + letter);
    EXPECT_EQ(view.placeAt(rect.topLeft() + QPointF(1, 1)), begin + letter);
    EXPECT_EQ(view.placeAt(rect.topRight() + QPointF(-1, 1)), begin + letter + 1);
  }
  EXPECT_EQ(view.placeAt({-1000, margin + 1.5 * lineHeight}), begin);
  EXPECT_EQ(view.placeAt({1000, margin + 1.5 * lineHeight}), begin + 7);
}

TEST_F(TextPane, FindsThePlaceUnderAPointWhereItIsScrolledSideways) {
  giveRoomFor({200, margin + 5 * lineHeight});
  show(std::string(200, 'x'));
  horizontal().setValue(333);
  for (const std::size_t place : {60U, 70U}) {
    EXPECT_EQ(view.rectOf(place).left(), margin + view.xOf(place) - 333);
    EXPECT_EQ(view.placeAt(view.rectOf(place).center() - QPointF(1, 0)), place);
  }
}

TEST_F(TextPane, ScrollsNoFartherThanAPlaceNeedsToComeIntoView) {
  giveRoomFor({200, margin + 10 * lineHeight});
  show(lines(100));
  const auto firstAfter = [this](std::size_t line) {
    view.reveal(lineBegin(line));
    return vertical().value();
  };
  EXPECT_EQ(firstAfter(9), 0) << "it is in view";
  EXPECT_EQ(firstAfter(10), 1);
  EXPECT_EQ(firstAfter(50), 41);
  EXPECT_EQ(firstAfter(41), 41);
  EXPECT_EQ(firstAfter(40), 40);
  EXPECT_EQ(firstAfter(0), 0);
}

TEST_F(TextPane, ScrollsSidewaysNoFartherThanAPlaceNeedsToComeIntoView) {
  giveRoomFor({200, margin + 5 * lineHeight});
  show(std::string(300, 'x'));
  view.reveal(10);
  EXPECT_EQ(horizontal().value(), 0) << "it is in view";
  view.reveal(200);
  EXPECT_NEAR(view.rectOf(200).left(), 200 - margin, 1);
  const int before = horizontal().value();
  view.reveal(190);
  EXPECT_EQ(horizontal().value(), before);
  view.reveal(100);
  EXPECT_NEAR(view.rectOf(100).left(), margin, 1);
  view.reveal(0);
  EXPECT_EQ(horizontal().value(), 0);
}

// Where it stays when another text comes.

TEST_F(TextPane, KeepsTheFirstOfTheLinesInViewThatIsStillNearTheRarestOfThem) {
  giveRoomFor({400, margin + 8 * lineHeight});
  const std::string above = times(40, "") + "often\nmany\n" + times(40, "");
  const std::string below = times(40, "") + "often\nmany";
  const auto firstAfter = [&](const std::string& before, const std::string& after) {
    return linesMoved(above, before, after, below);
  };
  const std::string usual = "often\nmany\nrare\nlast\n";
  EXPECT_EQ(firstAfter(usual, usual + "more\n"), 0);
  EXPECT_EQ(firstAfter(usual, "new\nnew\n" + usual), 2);
  EXPECT_EQ(firstAfter("gone\n" + usual, "new\nnew\n" + usual), 2) << "the first of them has gone";
  EXPECT_EQ(firstAfter("gone\ngone too\n" + usual, "new\n" + usual), 1);
  EXPECT_EQ(firstAfter("gone\n" + usual, "new\nrare\nlast\n"), 1) << "no other is near to it";
  EXPECT_EQ(firstAfter("rare\nlast\n", "last\nnew\nrare\n"), 2) << "that was first";
  EXPECT_EQ(firstAfter("gone\nrare\n", "rare\n"), 0);
  const std::string twoGone = "gone\ngone\n";
  EXPECT_EQ(firstAfter(twoGone + "rare\n", "rare\nnew\nrare\n"), 2) << "it is where it was, too";
  EXPECT_EQ(firstAfter(twoGone + "rare\n", "rare\nnew\nnew\nrare\n"), 0) << "the other is after it";
}

TEST_F(TextPane, LooksForLinesThatWereInViewNoFartherThanAViewFromTheRarest) {
  giveRoomFor({400, margin + 8 * lineHeight});
  const auto firstAfter = [&](const std::string& before, const std::string& after) {
    return linesMoved(times(20, "often") + times(20, ""), before, after, times(40, ""));
  };
  EXPECT_EQ(firstAfter("often\nrare\n", "often\n" + times(7, "new") + "rare\n"), 0);
  EXPECT_EQ(firstAfter("often\nrare\n", "often\n" + times(8, "new") + "rare\n"), 9);
  EXPECT_EQ(firstAfter("often\nrare\n", "rare\n" + times(7, "new") + "often\n"), 8);
  EXPECT_EQ(firstAfter(times(7, "gone") + "low\n", "new\nnew\nlow\n"), 2);
  EXPECT_EQ(firstAfter(times(8, "gone") + "below\n", "new\nnew\nbelow\n"), 0) << "it wasn't in view";
}

TEST_F(TextPane, StaysWhereItIsAtTheTopAndWhereNothingOfWhatWasInViewIsLeft) {
  giveRoomFor({400, margin + 5 * lineHeight});
  show(lines(100));
  show("new\n" + lines(100));
  EXPECT_EQ(vertical().value(), 0);
  vertical().setValue(30);
  std::string others;
  for (int i = 0; i < 100; ++i) others += "other " + std::to_string(i) + "\n";
  show(others);
  EXPECT_EQ(vertical().value(), 30);
  show("other 0\nother 1\n");
  EXPECT_EQ(vertical().value(), 0) << "as far as there is anything";
}

// Drawing.

TEST_F(TextPane, DrawsItsTextWherePlacesAreHoweverItIsScrolled) {
  giveRoomFor({200, margin + 10 * lineHeight});
  std::string text;
  for (int i = 0; i < 40; ++i) text += std::string(100, ' ') + "\n";
  text.replace(12 * 101 + 40, 4, "WWWW");
  for (const int first : {5, 10}) {
    for (const int left : {0, 77}) {
      show(std::string(text.size(), ' ').replace(0, text.size(), text));
      vertical().setValue(first);
      horizontal().setValue(left);
      const QImage with = picture();
      const QRect letters = rectOf(12 * 101 + 40, 12 * 101 + 44).intersected(view.viewport()->rect());
      view.markMatches(QStringLiteral("WWWW"));
      EXPECT_TRUE(isAbout(changedPart(with, picture()), letters)) << first << ", " << left;
      view.markMatches({});
      QImage blank(with.size(), with.format());
      blank.fill(with.pixelColor(0, 0));
      const QRect ink = changedPart(blank, with);
      EXPECT_TRUE(letters.contains(ink)) << first << ", " << left;
      EXPECT_GT(ink.width(), letters.width() - 6);
      EXPECT_GT(ink.height(), lineHeight / 3);
    }
  }
}

TEST_F(TextPane, DrawsAsMuchOfALineOfManyPartsAsIsInView) {
  for (const char letter : {'W', 'i', 'x'}) {
    show(std::string(20 * partSize, letter));
    for (const std::size_t place : {std::size_t{0}, 3 * partSize, 10 * partSize - 5, 20 * partSize - 10}) {
      view.select(place, place);
      horizontal().setValue(horizontal().value() + 150);
      view.select(0, 0);
      view.clearFocus();
      view.select(place, place);
      const int left = horizontal().value();
      QApplication::processEvents();
      const QImage plain = picture();
      view.markMatches(QString(3, QLatin1Char(letter)));
      const QRect marked = changedPart(plain, picture());
      const QRect whole = view.viewport()->rect();
      EXPECT_EQ(marked.left(), std::max(margin - left, 0)) << letter << place;
      EXPECT_GE(marked.right(), whole.right() - margin - 40) << letter << place;
      EXPECT_NEAR(marked.height(), lineHeight, 2);
      view.markMatches({});
    }
  }
}

TEST_F(TextPane, DrawsItsLettersInTheColourOfTexts) {
  QPalette palette;
  palette.setColor(QPalette::Base, Qt::white);
  palette.setColor(QPalette::Text, Qt::red);
  palette.setColor(QPalette::WindowText, Qt::blue);
  view.setPalette(palette);
  show("WWWW");
  const QImage image = picture();
  int red = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) {
      EXPECT_EQ(image.pixelColor(x, y).red(), 255);
      if (image.pixelColor(x, y).green() < 128) ++red;
    }
  EXPECT_GT(red, 0);
}

TEST_F(TextPane, HasItsFrameInEveryStyle) {
  ThickFrames style;
  view.setStyle(&style);
  EXPECT_EQ(view.frameWidth(), 11);
  view.setStyle(nullptr);
}

TEST_F(TextPane, LaysOutLinesThatAreJustAsLongAsAPart) {
  for (const std::size_t size : {partSize - 2, partSize - 1, partSize, partSize + 1}) {
    show(std::string(size, 'x') + "\n" + std::string(size, 'x'));
    for (const std::size_t end : {size, 2 * size + 1}) {
      EXPECT_NEAR(view.xOf(end), static_cast<double>(size) * view.xOf(1), 1) << size;
      EXPECT_EQ(view.placeInLine(view.index().lineAt(end), 1e6), end) << size;
      EXPECT_EQ(view.placeInLine(view.index().lineAt(end), view.xOf(end - 1) + 1), end - 1) << size;
    }
  }
}

TEST_F(TextPane, FindsAPlaceInTheSecondLineOfLongOnes) {
  show(std::string(3 * partSize, 'x') + "\n" + std::string(3 * partSize, 'x'));
  const std::size_t begin = lineBegin(1);
  EXPECT_EQ(view.xOf(begin), 0);
  EXPECT_NEAR(view.xOf(begin + 10), 10 * view.xOf(1), 1);
  EXPECT_EQ(view.placeInLine(1, 10.2 * view.xOf(1)), begin + 10);
}

TEST_F(TextPane, MarksAMatchWhereOnePartOfALongLineEnds) {
  std::string text(3 * partSize, '.');
  text.replace(partSize - 2, 4, "here");
  show(text);
  view.select(partSize, partSize);
  horizontal().setValue(horizontal().value() + 100);
  const QImage before = picture();
  view.markMatches(QStringLiteral("here"));
  EXPECT_TRUE(isAbout(changedPart(before, picture()), rectOf(partSize - 2, partSize + 2)));
}

TEST_F(TextPane, LaysItselfOutAnewInAnotherSizeOfLetters) {
  giveRoomFor({300, 200});
  show(lines(100) + "\n" + std::string(50, 'x'));
  vertical().setValue(vertical().maximum());
  const int maximum = horizontal().maximum();
  const double x = view.xOf(5);
  QFont font = view.font();
  font.setPointSizeF(font.pointSizeF() * 2);
  view.setFont(font);
  EXPECT_NEAR(view.xOf(5), 2 * x, 4);
  EXPECT_NEAR(view.rectOf(0).height(), 2 * lineHeight, 2);
  EXPECT_EQ(vertical().maximum(),
            101 - (200 - margin - (view.viewport()->height() < 200 ? 200 - view.viewport()->height() : 0)) /
                      static_cast<int>(view.rectOf(0).height()));
  vertical().setValue(vertical().maximum());
  EXPECT_GT(horizontal().maximum(), maximum * 2);
  const QImage large = picture();
  font.setPointSizeF(font.pointSizeF() / 2);
  view.setFont(font);
  EXPECT_NE(picture(), large);
  vertical().setValue(vertical().maximum());
  EXPECT_EQ(horizontal().maximum(), maximum);
}

TEST_F(TextPane, KnowsNoOldWidthsOfALongLineInAnotherSizeOfLettersOrAnotherText) {
  const auto show = [this](char letter) { this->show(std::string(10 * partSize, letter)); };
  const auto width = [this] { return view.xOf(9 * partSize + 1) - view.xOf(9 * partSize); };
  show('W');
  view.select(5 * partSize, 5 * partSize);
  const double wide = view.xOf(9 * partSize);
  show('i');
  view.select(5 * partSize, 5 * partSize);
  const double narrow = view.xOf(9 * partSize);
  EXPECT_LT(narrow, wide);
  QFont font = view.font();
  font.setPointSizeF(font.pointSizeF() * 3);
  view.setFont(font);
  EXPECT_GT(view.xOf(9 * partSize), narrow * 2);
  EXPECT_GT(width(), 0);
}

TEST_F(TextPane, HasItsColumnsAsSoonAsItIsToldOfThem) {
  show("./one\t1\tMon\n./a longer name\t20\tTue");
  QImage before = picture();
  const double date = view.xOf(8);
  view.setColumns({QTextOption::RightTab, QTextOption::LeftTab});
  EXPECT_NE(view.xOf(8), date);
  EXPECT_NEAR(view.xOf(8), view.xOf(8 + 4 + 19), 0.1) << "dates begin below each other";
  EXPECT_FALSE(changedPart(before, picture()).isEmpty());
  show("./a name that is longer than the others\t1\tMon\n./one\t1\tTue");
  EXPECT_NEAR(view.xOf(42), view.xOf(42 + 4 + 8), 0.1) << "those of another text, too";
  EXPECT_GT(view.xOf(42), date * 2);
}

}  // namespace
}  // namespace pelmarix::test
