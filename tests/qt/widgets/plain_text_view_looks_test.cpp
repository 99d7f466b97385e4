// What a text looks like, and what it tells of itself.
#include <gtest/gtest.h>

#include <QApplication>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>
#include <functional>
#include <string>
#include <thread>

#include "qt/widgets/palette_colors.h"
#include "qt/widgets/plain_text_view.h"
#include "tests/qt/widgets/paintings.h"
#include "tests/qt/widgets/pictures.h"

namespace pelmarix::test {
namespace {

class PlainTextViewLooks : public testing::Test {
 protected:
  PlainTextViewLooks() {
    view.setGeometry(0, 0, 400, 300);
    other.setFocusPolicy(Qt::StrongFocus);
    window.resize(400, 400);
    window.show();
    focus(view);
  }

  void focus(QWidget& widget) {
    window.activateWindow();
    widget.setFocus();
    ASSERT_TRUE(QTest::qWaitFor([&widget] { return widget.hasFocus(); }));
  }
  void show(const std::string& text) { view.showText(platform::shareText(text)); }
  QImage picture() { return view.viewport()->grab().toImage(); }
  QColor colorAt(QPointF place) { return picture().pixelColor(place.toPoint()); }
  QRect rectOf(std::size_t begin, std::size_t end) {
    return view.rectOf(begin).united(view.rectOf(end - 1)).toAlignedRect();
  }
  void turnWheel(int angle) {
    const QPointF place(10, 10);
    QWheelEvent event(place, view.mapToGlobal(place), {}, {0, angle}, Qt::NoButton, Qt::ControlModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(view.viewport(), &event);
    EXPECT_TRUE(event.isAccepted());
  }

  QWidget window;
  qt::PlainTextView view{&window};
  QWidget other{&window};
};

TEST_F(PlainTextViewLooks, HasItsCaretWhereTheKeyboardIsAndOnlyThen) {
  show("   \n   ");
  for (const std::size_t place : {0U, 2U, 5U}) {
    focus(view);
    view.select(place, place);
    const QImage with = picture();
    focus(other);
    const QRectF line = view.rectOf(place);
    const QRect caret = changedPart(with, picture());
    EXPECT_EQ(caret.width(), 1) << place;
    EXPECT_NEAR(caret.left(), line.left(), 1) << place;
    EXPECT_EQ(caret.top(), static_cast<int>(line.top())) << place;
    EXPECT_EQ(caret.height(), static_cast<int>(line.height())) << place;
    EXPECT_EQ(with.pixelColor(caret.center()), view.palette().color(QPalette::Text)) << place;
  }
}

TEST_F(PlainTextViewLooks, DrawsWhatIsSelectedInTheColoursOfSelectionsAndDullerWithoutTheKeyboard) {
  show("      \n");
  view.select(4, 1);
  const QPointF inside = view.rectOf(2).center();
  const QPointF outside = view.rectOf(4).center();
  EXPECT_EQ(colorAt(inside), view.palette().color(QPalette::Highlight));
  EXPECT_EQ(colorAt(outside), view.palette().color(QPalette::Base));
  focus(other);
  const QColor dull = colorAt(inside);
  EXPECT_NE(dull, view.palette().color(QPalette::Highlight));
  EXPECT_NE(dull, view.palette().color(QPalette::Base));
  EXPECT_EQ(colorAt(outside), view.palette().color(QPalette::Base));
}

TEST_F(PlainTextViewLooks, DrawsWhatIsSelectedAboveMarks) {
  show(" .  . \n");
  view.select(2, 4);
  const QPointF inside = view.rectOf(2).center();
  const QColor selected = colorAt(inside);
  view.markMatches(QStringLiteral("  "));
  EXPECT_EQ(colorAt(inside), selected);
  view.select(0, 0);
  const QColor marked = colorAt(inside);
  EXPECT_NE(marked, selected);
  EXPECT_NE(marked, view.palette().color(QPalette::Base));
}

TEST_F(PlainTextViewLooks, MarksEveryMatchInView) {
  show("ab ab\nab\n\n ab");
  focus(other);
  const QImage before = picture();
  view.markMatches(QStringLiteral("AB"));
  const QImage after = picture();
  for (const std::size_t place : {0U, 3U, 6U, 11U}) {
    const QRect match = rectOf(place, place + 2);
    EXPECT_TRUE(isAbout(changedPart(before.copy(match), after.copy(match)), QRect({}, match.size())))
        << place;
  }
  EXPECT_EQ(after.copy(rectOf(2, 3).adjusted(1, 0, -1, 0)), before.copy(rectOf(2, 3).adjusted(1, 0, -1, 0)));
}

TEST_F(PlainTextViewLooks, SaysWhatItsPlaceholderSaysWhereItIsEmpty) {
  const QImage empty = picture();
  view.setPlaceholderText(QStringLiteral("There is no report."));
  EXPECT_EQ(view.placeholderText(), QStringLiteral("There is no report."));
  const QRect text = changedPart(empty, picture());
  EXPECT_NEAR(text.center().x(), view.viewport()->rect().center().x(), 2);
  EXPECT_NEAR(text.center().y(), view.viewport()->rect().center().y(), 4);
  show(" ");
  focus(other);
  const QImage with = picture();
  view.setPlaceholderText({});
  EXPECT_EQ(picture(), with);
}

TEST_F(PlainTextViewLooks, IsDrawnAnewWhenWhatIsSeenChanges) {
  show("one two three\n");
  Paintings paintings(*view.viewport());
  const std::pair<const char*, std::function<void()>> changes[] = {
      {"selected", [this] { view.select(1, 3); }},
      {"marked", [this] { view.markMatches(QStringLiteral("two")); }},
      {"without the keyboard", [this] { focus(other); }},
      {"with it", [this] { focus(view); }},
      {"another text", [this] { show("one two four\n"); }},
      {"other columns", [this] { view.setColumns({QTextOption::LeftTab}); }},
      {"bigger", [this] { view.setPointSize(20); }},
  };
  for (const auto& [name, change] : changes) EXPECT_TRUE(paintings.follow(change)) << name;
}

TEST_F(PlainTextViewLooks, HasLettersOfASizeThatCanBeDrawn) {
  for (const auto& [asked, given] : {std::pair(13.5, 13.5),
                                     {1.0, 1.0},
                                     {0.5, 1.0},
                                     {-3.0, 1.0},
                                     {500.0, 500.0},
                                     {501.0, 500.0},
                                     {1e9, 500.0}}) {
    view.setPointSize(asked);
    EXPECT_EQ(view.font().pointSizeF(), given);
  }
}

TEST_F(PlainTextViewLooks, KeepsWhatAStepOfTheWheelLeaves) {
  const QSignalSpy zoom(&view, &qt::PlainTextView::zoomRequested);
  const auto steps = [&] {
    int sum = 0;
    for (const auto& signal : zoom) sum += signal.at(0).toInt();
    return sum;
  };
  turnWheel(100);
  EXPECT_EQ(zoom.count(), 0);
  turnWheel(80);
  EXPECT_EQ(steps(), 1);
  turnWheel(60);
  EXPECT_EQ(steps(), 2);
  turnWheel(-180);
  EXPECT_EQ(steps(), 1);
  turnWheel(-60);
  EXPECT_EQ(steps(), 0);
  EXPECT_EQ(zoom.count(), 4);
  turnWheel(360);
  EXPECT_EQ(steps(), 3);
  EXPECT_EQ(zoom.count(), 5) << "at once";
}

TEST_F(PlainTextViewLooks, TellsWhenAnotherTextComesAndWhenAnythingElseIsSelected) {
  const QSignalSpy text(&view, &qt::PlainTextView::textChanged);
  const QSignalSpy selection(&view, &qt::PlainTextView::selectionChanged);
  show("one two");
  EXPECT_EQ(text.count(), 1);
  show("one two");
  EXPECT_EQ(text.count(), 1) << "it is the same";
  EXPECT_EQ(selection.count(), 0);
  view.select(1, 3);
  view.select(1, 3);
  EXPECT_EQ(selection.count(), 1);
  view.select(1, 4);
  view.select(2, 4);
  EXPECT_EQ(selection.count(), 3);
}

TEST_F(PlainTextViewLooks, TellsTheLineOfTheMatchAndOfAnEndlessLineWhatComesFromItOn) {
  const auto told = [this](std::size_t begin, std::size_t end) {
    view.select(begin, end);
    return view.selectedMatchInWords().toStdString();
  };
  show("first\nsecond line\nthird");
  EXPECT_EQ(told(9, 12), "second line");
  EXPECT_EQ(told(12, 9), "second line");
  show(std::string(600, '\n') + "one line");
  EXPECT_EQ(told(604, 608), "one line") << "far down";
  const std::string before(1000, 'a');
  const std::string after(3000, 'b');
  show(before + "match" + after);
  EXPECT_EQ(told(1000, 1005), (before + "match" + after).substr(0, 2000));
  show("x" + before + "match" + after);
  EXPECT_EQ(told(1001, 1006), ("match" + after).substr(0, 2000));
  show("x" + before + "match");
  EXPECT_EQ(told(1001, 1006), "match");
}

TEST_F(PlainTextViewLooks, BringsAMatchIntoViewAsAWhole) {
  std::string text(500, '.');
  text.replace(100, 8, "wherever");
  show(text + "\n");
  view.select(400, 400);
  view.select(500, 500);
  EXPECT_TRUE(view.selectMatch(QStringLiteral("wherever"), qt::SearchStart::pastSelection,
                               qt::SearchDirection::backward));
  EXPECT_GE(view.rectOf(100).left(), 0);
  EXPECT_LE(view.rectOf(108).left(), view.viewport()->width());
  view.select(0, 0);
  EXPECT_TRUE(view.selectMatch(QStringLiteral("wherever"), qt::SearchStart::pastSelection,
                               qt::SearchDirection::forward));
  EXPECT_GE(view.rectOf(100).left(), 0);
  EXPECT_LE(view.rectOf(108).left(), view.viewport()->width());
}

TEST_F(PlainTextViewLooks, ForgetsItsColumnWhenAnotherTextComesOrTheUserGoesElsewhere) {
  show("0123456789\n0123456789\n0123456789\n");
  view.select(8, 8);
  QTest::keyClick(&view, Qt::Key_Down);
  EXPECT_EQ(view.caret(), 11U + 8);
  view.select(2, 2);
  QTest::keyClick(&view, Qt::Key_Down);
  EXPECT_EQ(view.caret(), 11U + 2);
  show("abcdefghij\nabcdefghij\n");
  QTest::keyClick(&view, Qt::Key_Down);
  EXPECT_EQ(view.caret(), 11U);
}

TEST_F(PlainTextViewLooks, TakesAThirdClickForOneOnlySoonAndInTheSamePlace) {
  show("one two three four five six seven\nnext line\n");
  const auto pointAt = [this](std::size_t place) {
    return (view.rectOf(place).center() - QPointF(view.rectOf(place).width() / 4, 0)).toPoint();
  };
  const auto doubleClickAndClick = [&](QPoint first, QPoint third, std::chrono::milliseconds pause) {
    view.select(0, 0);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, first);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, first);
    std::this_thread::sleep_for(pause);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, third);
    return view.selection();
  };
  using namespace std::chrono_literals;
  const qt::TextRange line{0, 34};
  EXPECT_EQ(doubleClickAndClick(pointAt(5), pointAt(5), 0ms), line);
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, pointAt(5));
  EXPECT_EQ(view.selection(), (qt::TextRange{5, 5})) << "a fourth is one by itself";
  EXPECT_EQ(
      doubleClickAndClick(pointAt(5), pointAt(5) + QPoint(QApplication::startDragDistance() - 1, 0), 0ms),
      line);
  EXPECT_NE(doubleClickAndClick(pointAt(5), pointAt(5) + QPoint(QApplication::startDragDistance(), 0), 0ms),
            line);
  EXPECT_EQ(doubleClickAndClick(pointAt(5), pointAt(20), 0ms), (qt::TextRange{20, 20}));
  const int interval = QApplication::doubleClickInterval();
  QApplication::setDoubleClickInterval(2);
  EXPECT_NE(doubleClickAndClick(pointAt(5), pointAt(5), 10ms), line);
  QApplication::setDoubleClickInterval(interval);
}

}  // namespace
}  // namespace pelmarix::test
