#include "qt/widgets/timeline_strip.h"

#include <gmock/gmock.h>

#include <QMenu>
#include <algorithm>

#include "tests/qt/widgets/timeline_strip_fixture.h"

namespace pelmarix::test {
namespace {

using platform::TimelineDirection;
using platform::TimelineKind;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::IsEmpty;

class TimelineStrip : public TimelineStripFixture {};

// With the mouse.

TEST_F(TimelineStrip, ChoosesTheMarkThatIsClicked) {
  TimelineEntry* const first = add(300, TimelineKind::securityData);
  TimelineEntry* const second = add(700, TimelineKind::receipt);
  show();
  const QPoint placeOfFirst = placeOf(0);
  const QPoint placeOfSecond = placeOf(1);
  QTest::mouseClick(&strip, Qt::LeftButton, {}, placeOfSecond);
  QTest::mouseClick(&strip, Qt::LeftButton, {}, placeOfFirst);
  EXPECT_THAT(chosen, ElementsAre(second, first));
  QTest::mouseClick(&strip, Qt::RightButton, {}, placeOfFirst);
  QTest::mouseClick(&strip, Qt::LeftButton, {}, placeOfFirst + QPoint(0, 60));
  QTest::mouseClick(&strip, Qt::LeftButton, {}, {5, placeOfFirst.y()});
  EXPECT_THAT(chosen, ElementsAre(second, first));
}

TEST_F(TimelineStrip, GoesOnWithQuickClicksOnAMarkAndFitsAllByADoubleClickBesideIt) {
  add(500, TimelineKind::securityData);
  show();
  const QPoint place = placeOf(0);
  wheel(place, {0, 240});
  const auto doubleClick = [this](QPoint at) {
    QTest::mouseClick(&strip, Qt::LeftButton, {}, at);
    QTest::mouseDClick(&strip, Qt::LeftButton, {}, at);
    QTest::mouseRelease(&strip, Qt::LeftButton, {}, at);
    strip.repaint();
  };
  doubleClick(place);
  EXPECT_EQ(chosen.size(), 2U);
  EXPECT_LT(length(), 1000);
  doubleClick(place + QPoint(100, 0));
  EXPECT_EQ(chosen.size(), 2U);
  EXPECT_EQ(scale.span.begin, 0);
  EXPECT_EQ(scale.span.end, 1000);
}

TEST_F(TimelineStrip, ZoomsAroundThePointerWithinBounds) {
  add(250, TimelineKind::receipt);
  show();
  const QPoint place = placeOf(0);
  const auto timeAtPlace = [&] { return scale.span.begin + length() / 4; };
  wheel(place, {0, 120});
  const double once = length();
  EXPECT_LT(once, 900);
  EXPECT_THAT(timeAtPlace(), DoubleNear(250, 2));
  wheel(place, {0, -120});
  EXPECT_THAT(length(), DoubleNear(1000, 1e-6));
  pinch(place, 0.25);
  EXPECT_THAT(length(), DoubleNear(800, 1e-6));
  EXPECT_THAT(timeAtPlace(), DoubleNear(250, 2));
  wheel(place, {0, 120 * 100});
  EXPECT_THAT(length(), DoubleNear(600, 1e-6));
  EXPECT_THAT(timeAtPlace(), DoubleNear(250, 2));
  wheel(place, {0, -120 * 100});
  EXPECT_EQ(scale.span.begin, 0);
  EXPECT_EQ(scale.span.end, 1000);
}

TEST_F(TimelineStrip, MovesByDraggingAndByTheWheelsOtherDirectionWithinBounds) {
  add(500, TimelineKind::receipt);
  show();
  const QPoint place = placeOf(0);
  wheel(place, {0, 480});
  const platform::TimelineSpan before = scale.span;
  drag(place, place - QPoint(100, 0));
  EXPECT_THAT(scale.span.begin - before.begin, DoubleNear(length() / scale.width * 100, 1e-6));
  EXPECT_THAT(length(), DoubleNear(before.end - before.begin, 1e-6));
  EXPECT_THAT(chosen, IsEmpty()) << "a drag that began on a mark chooses nothing";
  drag(place, place + QPoint(100, 0));
  EXPECT_THAT(scale.span.begin, DoubleNear(before.begin, 1e-6));
  wheel(place, {-120, 0});
  EXPECT_GT(scale.span.begin, before.begin);
  for (int i = 0; i < 100; ++i) wheel(place, {-1200, 0});
  EXPECT_THAT(scale.span.end, DoubleNear(1000, 1e-6));
  drag(place, place + QPoint(100'000, 0));
  EXPECT_EQ(scale.span.begin, 0);
}

TEST_F(TimelineStrip, TellsWhatIsUnderThePointer) {
  add(500, TimelineKind::securityData);
  rest.gaps = {{600, 700, "40 days without security data"}};
  rest.bands = {{0, 700, "macOS <b>\nMojave", false}};
  show();
  const QPoint place = placeOf(0);
  EXPECT_EQ(toolTipAt(place), "<p>Entry of &lt;500&gt;\u21c4</p>");
  const int left = place.x() - static_cast<int>(scale.width / 2);
  EXPECT_EQ(toolTipAt({left + 650, place.y()}), "<p>40 days without security data</p>");
  EXPECT_EQ(toolTipAt({left + 650, place.y() + 60}), "<p>macOS &lt;b&gt;\u240aMojave</p>");
  EXPECT_EQ(toolTipAt({left + 720, place.y()}), "");
}

TEST_F(TimelineStrip, OpensAMenuOfItsActions) {
  strip.addAction(new QAction(QStringLiteral("Copy Picture"), &strip));
  show();
  for (const Qt::Key key : {Qt::Key_Menu, Qt::Key_F10}) {
    if (key == Qt::Key_F10) {
      press(key, Qt::ShiftModifier);
    } else {
      QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
      QApplication::sendEvent(&strip, &event);
    }
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr) << key;
    EXPECT_EQ(menu->actions(), strip.actions());
    menu->close();
  }
}

// By keyboard and for screen readers.

TEST_F(TimelineStrip, GoesToTheMarkBesideAndTellsItAloud) {
  TimelineEntry* const entry = add(300, TimelineKind::receipt);
  show();
  beside = entry;
  for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down}) press(key);
  EXPECT_THAT(directions, ElementsAre(TimelineDirection::left, TimelineDirection::right,
                                      TimelineDirection::up, TimelineDirection::down));
  EXPECT_THAT(chosen, ElementsAre(entry, entry, entry, entry));
  EXPECT_EQ(announced().toStdString(), "Entry of <300>\u202e");
  beside = nullptr;
  press(Qt::Key_Right);
  EXPECT_EQ(chosen.size(), 4U) << "there is none";
}

TEST_F(TimelineStrip, GoesThroughTheEntriesOfAMarkByReturn) {
  TimelineEntry* const entry = add(300, TimelineKind::receipt);
  show();
  press(Qt::Key_Return);
  EXPECT_THAT(chosen, IsEmpty());
  selected = entry;
  strip.selectionDidChange(entry);
  press(Qt::Key_Return);
  EXPECT_THAT(chosen, ElementsAre(entry));
  EXPECT_EQ(announced().toStdString(), "Entry of <300>\u202e");
}

TEST_F(TimelineStrip, ZoomsByKeysAroundWhatIsSelectedAndFitsAll) {
  selected = add(800, TimelineKind::receipt);
  show();
  press(Qt::Key_Plus);
  EXPECT_THAT(length(), DoubleNear(800, 1e-6));
  EXPECT_THAT(scale.span.begin + length() * 0.8, DoubleNear(800, 1e-6));
  press(Qt::Key_Equal);
  EXPECT_THAT(length(), DoubleNear(640, 1e-6));
  press(Qt::Key_Minus);
  EXPECT_THAT(length(), DoubleNear(800, 1e-6));
  press(Qt::Key_Home);
  EXPECT_EQ(length(), 1000);
  selected = nullptr;
  strip.selectionDidChange(nullptr);
  press(Qt::Key_Plus);
  EXPECT_THAT(scale.span.begin, DoubleNear(100, 1e-6)) << "around the middle";
}

TEST_F(TimelineStrip, BringsWhatIsSelectedIntoView) {
  TimelineEntry* const early = add(100, TimelineKind::receipt);
  TimelineEntry* const late = add(900, TimelineKind::receipt);
  TimelineEntry* const last = add(999, TimelineKind::receipt);
  show();
  strip.selectionDidChange(early);
  strip.repaint();
  EXPECT_EQ(length(), 1000);
  press(Qt::Key_Plus);
  for (int i = 0; i < 5; ++i) press(Qt::Key_Plus);
  const double zoomed = length();
  for (TimelineEntry* const entry : {late, early, last}) {
    strip.selectionDidChange(entry);
    strip.repaint();
    EXPECT_LE(scale.span.begin, entry->seconds);
    EXPECT_GE(scale.span.end, entry->seconds);
    EXPECT_THAT(length(), DoubleNear(zoomed, 1e-6));
  }
  EXPECT_EQ(scale.span.end, 1000);
}

TEST_F(TimelineStrip, KeepsWhatIsInViewWhenItIsFilledAnewAsFarAsItStillExists) {
  add(500, TimelineKind::receipt);
  show();
  span = {-500, 1500};
  strip.reloadData();
  strip.repaint();
  EXPECT_EQ(length(), 2000) << "all was in view, and is";
  press(Qt::Key_Plus);
  const platform::TimelineSpan before = scale.span;
  strip.reloadData();
  strip.repaint();
  EXPECT_EQ(scale.span.begin, before.begin);
  EXPECT_EQ(scale.span.end, before.end);
  span = {400, 600};
  strip.reloadData();
  strip.repaint();
  EXPECT_EQ(scale.span.begin, 400);
  EXPECT_EQ(scale.span.end, 600);
}

TEST_F(TimelineStrip, IsAChartThatIsDescribedInWords) {
  show();
  const QAccessibleInterface& accessible = *QAccessible::queryAccessibleInterface(&strip);
  EXPECT_EQ(accessible.role(), QAccessible::Chart);
  EXPECT_EQ(accessible.text(QAccessible::Name), QStringLiteral("Timeline"));
  EXPECT_EQ(accessible.text(QAccessible::Description), QStringLiteral("From first to last."));
  EXPECT_TRUE(accessible.state().focusable);
  words = "From another.";
  strip.reloadData();
  EXPECT_EQ(accessible.text(QAccessible::Description), QStringLiteral("From another."));
}

TEST_F(TimelineStrip, StandsEmptyLanesAndSpansOfAnyLength) {
  for (const platform::TimelineSpan any :
       {platform::TimelineSpan{0, 86400}, {-1e15, 1e15}, {5, 6}, {0, 1e-9}}) {
    span = any;
    show();
    press(Qt::Key_Minus);
    for (int i = 0; i < 300; ++i) press(Qt::Key_Plus);
    EXPECT_GT(length(), 0);
    EXPECT_GE(scale.span.begin, any.begin);
    EXPECT_LE(scale.span.end, std::max(any.end, any.begin + 10));
    press(Qt::Key_Home);
    EXPECT_EQ(scale.span.end, any.end);
  }
  strip.resize(10, 10);
  strip.repaint();
  EXPECT_GE(scale.width, 1);
}

}  // namespace
}  // namespace pelmarix::test
