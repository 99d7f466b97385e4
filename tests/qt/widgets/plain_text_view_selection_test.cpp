// Selecting, copying and scrolling by real events of keyboard and mouse.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QDrag>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <memory>
#include <string>
#include <vector>

#include "qt/widgets/plain_text_view.h"
#include "tests/qt/widgets/pictures.h"

namespace pelmarix::test {
namespace {

class PlainTextViewSelection : public testing::Test {
 protected:
  PlainTextViewSelection() {
    view.resize(400, 300);
    view.show();
    view.activateWindow();
    view.setFocus();
    QApplication::processEvents();
  }

  void show(const std::string& text) { view.showText(platform::shareText(text)); }
  std::string selected() const { return std::string(view.index().part(view.selection())); }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, int times = 1) {
    for (int i = 0; i < times; ++i) QTest::keyClick(&view, key, modifiers);
  }
  /// Just right of a place's left edge, so that it is nearer than the next one.
  QPoint pointAt(std::size_t place) {
    return (view.rectOf(place).center() - QPointF(view.rectOf(place).width() / 4, 0)).toPoint();
  }
  void click(std::size_t place, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, pointAt(place));
  }
  void doubleClick(std::size_t place) {
    click(place);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, pointAt(place));
  }
  void moveTo(QPoint point) {
    QMouseEvent event(QEvent::MouseMove, point, view.viewport()->mapToGlobal(point), Qt::NoButton,
                      Qt::LeftButton, {});
    QApplication::sendEvent(view.viewport(), &event);
  }
  void release(QPoint point) { QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, point); }

  qt::PlainTextView view;
};

TEST_F(PlainTextViewSelection, GoesAndSelectsByCharacter) {
  show("a\u00e9\U0001f600e\u0301\nb");
  const std::size_t places[] = {0, 1, 3, 7, 10, 11, 12};  // an accent belongs to its letter
  for (const std::size_t place : places) {
    EXPECT_EQ(view.caret(), place);
    press(Qt::Key_Right);
  }
  EXPECT_EQ(view.caret(), 12U) << "the end is the last place";
  for (std::size_t i = std::size(places); i-- > 0; press(Qt::Key_Left)) EXPECT_EQ(view.caret(), places[i]);
  EXPECT_EQ(view.caret(), 0U);
  press(Qt::Key_Right, Qt::ShiftModifier, 3);
  EXPECT_EQ(selected(), "a\u00e9\U0001f600");
  press(Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_EQ(selected(), "a\u00e9");
  press(Qt::Key_Right);
  EXPECT_EQ(selected(), "");
}

TEST_F(PlainTextViewSelection, GoesAndSelectsByWord) {
  show("Safari 12.0\nMail");
  press(Qt::Key_Right, Qt::ControlModifier);
  EXPECT_EQ(view.caret(), 7U);
  press(Qt::Key_End, Qt::ControlModifier);
  press(Qt::Key_Left, Qt::ControlModifier);
  EXPECT_EQ(view.caret(), 12U);
  press(Qt::Key_Left, Qt::ControlModifier | Qt::ShiftModifier, 2);
  EXPECT_EQ(selected(), "0\n");
  press(Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(selected(), "\n");
}

TEST_F(PlainTextViewSelection, GoesAndSelectsByLineAndKeepsItsColumn) {
  show("long line\nx\nlonger line\n");
  press(Qt::Key_End);
  EXPECT_EQ(view.caret(), 9U);
  press(Qt::Key_Home);
  EXPECT_EQ(view.caret(), 0U);
  press(Qt::Key_Right, {}, 6);
  press(Qt::Key_Down);
  EXPECT_EQ(view.caret(), 11U) << "at the end of the short line";
  press(Qt::Key_Down);
  EXPECT_NEAR(static_cast<double>(view.caret()), 18, 1) << "below where it came from";
  press(Qt::Key_Up, {}, 2);
  EXPECT_EQ(view.caret(), 6U);
  press(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(selected(), "ine\nx");
  press(Qt::Key_Home, Qt::ShiftModifier);
  EXPECT_EQ(selected(), "ine\n");
  press(Qt::Key_End, Qt::ShiftModifier);
  EXPECT_EQ(selected(), "ine\nx");
}

TEST_F(PlainTextViewSelection, GoesAndSelectsByPageAndToTheEnds) {
  std::string text;
  for (int i = 100; i < 1100; ++i) text += std::to_string(i) + "\n";
  show(text);
  press(Qt::Key_PageDown);
  const std::size_t page = view.index().lineAt(view.caret());
  EXPECT_GT(page, 5U);
  EXPECT_EQ(view.verticalScrollBar()->value(), static_cast<int>(page));
  press(Qt::Key_PageDown, Qt::ShiftModifier);
  EXPECT_EQ(view.selection(),
            (qt::TextRange{view.index().line(page).begin, view.index().line(2 * page).begin}));
  press(Qt::Key_PageUp, {}, 2);
  EXPECT_EQ(view.caret(), 0U);
  EXPECT_EQ(view.verticalScrollBar()->value(), 0);
  press(Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(view.caret(), text.size());
  EXPECT_EQ(view.verticalScrollBar()->value(), view.verticalScrollBar()->maximum());
  press(Qt::Key_Home, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(selected(), text);
  EXPECT_EQ(view.verticalScrollBar()->value(), 0);
  press(Qt::Key_End, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(selected(), "");
}

TEST_F(PlainTextViewSelection, StaysInTheFirstAndInTheLastLine) {
  show("0123456789\n0123456789");
  view.select(5, 5);
  press(Qt::Key_Up);
  EXPECT_EQ(view.caret(), 5U);
  press(Qt::Key_PageUp);
  EXPECT_EQ(view.caret(), 5U);
  press(Qt::Key_Down, {}, 2);
  EXPECT_EQ(view.caret(), 16U);
  press(Qt::Key_PageDown);
  EXPECT_EQ(view.caret(), 16U);
}

TEST_F(PlainTextViewSelection, ScrollsByPagesOfTwoLinesToo) {
  const int lineHeight = static_cast<int>(view.rectOf(0).height());
  view.resize(view.width(), view.height() - view.viewport()->height() + 4 + 2 * lineHeight);
  show(std::string(100, '\n'));
  press(Qt::Key_PageDown);
  EXPECT_EQ(view.caret(), 2U);
  EXPECT_EQ(view.verticalScrollBar()->value(), 2);
}

TEST_F(PlainTextViewSelection, KeepsWhatIsSelectedUnderAPressOnItsFirstLetterToo) {
  show("Safari Mail");
  view.select(7, 11);
  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, pointAt(7));
  EXPECT_EQ(selected(), "Mail");
  release(pointAt(7));
  EXPECT_EQ(selected(), "");
  view.select(0, 6);
  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, pointAt(6));
  EXPECT_EQ(selected(), "") << "behind it";
  release(pointAt(6));
}

TEST_F(PlainTextViewSelection, SelectsOnFromWhereShiftIsHeldWithTheMouse) {
  show("Safari\nMail\n");
  click(2);
  QTest::mousePress(view.viewport(), Qt::LeftButton, Qt::ShiftModifier, pointAt(4));
  moveTo(pointAt(9));
  EXPECT_EQ(selected(), "fari\nMa");
  release(pointAt(9));
}

TEST_F(PlainTextViewSelection, IsReachedByTheKeyboardAndHasAMouseForTexts) {
  EXPECT_EQ(view.focusPolicy(), Qt::StrongFocus);
  EXPECT_EQ(view.viewport()->cursor().shape(), Qt::IBeamCursor);
}

TEST_F(PlainTextViewSelection, SelectsAllWithoutScrolling) {
  show(std::string(1000, '\n'));
  view.verticalScrollBar()->setValue(10);
  press(Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(selected(), std::string(1000, '\n'));
  EXPECT_EQ(view.verticalScrollBar()->value(), 10);
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), std::string(1000, '\n'));
}

TEST_F(PlainTextViewSelection, CopiesNothingWhereNothingIsSelected) {
  QApplication::clipboard()->setText(QStringLiteral("before"));
  show("text");
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("before"));
}

TEST_F(PlainTextViewSelection, PlacesTheCaretByAClickAndSelectsFromItWithShift) {
  show("Safari\nMail\n");
  click(2);
  EXPECT_EQ(view.selection(), (qt::TextRange{2, 2}));
  click(9, Qt::ShiftModifier);
  EXPECT_EQ(selected(), "fari\nMa");
  click(1, Qt::ShiftModifier);
  EXPECT_EQ(selected(), "a");
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, QPoint(390, 290));
  EXPECT_EQ(view.selection(), (qt::TextRange{12, 12})) << "below the last line";
}

TEST_F(PlainTextViewSelection, SelectsByDraggingInBothDirections) {
  show("Safari\nMail\n");
  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, pointAt(3));
  moveTo(pointAt(9));
  EXPECT_EQ(selected(), "ari\nMa");
  moveTo(pointAt(1));
  EXPECT_EQ(selected(), "af");
  release(pointAt(1));
  moveTo(pointAt(9));
  EXPECT_EQ(selected(), "af");
}

TEST_F(PlainTextViewSelection, SelectsWordsByADoubleClickAndDraggingOn) {
  show("macOS Mojave update");
  doubleClick(8);
  EXPECT_EQ(selected(), "Mojave");
  EXPECT_EQ(view.caret(), 12U) << "at its end";
  moveTo(pointAt(14));
  EXPECT_EQ(selected(), "Mojave update");
  moveTo(pointAt(2));
  EXPECT_EQ(selected(), "macOS Mojave");
  release(pointAt(2));
  doubleClick(8);
  release(pointAt(8));
  click(14, Qt::ShiftModifier);
  EXPECT_EQ(selected(), "Mojave u") << "by characters again";
}

TEST_F(PlainTextViewSelection, SelectsTheLastWordByADoubleClickOnItsLastLetter) {
  show("macOS Mojave");
  const QRectF last = view.rectOf(11);
  const QPoint point = QPointF(last.right() - 1, last.center().y()).toPoint();
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, point);
  QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, point);
  EXPECT_EQ(selected(), "Mojave");
}

TEST_F(PlainTextViewSelection, SelectsTheWordUnderTheMouseBesideOneThatGoesToTheLeft) {
  show("abc \u05e9\u05dc\u05d5\u05dd def");
  const QPointF lastLetter = view.rectOf(10).center();
  for (const int aside : {-2, 2}) {
    const QPoint point = (lastLetter + QPointF(aside, 0)).toPoint();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, point);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, point);
    EXPECT_EQ(selected(), "\u05e9\u05dc\u05d5\u05dd") << aside;
  }
}

TEST_F(PlainTextViewSelection, HasItsCaretWhereTheLetterBeginsThatGoesToTheLeft) {
  show("\u05e9\u05dc\u05d5\u05dd");
  view.clearFocus();
  const QImage without = view.viewport()->grab().toImage();
  for (const std::size_t place : {0U, 2U, 4U}) {
    view.clearFocus();
    view.select(place, place);
    view.setFocus();
    const QRect caret = changedPart(without, view.viewport()->grab().toImage());
    EXPECT_NEAR(caret.left(), view.xOf(place) + 4, 1.5) << place;
    EXPECT_EQ(caret.width(), 1) << place;
  }
}

TEST_F(PlainTextViewSelection, SelectsLinesByAThirdClickAndDraggingOn) {
  show("one two\nthree\nfour\n");
  doubleClick(5);
  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, pointAt(5));
  EXPECT_EQ(selected(), "one two\n");
  moveTo(pointAt(10));
  EXPECT_EQ(selected(), "one two\nthree\n");
  release(pointAt(10));
}

TEST_F(PlainTextViewSelection, ScrollsWhileTheMouseIsHeldBelowOrAbove) {
  show(std::string(1000, '\n'));
  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, QPoint(10, 10));
  moveTo(QPoint(10, view.viewport()->height() + 40));
  EXPECT_TRUE(QTest::qWaitFor([&] { return view.verticalScrollBar()->value() > 20; }));
  EXPECT_GT(view.selection().end, 20U);
  moveTo(QPoint(10, -40));
  EXPECT_TRUE(QTest::qWaitFor([&] { return view.verticalScrollBar()->value() == 0; }));
  release(QPoint(10, -40));
  EXPECT_EQ(view.selection(), (qt::TextRange{0, 0}));
}

TEST_F(PlainTextViewSelection, ScrollsNoMoreWhenTheButtonComesUpElsewhere) {
  show(std::string(100'000, '\n'));
  QWidget other;
  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, QPoint(10, 10));
  moveTo(QPoint(10, view.viewport()->height() + 40));
  EXPECT_TRUE(QTest::qWaitFor([&] { return view.verticalScrollBar()->value() > 0; }));
  QTest::mouseRelease(&other, Qt::LeftButton);
  const int value = view.verticalScrollBar()->value();
  QTest::qWait(200);  // as long as three steps of scrolling take
  EXPECT_EQ(view.verticalScrollBar()->value(), value);
  moveTo(pointAt(view.selection().end + 2));
  EXPECT_EQ(view.verticalScrollBar()->value(), value);
}

TEST_F(PlainTextViewSelection, SelectsNoMoreWhenAnotherTextComesWhileTheMouseIsHeld) {
  show(std::string(1000, '\n'));
  press(Qt::Key_End, Qt::ControlModifier);
  const QPoint below(10, view.viewport()->height() + 40);
  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, QPoint(10, view.viewport()->height() - 10));
  moveTo(below);
  show("Safari");
  moveTo(pointAt(3));
  EXPECT_EQ(view.selection(), (qt::TextRange{0, 0}));
  QTest::qWait(200);  // as long as three steps of scrolling take
  EXPECT_EQ(view.selection(), (qt::TextRange{0, 0}));
  release(pointAt(3));
}

TEST_F(PlainTextViewSelection, ScrollsToTheSideWhereTheCaretGoes) {
  show(std::string(1000, 'x') + "\ny");
  press(Qt::Key_End);
  EXPECT_GT(view.horizontalScrollBar()->value(), view.horizontalScrollBar()->maximum() - 10);
  EXPECT_TRUE(QRectF(view.viewport()->rect()).contains(view.rectOf(1000).topLeft()));
  press(Qt::Key_Home);
  EXPECT_EQ(view.horizontalScrollBar()->value(), 0);
}

TEST_F(PlainTextViewSelection, KeepsWhatIsSelectedUnderAPressAndDropsItByAClick) {
  show("Safari Mail");
  view.select(0, 6);
  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, pointAt(2));
  EXPECT_EQ(selected(), "Safari") << "it may be dragged out";
  release(pointAt(2));
  EXPECT_EQ(view.selection(), (qt::TextRange{2, 2}));
}

TEST_F(PlainTextViewSelection, LetsWhatIsSelectedBeDraggedOutOnceTheMouseHasMovedFarEnough) {
  show("Safari Mail");
  view.select(0, 6);
  std::vector<std::string> dragged;
  const auto moveAndEndADrag = [&](QPoint point) {
    QTimer::singleShot(0, &view, [&] {
      const auto drags = view.findChildren<QDrag*>();
      for (const QDrag* drag : drags) dragged.push_back(drag->mimeData()->text().toStdString());
      QDrag::cancel();
    });
    moveTo(point);
    QApplication::processEvents();
  };
  const QPoint start = pointAt(2);
  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, start);
  moveAndEndADrag(start + QPoint(QApplication::startDragDistance() - 1, 0));
  EXPECT_TRUE(dragged.empty());
  moveAndEndADrag(start + QPoint(QApplication::startDragDistance(), 0));
  EXPECT_EQ(dragged, std::vector<std::string>{"Safari"});
  moveAndEndADrag(start + QPoint(100, 0));
  EXPECT_EQ(dragged.size(), 1U) << "until the next press";
  EXPECT_EQ(selected(), "Safari");
  release(start);
  EXPECT_EQ(selected(), "Safari") << "it wasn't a click";
}

TEST_F(PlainTextViewSelection, LeavesTheSelectionToOtherButtons) {
  show("Safari Mail");
  view.select(0, 6);
  QTest::mouseClick(view.viewport(), Qt::RightButton, {}, pointAt(9));
  QTest::mouseClick(view.viewport(), Qt::MiddleButton, {}, pointAt(9));
  EXPECT_EQ(selected(), "Safari");
}

TEST_F(PlainTextViewSelection, HasAMenuToCopyAndToSelectAll) {
  show("Safari Mail");
  std::vector<bool> areEnabled;
  const auto choose = [&](int item) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), view.mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(view.viewport(), &event);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    areEnabled.push_back(menu->actions().at(0)->isEnabled());
    menu->actions().at(item)->trigger();
    menu->close();
  };
  choose(1);
  EXPECT_EQ(selected(), "Safari Mail");
  choose(0);
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("Safari Mail"));
  EXPECT_EQ(areEnabled, (std::vector{false, true}));
  EXPECT_TRUE(QTest::qWaitFor([this] { return view.findChild<QMenu*>() == nullptr; })) << "it has gone";
}

TEST_F(PlainTextViewSelection, MayGoWhileItsMenuIsOpen) {
  auto other = std::make_unique<qt::PlainTextView>();
  other->show();
  QTimer::singleShot(0, [&other] { other.reset(); });
  QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), other->mapToGlobal(QPoint(5, 5)));
  QApplication::sendEvent(other->viewport(), &event);
  EXPECT_TRUE(QTest::qWaitFor([&] { return other == nullptr; }));
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(PlainTextViewSelection, ScrollsByTheWheel) {
  show(std::string(1000, '\n'));
  const QPointF place(10, 10);
  QWheelEvent event(place, view.mapToGlobal(place), {}, {0, -120}, Qt::NoButton, {}, Qt::NoScrollPhase,
                    false);
  QApplication::sendEvent(view.viewport(), &event);
  EXPECT_EQ(view.verticalScrollBar()->value(), QApplication::wheelScrollLines());
}

TEST_F(PlainTextViewSelection, HasItsCaretInViewWhenAnotherTextComes) {
  std::string text;
  for (int i = 100; i < 1100; ++i) text += std::to_string(i) + "\n";
  show(text);
  view.verticalScrollBar()->setValue(500);
  show(text + "end");
  press(Qt::Key_Down);
  EXPECT_EQ(view.verticalScrollBar()->value(), 500);
  EXPECT_EQ(view.index().lineAt(view.caret()), 501U);
}

TEST_F(PlainTextViewSelection, KeepsItsFirstLineWhenTheFontChanges) {
  show(std::string(1000, '\n'));
  view.verticalScrollBar()->setValue(500);
  QFont large = view.font();
  large.setPointSizeF(30);
  view.setFont(large);
  EXPECT_EQ(view.verticalScrollBar()->value(), 500);
  EXPECT_EQ(view.rectOf(500).height(), std::ceil(QFontMetricsF(large).lineSpacing()));
}

}  // namespace
}  // namespace pelmarix::test
