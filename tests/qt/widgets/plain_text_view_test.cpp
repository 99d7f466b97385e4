#include "qt/widgets/plain_text_view.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>
#include <optional>
#include <string>

#include "tests/qt/widgets/pictures.h"

namespace pelmarix::test {
namespace {

using namespace std::string_literals;

class PlainTextView : public testing::Test {
 protected:
  PlainTextView() {
    widget.resize(400, 300);
    widget.show();
  }

  void show(const std::string& text) { widget.showText(platform::shareText(text)); }
  QAccessibleTextInterface& bus() { return *QAccessible::queryAccessibleInterface(&widget)->textInterface(); }
  std::string shown() { return bus().text(0, bus().characterCount()).toStdString(); }
  QString shownLine(int number) {
    const auto place = widget.index().line(static_cast<std::size_t>(number)).begin;
    int begin = 0;
    int end = 0;
    return bus().textAtOffset(static_cast<int>(widget.index().utf16Before(place)), QAccessible::LineBoundary,
                              &begin, &end);
  }
  std::string copied() {
    widget.copy();
    return QApplication::clipboard()->text().toStdString();
  }
  void turnWheel(int angle, Qt::KeyboardModifiers modifiers) {
    const QPointF place(10, 10);
    QWheelEvent event(place, widget.mapToGlobal(place), {}, {0, angle}, Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget.viewport(), &event);
  }

  qt::PlainTextView widget;
};

TEST_F(PlainTextView, IsEmptyAtFirst) {
  EXPECT_EQ(*widget.text(), "");
  EXPECT_EQ(shown(), "");
}

TEST_F(PlainTextView, ShowsATextLineByLine) {
  show("\n\nmacOS Mojave: 10.14\nMRTConfigData: 1.2\n");
  EXPECT_EQ(shown(), "\n\nmacOS Mojave: 10.14\nMRTConfigData: 1.2\n");
  EXPECT_EQ(widget.index().lineCount(), 5U);
}

TEST_F(PlainTextView, CanBeReadSelectedAndCopiedButNotChanged) {
  show("Safari");
  QTest::keyClicks(&widget, QStringLiteral("x"));
  QTest::keyClick(&widget, Qt::Key_Delete);
  EXPECT_EQ(shown(), "Safari");
  EXPECT_TRUE(QAccessible::queryAccessibleInterface(&widget)->state().readOnly);
  QTest::keySequence(&widget, QKeySequence::SelectAll);
  QTest::keySequence(&widget, QKeySequence::Copy);
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "Safari");
}

TEST_F(PlainTextView, OffersWhatWasCopiedAsPlainTextAndNothingElse) {
  show("caf\xC3\xA9\n");
  widget.selectAll();
  widget.copy();
  const QMimeData& data = *QApplication::clipboard()->mimeData();
  EXPECT_EQ(data.formats(), QStringList{QStringLiteral("text/plain")});
  EXPECT_EQ(data.data(QStringLiteral("text/plain")).toStdString(), "caf\xC3\xA9\n");
  EXPECT_TRUE(data.data(QStringLiteral("text/html")).isEmpty());
}

TEST_F(PlainTextView, LeavesWhatWasCopiedAsItWasWhenItShowsAnotherTextOrGoes) {
  {
    qt::PlainTextView other;
    other.showText(platform::shareText("Safari 12.0.3\n"));
    other.select(0, 6);
    other.copy();
    other.showText(platform::shareText("Mail 11.2.0\n"));
    other.selectAll();
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "Safari");
  }
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "Safari");
}

TEST_F(PlainTextView, DoesNotWrapLines) {
  show(std::string(1000, 'x'));
  QApplication::processEvents();
  EXPECT_EQ(bus().characterRect(999).top(), bus().characterRect(0).top());
  EXPECT_GT(widget.horizontalScrollBar()->maximum(), 0);
  EXPECT_EQ(widget.verticalScrollBar()->maximum(), 0);
}

TEST_F(PlainTextView, TakesNoMarkupForMarkup) {
  show("<b>bold</b> &amp;");
  EXPECT_EQ(shown(), "<b>bold</b> &amp;");
}

TEST_F(PlainTextView, EndsLinesAtLineFeedsOnly) {
  const std::string text = "a\rb\r\nc\u2028d\u2029e\vf\fg\x1ch\u0085i\n";
  show(text);
  EXPECT_EQ(widget.index().lineCount(), 3U);
  EXPECT_EQ(shownLine(0), QStringLiteral("a\u240db\u240d"));
  EXPECT_EQ(shownLine(1), QStringLiteral("c\u2424d\u2424e\u240bf\u240cg\u241ch\u0085i"));
}

TEST_F(PlainTextView, ShowsASignForWhatHasNoPicture) {
  const std::string text = "a\0b\x7f\u001b\ufdd0\ufdd1\ufffc\tc"s;
  show(text);
  EXPECT_EQ(shownLine(0), QStringLiteral("a\u2400b\u2421\u241b\ufffd\ufffd\ufffd\tc"));
}

TEST_F(PlainTextView, KeepsTheTextByteForByte) {
  const std::string text = "\xef\xbb\xbfnul\0cr\r\u2028\u00a0e\u0301 \U0001f600"s;
  const platform::SharedText shared = platform::shareText(text);
  widget.showText(shared);
  EXPECT_EQ(widget.text(), shared);
  EXPECT_EQ(*widget.text(), text);
}

TEST_F(PlainTextView, CopiesTheTextItselfNotItsPicture) {
  const std::string text = "\U0001f600a\r\nb\u00a0c\u2028d\n";
  show(text);
  widget.selectAll();
  EXPECT_EQ(copied(), text);
  bus().setSelection(0, 3, 8);  // an emoji is two of the bus's units
  EXPECT_EQ(copied(), "\r\nb\u00a0c");
}

TEST_F(PlainTextView, LeavesAllAsItIsWhenTheSameTextComesAgain) {
  std::string lines = "one\ntwo\n" + std::string(100, '\n');
  show(lines);
  widget.select(1, 5);
  widget.verticalScrollBar()->setValue(7);
  const platform::SharedText equal = platform::shareText(lines);
  widget.showText(equal);
  EXPECT_EQ(widget.selection(), (qt::TextRange{1, 5}));
  EXPECT_EQ(widget.verticalScrollBar()->value(), 7);
  EXPECT_EQ(widget.text(), equal);
  show("one\n");
  EXPECT_EQ(widget.selection(), (qt::TextRange{0, 0}));
}

TEST_F(PlainTextView, KeepsItsFirstLineAmongBlankAndRepeatedOnes) {
  // Entries of many lines, of which only the last is there once; then they are turned round, and fewer.
  const auto textOf = [](int begin, int end, int step) {
    std::string text;
    for (int i = begin; i != end; i += step) text += "\nUpdate\n\nnumber " + std::to_string(i) + "\n";
    return text;
  };
  for (const int row : {0, 1, 2, 3}) {
    show(textOf(100, 400, 1));
    widget.verticalScrollBar()->setValue(800 + row);  // of entry 300
    show(textOf(399, 99, -1));
    EXPECT_NEAR(widget.verticalScrollBar()->value(), 4 * 99 + row, 4) << row;
    widget.verticalScrollBar()->setValue(4 * 99 + row);
    show(textOf(398, 98, -2));
    EXPECT_NEAR(widget.verticalScrollBar()->value(), 4 * 49 + row, 4) << row;
  }
  show(std::string(1000, '\n') + "end");
  widget.verticalScrollBar()->setValue(500);
  show(std::string(1000, '\n') + "another end");
  EXPECT_EQ(widget.verticalScrollBar()->value(), 500) << "blank lines stay where they are";
}

TEST_F(PlainTextView, AsksForOtherSizesWhenTheWheelTurnsWithControl) {
  QSignalSpy zoom(&widget, &qt::PlainTextView::zoomRequested);
  turnWheel(120, Qt::NoModifier);
  EXPECT_EQ(zoom.count(), 0);
  turnWheel(240, Qt::ControlModifier);
  turnWheel(-120, Qt::ControlModifier);
  ASSERT_EQ(zoom.count(), 2);
  EXPECT_EQ(zoom.at(0).at(0).toInt(), 2);
  EXPECT_EQ(zoom.at(1).at(0).toInt(), -1);
}

TEST_F(PlainTextView, AddsUpTheSmallTurnsOfFineWheels) {
  QSignalSpy zoom(&widget, &qt::PlainTextView::zoomRequested);
  for (int i = 0; i < 8; ++i) turnWheel(30, Qt::ControlModifier);
  EXPECT_EQ(zoom.count(), 2);
}

TEST_F(PlainTextView, FindsTextAllTheWayRound) {
  using enum qt::SearchStart;
  using enum qt::SearchDirection;
  show("Mail\nSafari\nmail again\n");
  const auto position = [&] { return widget.selection().begin; };
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("MAIL"), pastSelection, forward));
  EXPECT_EQ(position(), 0U);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("mail"), atSelection, forward));
  EXPECT_EQ(position(), 0U);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("mail"), pastSelection, forward));
  EXPECT_EQ(position(), 12U);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("mail"), pastSelection, forward));
  EXPECT_EQ(position(), 0U);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("mail"), pastSelection, backward));
  EXPECT_EQ(position(), 12U);
  EXPECT_FALSE(widget.selectMatch(QStringLiteral("Notes"), pastSelection, forward));
  EXPECT_EQ(position(), 12U);
}

TEST_F(PlainTextView, FindsWhatOverlapsTheSelectionOnTheWayRound) {
  using enum qt::SearchStart;
  using enum qt::SearchDirection;
  show("xaaa");
  const auto select = [&](std::size_t begin, std::size_t end) { widget.select(begin, end); };
  const auto selection = [&] { return widget.selection(); };
  select(2, 4);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("aa"), pastSelection, forward));
  EXPECT_EQ(selection(), (qt::TextRange{1, 3}));
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("aa"), pastSelection, backward));
  EXPECT_EQ(selection(), (qt::TextRange{2, 4}));
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("aa"), pastSelection, backward));
  EXPECT_EQ(selection(), (qt::TextRange{1, 3}));
  select(0, 0);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("xa"), pastSelection, backward));
  EXPECT_EQ(selection(), (qt::TextRange{0, 2}));
  EXPECT_FALSE(widget.selectMatch(QStringLiteral("a string longer than the text"), pastSelection, backward));
}

TEST_F(PlainTextView, CountsMatchesThatDoNotOverlapAsItMarksThem) {
  show("aaaaa Aa\n\u00c4 \u00e4\na");
  EXPECT_EQ(widget.countMatches(QStringLiteral("aa")).matches, 3U);
  EXPECT_EQ(widget.countMatches(QStringLiteral("\u00e4")).matches, 2U);
  EXPECT_EQ(widget.countMatches(QStringLiteral("A")).matches, 8U);
  EXPECT_EQ(widget.countMatches(QStringLiteral("b")).matches, 0U);
  EXPECT_EQ(widget.countMatches({}).matches, 0U);
}

TEST_F(PlainTextView, TellsWhichOfTheMatchesIsSelected) {
  show("Mail Safari Mail");
  EXPECT_EQ(widget.countMatches(QStringLiteral("mail")).selected, 0U);
  widget.select(12, 16);
  EXPECT_EQ(widget.countMatches(QStringLiteral("mail")).selected, 2U);
  widget.select(12, 15);
  EXPECT_EQ(widget.countMatches(QStringLiteral("mail")).selected, 0U);
}

TEST_F(PlainTextView, FindsTextAheadWithoutGoingRound) {
  using Start = qt::SearchStart;
  using Direction = qt::SearchDirection;
  show("Mail Safari Mail");
  const auto found = [this](Start start, Direction direction) {
    const bool isFound = widget.selectMatchAhead(QStringLiteral("mail"), start, direction);
    return isFound ? std::optional(widget.selection().begin) : std::nullopt;
  };
  EXPECT_EQ(found(Start::atEdge, Direction::backward), 12U);
  EXPECT_EQ(found(Start::pastSelection, Direction::forward), std::nullopt);
  EXPECT_EQ(found(Start::upToSelection, Direction::forward), 0U);
  EXPECT_EQ(found(Start::pastSelection, Direction::backward), std::nullopt);
  EXPECT_EQ(found(Start::upToSelection, Direction::backward), 12U);
  EXPECT_EQ(found(Start::atEdge, Direction::forward), 0U);
  EXPECT_EQ(found(Start::upToSelection, Direction::forward), 0U) << "that is selected is found again";
}

TEST_F(PlainTextView, FindsNothingInNothingAndNoEmptyText) {
  using enum qt::SearchStart;
  using enum qt::SearchDirection;
  for (const qt::SearchDirection direction : {forward, backward}) {
    show("");
    EXPECT_FALSE(widget.selectMatch(QStringLiteral("a"), pastSelection, direction));
    show("Mail");
    EXPECT_FALSE(widget.selectMatch({}, atSelection, direction));
  }
}

TEST_F(PlainTextView, TakesABlankForOneThatDoesNotBreakLines) {
  show(
      "caf\xC3\xA9 \xF0\x9F\x92\xBE no\xC2\xA0"
      "break");
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("NO BREAK"), qt::SearchStart::pastSelection,
                                 qt::SearchDirection::forward));
  EXPECT_EQ(widget.selection().begin, 11U);
  EXPECT_EQ(widget.selection().end, 20U);
}

TEST_F(PlainTextView, MarksTheMatchesOnScreen) {
  show("Mail\n\n\n");
  QApplication::processEvents();
  const QImage before = widget.viewport()->grab().toImage();
  widget.markMatches(QStringLiteral("ail"));
  const QRectF match = widget.rectOf(1).united(widget.rectOf(3));
  EXPECT_TRUE(isAbout(changedPart(before, widget.viewport()->grab().toImage()), match.toRect()));
  widget.markMatches({});
  EXPECT_EQ(widget.viewport()->grab().toImage(), before);
}

TEST_F(PlainTextView, FollowsADarkPalette) {
  show("text");
  QPalette dark;
  dark.setColor(QPalette::Base, Qt::black);
  dark.setColor(QPalette::Text, Qt::white);
  widget.setPalette(dark);
  const QImage image = widget.viewport()->grab().toImage();
  EXPECT_EQ(image.pixelColor(image.width() - 2, image.height() - 2), QColor(Qt::black));
  bool hasLightPixel = false;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) hasLightPixel |= image.pixelColor(x, y).lightness() > 200;
  EXPECT_TRUE(hasLightPixel);
}

TEST_F(PlainTextView, GoesThroughOneLineOfFiftyMegabytes) {
  const std::size_t length = 50'000'000;
  std::string line(length, 'x');
  line.replace(length / 2, 4, "here");
  show(line);
  QTest::keyClick(&widget, Qt::Key_End);
  EXPECT_EQ(widget.caret(), length);
  EXPECT_TRUE(QRectF(widget.viewport()->rect()).contains(widget.rectOf(length).topLeft()));
  QTest::keyClick(&widget, Qt::Key_Left);
  EXPECT_EQ(widget.caret(), length - 1);
  EXPECT_EQ(widget.placeAt(widget.rectOf(length - 1).center() - QPointF(1, 0)), length - 1);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("HERE"), qt::SearchStart::pastSelection,
                                 qt::SearchDirection::forward));
  EXPECT_EQ(widget.selection(), (qt::TextRange{length / 2, length / 2 + 4}));
  EXPECT_TRUE(QRectF(widget.viewport()->rect()).contains(widget.rectOf(length / 2 + 3).center()));
  widget.horizontalScrollBar()->setValue(0);
  EXPECT_EQ(widget.placeAt({0, 10}), 0U);
}

TEST_F(PlainTextView, HasNoGapsBetweenThePartsOfALongLine) {
  show(std::string(10'000, 'i'));  // narrower than the average letter that is expected of parts not seen yet
  const qreal width = widget.xOf(1) - widget.xOf(0);
  for (const std::size_t part : {2048U, 4096U, 6144U, 8192U})
    for (std::size_t place = part - 2; place < part + 2; ++place)
      EXPECT_NEAR(widget.xOf(place + 1) - widget.xOf(place), width, 0.1) << place;
}

TEST_F(PlainTextView, ScrollsNoFartherThanALineThatIsALittleLongerThanAPart) {
  const std::size_t length = 2048 + 5;
  show(std::string(length, 'x'));
  const double farthest = widget.horizontalScrollBar()->maximum() + widget.viewport()->width();
  EXPECT_NEAR(farthest, widget.xOf(length), 10 * widget.xOf(1));
}

TEST_F(PlainTextView, BringsAPlaceIntoViewBesidePartsOfALongLineThatAreWiderOrNarrowerThanExpected) {
  for (const char letter : {'W', 'i'}) {
    show(std::string(100'000, letter) + "\n");
    for (const std::size_t place : {99'999U, 10U * 2048 + 3, 40U * 2048 - 3, 20U * 2048, 100'000U, 0U}) {
      widget.select(place, place);
      EXPECT_TRUE(QRectF(widget.viewport()->rect()).contains(widget.rectOf(place).topLeft()))
          << letter << place;
    }
  }
}

TEST_F(PlainTextView, KeepsItsColumnsWhereTheyAreWhileItScrollsAndInEverySize) {
  widget.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  widget.setColumns({QTextOption::RightTab, QTextOption::LeftTab});
  std::string text;
  for (std::size_t line = 0; line < 5000; ++line)
    text += "./" + std::string(line % 60, 'x') + "\t" + std::to_string(line) + "\tMon\n";
  show(text);
  const auto lettersBeforeDate = [&](std::size_t line) {
    return widget.xOf(widget.index().line(line).end - 3) /
           QFontMetricsF(widget.font()).horizontalAdvance(u'0');
  };
  for (const int size : {12, 24}) {
    QFont font = widget.font();
    font.setPointSize(size);
    widget.setFont(font);
    for (const int first : {0, 3000, 4990}) {
      widget.verticalScrollBar()->setValue(first);
      for (const std::size_t line : {0U, 59U, 3001U, 4999U})
        EXPECT_NEAR(lettersBeforeDate(line), 61 + 2 + 4 + 2, 0.1) << line;
    }
  }
}

TEST_F(PlainTextView, ShowsTenMillionEmptyLines) {
  std::string lines;
  lines.resize(10'000'000, '\n');
  show(lines);
  EXPECT_EQ(widget.index().lineCount(), 10'000'001U);
  QTest::keyClick(&widget, Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(widget.caret(), 10'000'000U);
  EXPECT_EQ(widget.verticalScrollBar()->value(), widget.verticalScrollBar()->maximum());
  QTest::keyClick(&widget, Qt::Key_Up, {});
  EXPECT_EQ(widget.caret(), 9'999'999U);
}

TEST_F(PlainTextView, BeginsLinesAtTheLeftOnDesktopsThatReadFromTheRight) {
  widget.setLayoutDirection(Qt::RightToLeft);
  show(std::string(1000, 'x') + "\n\u05e9\u05dc\u05d5\u05dd: 1");
  EXPECT_EQ(widget.horizontalScrollBar()->value(), 0);
  EXPECT_EQ(widget.horizontalScrollBar()->layoutDirection(), Qt::LeftToRight);
  EXPECT_LT(widget.rectOf(0).left(), 10);
  EXPECT_LT(widget.rectOf(1001).left(), widget.rectOf(1011).left());
}

}  // namespace
}  // namespace pelmarix::test
