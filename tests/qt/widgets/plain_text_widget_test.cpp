#include "qt/widgets/plain_text_widget.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QWheelEvent>
#include <string>
#include <utility>

#include "tests/qt/widgets/pictures.h"

namespace pelmarix::test {
namespace {

using namespace std::string_literals;

class PlainTextWidget : public testing::Test {
 protected:
  PlainTextWidget() {
    widget.resize(400, 300);
    widget.show();
  }

  void show(const std::string& text) { widget.showText(platform::shareText(text)); }
  std::string shown() const { return widget.toPlainText().toStdString(); }
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

  qt::PlainTextWidget widget;
};

TEST_F(PlainTextWidget, IsEmptyAtFirst) {
  EXPECT_EQ(*widget.text(), "");
  EXPECT_EQ(shown(), "");
}

TEST_F(PlainTextWidget, ShowsATextLineByLine) {
  show("\n\nmacOS Mojave: 10.14\nMRTConfigData: 1.2\n");
  EXPECT_EQ(shown(), "\n\nmacOS Mojave: 10.14\nMRTConfigData: 1.2\n");
  EXPECT_EQ(widget.blockCount(), 5);
}

TEST_F(PlainTextWidget, CanBeReadSelectedAndCopiedButNotChanged) {
  show("Safari");
  QTest::keyClicks(&widget, QStringLiteral("x"));
  QTest::keyClick(&widget, Qt::Key_Delete);
  EXPECT_EQ(shown(), "Safari");
  EXPECT_TRUE(widget.isReadOnly());
  QTest::keySequence(&widget, QKeySequence::SelectAll);
  QTest::keySequence(&widget, QKeySequence::Copy);
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "Safari");
}

TEST_F(PlainTextWidget, OffersWhatWasCopiedAsPlainTextAndNothingElse) {
  show("caf\xC3\xA9\n");
  widget.selectAll();
  widget.copy();
  const QMimeData& data = *QApplication::clipboard()->mimeData();
  EXPECT_EQ(data.formats(), QStringList{QStringLiteral("text/plain")});
  EXPECT_EQ(data.data(QStringLiteral("text/plain")).toStdString(), "caf\xC3\xA9\n");
  EXPECT_TRUE(data.data(QStringLiteral("text/html")).isEmpty());
}

TEST_F(PlainTextWidget, LeavesWhatWasCopiedAsItWasWhenItShowsAnotherTextOrGoes) {
  {
    qt::PlainTextWidget other;
    other.showText(platform::shareText("Safari 12.0.3\n"));
    other.moveCursor(QTextCursor::EndOfWord, QTextCursor::KeepAnchor);
    other.copy();
    other.showText(platform::shareText("Mail 11.2.0\n"));
    other.selectAll();
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "Safari");
  }
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "Safari");
}

TEST_F(PlainTextWidget, DoesNotWrapLines) {
  show(std::string(1000, 'x'));
  EXPECT_EQ(widget.lineWrapMode(), QPlainTextEdit::NoWrap);
  EXPECT_EQ(widget.document()->lineCount(), 1);
}

TEST_F(PlainTextWidget, TakesNoMarkupForMarkup) {
  show("<b>bold</b> &amp;");
  EXPECT_EQ(shown(), "<b>bold</b> &amp;");
}

TEST_F(PlainTextWidget, EndsLinesAtLineFeedsOnly) {
  const std::string text = "a\rb\r\nc\u2028d\u2029e\vf\fg\x1ch\u0085i\n";
  show(text);
  EXPECT_EQ(widget.blockCount(), 3);
  EXPECT_EQ(widget.document()->firstBlock().text(), QStringLiteral("a\u240db\u240d"));
  EXPECT_EQ(widget.document()->firstBlock().next().text(),
            QStringLiteral("c\u2424d\u2424e\u240bf\u240cg\u241ch\u0085i"));
}

TEST_F(PlainTextWidget, ShowsASignForWhatHasNoPicture) {
  const std::string text = "a\0b\x7f\u001b\ufdd0\ufdd1\ufffc\tc"s;
  show(text);
  EXPECT_EQ(widget.document()->firstBlock().text(),
            QStringLiteral("a\u2400b\u2421\u241b\ufffd\ufffd\ufffd\tc"));
}

TEST_F(PlainTextWidget, KeepsTheTextByteForByte) {
  const std::string text = "\xef\xbb\xbfnul\0cr\r\u2028\u00a0e\u0301 \U0001f600"s;
  const platform::SharedText shared = platform::shareText(text);
  widget.showText(shared);
  EXPECT_EQ(widget.text(), shared);
  EXPECT_EQ(*widget.text(), text);
}

TEST_F(PlainTextWidget, CopiesTheTextItselfNotItsPicture) {
  const std::string text = "\U0001f600a\r\nb\u00a0c\u2028d\n";
  show(text);
  widget.selectAll();
  EXPECT_EQ(copied(), text);
  QTextCursor cursor = widget.textCursor();
  cursor.setPosition(3);  // an emoji is two of Qt's units
  cursor.setPosition(8, QTextCursor::KeepAnchor);
  widget.setTextCursor(cursor);
  EXPECT_EQ(copied(), "\r\nb\u00a0c");
}

TEST_F(PlainTextWidget, LaysOutTheSameTextOnlyOnce) {
  show("one\ntwo\n");
  const int revision = widget.document()->revision();
  const platform::SharedText equal = platform::shareText("one\ntwo\n");
  widget.showText(equal);
  EXPECT_EQ(widget.document()->revision(), revision);
  EXPECT_EQ(widget.text(), equal);
  show("one\n");
  EXPECT_NE(widget.document()->revision(), revision);
}

TEST_F(PlainTextWidget, KeepsNoHistoryOfTexts) {
  show("one");
  show("two");
  EXPECT_FALSE(widget.document()->isUndoRedoEnabled());
  EXPECT_FALSE(widget.document()->isUndoAvailable());
}

TEST_F(PlainTextWidget, AsksForOtherSizesWhenTheWheelTurnsWithControl) {
  QSignalSpy zoom(&widget, &qt::PlainTextWidget::zoomRequested);
  turnWheel(120, Qt::NoModifier);
  EXPECT_EQ(zoom.count(), 0);
  turnWheel(240, Qt::ControlModifier);
  turnWheel(-120, Qt::ControlModifier);
  ASSERT_EQ(zoom.count(), 2);
  EXPECT_EQ(zoom.at(0).at(0).toInt(), 2);
  EXPECT_EQ(zoom.at(1).at(0).toInt(), -1);
}

TEST_F(PlainTextWidget, AddsUpTheSmallTurnsOfFineWheels) {
  QSignalSpy zoom(&widget, &qt::PlainTextWidget::zoomRequested);
  for (int i = 0; i < 8; ++i) turnWheel(30, Qt::ControlModifier);
  EXPECT_EQ(zoom.count(), 2);
}

TEST_F(PlainTextWidget, FindsTextAllTheWayRound) {
  using enum qt::SearchStart;
  using enum qt::SearchDirection;
  show("Mail\nSafari\nmail again\n");
  const auto position = [&] { return widget.textCursor().selectionStart(); };
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("MAIL"), pastSelection, forward));
  EXPECT_EQ(position(), 0);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("mail"), atSelection, forward));
  EXPECT_EQ(position(), 0);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("mail"), pastSelection, forward));
  EXPECT_EQ(position(), 12);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("mail"), pastSelection, forward));
  EXPECT_EQ(position(), 0);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("mail"), pastSelection, backward));
  EXPECT_EQ(position(), 12);
  EXPECT_FALSE(widget.selectMatch(QStringLiteral("Notes"), pastSelection, forward));
  EXPECT_EQ(position(), 12);
}

TEST_F(PlainTextWidget, FindsWhatOverlapsTheSelectionOnTheWayRound) {
  using enum qt::SearchStart;
  using enum qt::SearchDirection;
  show("xaaa");
  const auto select = [&](int begin, int end) {
    QTextCursor cursor = widget.textCursor();
    cursor.setPosition(begin);
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    widget.setTextCursor(cursor);
  };
  const auto selection = [&] {
    return std::pair(widget.textCursor().selectionStart(), widget.textCursor().selectionEnd());
  };
  select(2, 4);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("aa"), pastSelection, forward));
  EXPECT_EQ(selection(), std::pair(1, 3));
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("aa"), pastSelection, backward));
  EXPECT_EQ(selection(), std::pair(2, 4));
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("aa"), pastSelection, backward));
  EXPECT_EQ(selection(), std::pair(1, 3));
  select(0, 0);
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("xa"), pastSelection, backward));
  EXPECT_EQ(selection(), std::pair(0, 2));
  EXPECT_FALSE(widget.selectMatch(QStringLiteral("a string longer than the text"), pastSelection, backward));
}

TEST_F(PlainTextWidget, FindsNothingInNothingAndNoEmptyText) {
  using enum qt::SearchStart;
  using enum qt::SearchDirection;
  for (const qt::SearchDirection direction : {forward, backward}) {
    show("");
    EXPECT_FALSE(widget.selectMatch(QStringLiteral("a"), pastSelection, direction));
    show("Mail");
    EXPECT_FALSE(widget.selectMatch({}, atSelection, direction));
  }
}

TEST_F(PlainTextWidget, TakesABlankForOneThatDoesNotBreakLines) {
  show(
      "caf\xC3\xA9 \xF0\x9F\x92\xBE no\xC2\xA0"
      "break");
  EXPECT_TRUE(widget.selectMatch(QStringLiteral("NO BREAK"), qt::SearchStart::pastSelection,
                                 qt::SearchDirection::forward));
  EXPECT_EQ(widget.textCursor().selectionStart(), 8);
  EXPECT_EQ(widget.textCursor().selectionEnd(), 16);
}

TEST_F(PlainTextWidget, MarksTheMatchesOnScreen) {
  show("Mail\n\n\n");
  QApplication::processEvents();
  const QImage before = widget.viewport()->grab().toImage();
  widget.markMatches(QStringLiteral("ail"));
  const auto placeOf = [this](int position) {
    QTextCursor cursor = widget.textCursor();
    cursor.setPosition(position);
    return widget.cursorRect(cursor);
  };
  const QRect match(placeOf(1).topLeft(), placeOf(4).bottomLeft());
  EXPECT_TRUE(isAbout(changedPart(before, widget.viewport()->grab().toImage()), match));
  widget.markMatches({});
  EXPECT_EQ(widget.viewport()->grab().toImage(), before);
}

TEST_F(PlainTextWidget, FollowsADarkPalette) {
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

}  // namespace
}  // namespace pelmarix::test
