// How far a strip moves and zooms, and what it leaves to others.
#include <QMenu>
#include <QVBoxLayout>
#include <cmath>

#include "tests/qt/widgets/paintings.h"
#include "tests/qt/widgets/thick_frames.h"
#include "tests/qt/widgets/timeline_strip_fixture.h"

namespace pelmarix::test {
namespace {

using platform::TimelineKind;

class TimelineStripPlaces : public TimelineStripFixture {
 protected:
  TimelineStripPlaces() { span = {0, 1'000'000}; }

  double left() { return static_cast<double>(placeOf(0).x()) - scale.width / 2; }
  void wheelBy(QPoint pixels, QPoint angle) {
    QWheelEvent event(QPointF(500, 100), strip.mapToGlobal(QPointF(500, 100)), pixels, angle, {}, {},
                      Qt::NoScrollPhase, false);
    event.ignore();
    QApplication::sendEvent(&strip, &event);
    EXPECT_TRUE(event.isAccepted());
    strip.repaint();
  }
  bool isLeftToOthers(Qt::Key key) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(&strip, &event);
    return !event.isAccepted();
  }
};

TEST_F(TimelineStripPlaces, ZoomsByAQuarterForEachStepAroundThePointer) {
  add(500'000, TimelineKind::receipt);
  show();
  const double middle = placeOf(0).x();
  const double quarter = middle - scale.width / 4;
  wheel({static_cast<int>(quarter), 100}, {0, 120});
  EXPECT_NEAR(length(), 800'000, 1);
  EXPECT_NEAR(scale.span.begin, 50'000, 1500);
  wheel({static_cast<int>(quarter), 100}, {0, 240});
  EXPECT_NEAR(length(), 512'000, 1);
  wheel({static_cast<int>(quarter), 100}, {0, -60});
  EXPECT_NEAR(length(), 512'000 * std::sqrt(1.25), 1);
  press(Qt::Key_Home);
  wheel({0, 100}, {0, 120});
  EXPECT_NEAR(scale.span.begin, 0, 1) << "left of it: around its beginning";
  press(Qt::Key_Home);
  wheel({strip.width() - 1, 100}, {0, 120});
  EXPECT_NEAR(scale.span.end, 1'000'000, 1) << "right of it: around its end";
}

TEST_F(TimelineStripPlaces, ZoomsNoFartherThanTenMinutes) {
  show();
  for (int i = 0; i < 60; ++i) press(Qt::Key_Plus);
  EXPECT_NEAR(length(), 600, 1e-6);
  EXPECT_NEAR(scale.span.begin + 300, 500'000, 1) << "still around the middle";
}

TEST_F(TimelineStripPlaces, ZoomsByAPinchAndByNoOtherGesture) {
  show();
  const QPoint middle(static_cast<int>(strip.width() - scale.width / 2), 100);
  pinch(middle, 1);
  EXPECT_NEAR(length(), 500'000, 1);
  pinch(middle, -0.2);
  EXPECT_NEAR(length(), 625'000, 1);
  pinch(middle, 24);
  EXPECT_NEAR(length(), 25'000, 1);
  pinch(middle, -2);
  EXPECT_NEAR(length(), 250'000, 1) << "ten times at most";
  QNativeGestureEvent turn(Qt::RotateNativeGesture, QPointingDevice::primaryPointingDevice(), 2, middle,
                           middle, strip.mapToGlobal(QPointF(middle)), 90, {});
  EXPECT_FALSE(QApplication::sendEvent(&strip, &turn));
  strip.repaint();
  EXPECT_NEAR(length(), 250'000, 1);
}

TEST_F(TimelineStripPlaces, MovesByWhatTheWheelSays) {
  show();
  for (int i = 0; i < 4; ++i) press(Qt::Key_Plus);
  const double before = scale.span.begin;
  const double zoomed = length();
  const double pixel = zoomed / scale.width;
  wheelBy({-30, 0}, {-240, 0});
  EXPECT_NEAR(scale.span.begin - before, 30 * pixel, 1e-3) << "in pixels where it knows them";
  wheelBy({30, 0}, {240, 0});
  wheelBy({}, {-240, 10});
  EXPECT_NEAR(scale.span.begin - before, 2 * scale.markWidth * pixel, 1e-3) << "by a mark's width for a step";
  wheelBy({}, {240, -10});
  EXPECT_NEAR(scale.span.begin, before, 1e-3);
  EXPECT_NEAR(length(), zoomed, 1e-3);
  wheelBy({}, {120, 120});
  EXPECT_LT(length(), zoomed) << "as much up as aside: it zooms";
}

TEST_F(TimelineStripPlaces, TakesASmallMoveForAClick) {
  TimelineEntry* const entry = add(500'000, TimelineKind::securityData);
  show();
  for (int i = 0; i < 4; ++i) press(Qt::Key_Plus);
  const double before = scale.span.begin;
  const QPoint place = placeOf(0);
  const auto dragBy = [&](int distance) {
    chosen.clear();
    QTest::mousePress(&strip, Qt::LeftButton, {}, place);
    const QPoint to = place + QPoint(distance, 0);
    QMouseEvent move(QEvent::MouseMove, to, strip.mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&strip, &move);
    QTest::mouseRelease(&strip, Qt::LeftButton, {}, place);
    strip.repaint();
    return chosen.size();
  };
  for (const int sign : {1, -1}) {
    EXPECT_EQ(dragBy(sign * (QApplication::startDragDistance() - 1)), 1U);
    EXPECT_NEAR(scale.span.begin, before, 1e-3);
    EXPECT_EQ(dragBy(sign * QApplication::startDragDistance()), 0U);
    EXPECT_NEAR(scale.span.begin, before - sign * QApplication::startDragDistance() * length() / scale.width,
                1e-3);
    EXPECT_EQ(dragBy(-sign * QApplication::startDragDistance()), 0U);
  }
  EXPECT_EQ(dragBy(0), 1U);
  EXPECT_EQ(chosen.front(), entry);
}

TEST_F(TimelineStripPlaces, IsMovedByTheLeftButtonAlone) {
  show();
  for (int i = 0; i < 4; ++i) press(Qt::Key_Plus);
  const double before = scale.span.begin;
  const auto moveTo = [this](QPoint to) {
    QMouseEvent move(QEvent::MouseMove, to, strip.mapToGlobal(to), Qt::NoButton, Qt::RightButton, {});
    QApplication::sendEvent(&strip, &move);
  };
  QTest::mousePress(&strip, Qt::RightButton, {}, {500, 100});
  moveTo({600, 100});
  QTest::mouseRelease(&strip, Qt::RightButton, {}, {600, 100});
  QTest::mouseDClick(&strip, Qt::RightButton, {}, {600, 100});
  moveTo({700, 100});
  strip.repaint();
  EXPECT_EQ(scale.span.begin, before);
  drag({500, 100}, {450, 100});
  const double moved = scale.span.begin;
  EXPECT_GT(moved, before);
  moveTo({700, 100});
  strip.repaint();
  EXPECT_EQ(scale.span.begin, moved) << "the button is up";
}

TEST_F(TimelineStripPlaces, ChoosesWithTheButtonThatWentDownOnItAlone) {
  add(500'000, TimelineKind::securityData);
  show();
  const QPoint place = placeOf(0);
  QTest::mouseRelease(&strip, Qt::LeftButton, {}, place);
  EXPECT_TRUE(chosen.empty()) << "it went down elsewhere";
  QTest::mousePress(&strip, Qt::LeftButton, {}, place);
  QTest::mouseRelease(&strip, Qt::RightButton, {}, place);
  EXPECT_TRUE(chosen.empty());
  QTest::mouseRelease(&strip, Qt::LeftButton, {}, place);
  EXPECT_EQ(chosen.size(), 1U);
}

TEST_F(TimelineStripPlaces, IsDrawnAnewWhenWhatIsSeenChanges) {
  TimelineEntry* const entry = add(500'000, TimelineKind::receipt);
  show();
  Paintings paintings(strip);
  EXPECT_TRUE(paintings.follow([this] { QTest::keyClick(&strip, Qt::Key_Plus); }));
  EXPECT_TRUE(paintings.follow([&] { strip.selectionDidChange(entry); }));
  EXPECT_TRUE(paintings.follow([this] { strip.reloadData(); }));
  EXPECT_FALSE(paintings.follow([] {}));
}

TEST_F(TimelineStripPlaces, StaysWhereItIsForWhatIsInViewAndPutsOthersIntoTheMiddle) {
  show();
  for (int i = 0; i < 4; ++i) press(Qt::Key_Plus);
  const platform::TimelineSpan before = scale.span;
  TimelineEntry& entry = *add(before.begin, TimelineKind::receipt);
  const auto select = [&](double seconds) {
    entry.seconds = seconds;
    strip.selectionDidChange(&entry);
    strip.repaint();
  };
  select(before.begin);
  EXPECT_EQ(scale.span.begin, before.begin);
  select(before.end);
  EXPECT_EQ(scale.span.begin, before.begin);
  select(before.end + 1);
  EXPECT_NEAR((scale.span.begin + scale.span.end) / 2, before.end + 1, 1);
  const double begin = scale.span.begin;
  select(begin - 1);
  EXPECT_NEAR((scale.span.begin + scale.span.end) / 2, begin - 1, 1);
  EXPECT_NEAR(length(), before.end - before.begin, 1e-3);
}

TEST_F(TimelineStripPlaces, StillShowsAllWhenThereIsMoreAndAPartWhenItWasOne) {
  show();
  span = {0, 2'000'000};
  strip.reloadData();
  strip.repaint();
  EXPECT_EQ(scale.span.end, 2'000'000);
  wheel({strip.width() - 1, 100}, {0, 120});
  const double begin = scale.span.begin;
  EXPECT_GT(begin, 0);
  span = {0, 3'000'000};
  strip.reloadData();
  strip.repaint();
  EXPECT_EQ(scale.span.begin, begin);
  EXPECT_EQ(scale.span.end, 2'000'000) << "its end was that of all, its beginning not";
  press(Qt::Key_Home);
  wheel({0, 100}, {0, 120});
  span = {0, 4'000'000};
  strip.reloadData();
  strip.repaint();
  EXPECT_EQ(scale.span.begin, 0);
  EXPECT_NEAR(scale.span.end, 2'400'000, 1);
  wheel({500, 100}, {-120 * 1000, 0});
  span = {0, 3'000'000};
  strip.reloadData();
  strip.repaint();
  EXPECT_EQ(scale.span.end, 3'000'000) << "it moves as far as there is anything";
  EXPECT_NEAR(length(), 2'400'000, 1);
}

TEST_F(TimelineStripPlaces, LeavesOtherKeysToOthers) {
  show();
  EXPECT_TRUE(isLeftToOthers(Qt::Key_A));
  EXPECT_TRUE(isLeftToOthers(Qt::Key_F10)) << "without Shift it is the menu bar's";
  EXPECT_FALSE(isLeftToOthers(Qt::Key_Plus));
  EXPECT_FALSE(isLeftToOthers(Qt::Key_Return));
}

TEST_F(TimelineStripPlaces, OpensItsMenuWhereItIsClickedAndInItsMiddleForAKey) {
  strip.addAction(new QAction(QStringLiteral("Copy Picture"), &strip));
  show();
  const auto menuPlace = [this] {
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    const QPoint place = menu == nullptr ? QPoint(-1, -1) : menu->pos() - strip.mapToGlobal(QPoint());
    if (menu != nullptr) menu->close();
    return place;
  };
  for (const auto reason : {QContextMenuEvent::Mouse, QContextMenuEvent::Keyboard}) {
    QContextMenuEvent event(reason, {30, 40}, strip.mapToGlobal(QPoint(30, 40)));
    QApplication::sendEvent(&strip, &event);
    EXPECT_EQ(menuPlace(), reason == QContextMenuEvent::Mouse ? QPoint(30, 40) : strip.rect().center());
  }
  press(Qt::Key_F10, Qt::ShiftModifier);
  EXPECT_EQ(menuPlace(), strip.rect().center());
  EXPECT_TRUE(QTest::qWaitFor([this] { return strip.findChild<QMenu*>() == nullptr; })) << "all have gone";
}

TEST_F(TimelineStripPlaces, IsAtLeastFortyLettersWide) {
  show();
  EXPECT_EQ(strip.minimumSizeHint().width(), strip.fontMetrics().averageCharWidth() * 40);
  EXPECT_EQ(strip.sizePolicy(), QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed));
}

TEST_F(TimelineStripPlaces, HasItsNewHeightInALayoutWhenItsLanesChange) {
  QWidget window;
  qt::TimelineStrip inside(&window);
  inside.setDataSource(*this);
  QVBoxLayout layout(&window);
  layout.addWidget(&inside);
  window.show();
  inside.reloadData();
  QApplication::processEvents();
  const int six = inside.height();
  lanes = 5;
  inside.reloadData();
  QApplication::processEvents();
  EXPECT_LT(inside.height(), six);
  EXPECT_EQ(inside.height(), inside.sizeHint().height());
}

TEST_F(TimelineStripPlaces, HasAFrameWithinItsFrameWhereTheKeyboardIs) {
  QFont font = strip.font();
  font.setPointSizeF(36);
  strip.setFont(font);
  strip.resize(1000, 500);
  show();
  const int thick = strip.fontMetrics().height() / 7;
  const QImage with = picture();
  strip.clearFocus();
  const QImage without = picture();
  const QRect inside = strip.contentsRect();
  const QColor color = strip.palette().color(QPalette::Highlight);
  for (const QPoint corner :
       {inside.topLeft(), inside.topRight(), inside.bottomLeft(), inside.bottomRight()}) {
    const QPoint inward((corner.x() < 500) ? 1 : -1, (corner.y() < 250) ? 1 : -1);
    for (const QPoint along : {QPoint(inward.x() * 200, 0), QPoint(0, inward.y() * 150)}) {
      const bool isAside = along.x() != 0;
      const QPoint across = isAside ? QPoint(0, inward.y()) : QPoint(inward.x(), 0);
      EXPECT_EQ(with.pixelColor(corner + along), color);
      EXPECT_EQ(with.pixelColor(corner + along + across * (thick - 2)), color);
      EXPECT_EQ(with.pixelColor(corner + along + across * (thick + 2)),
                without.pixelColor(corner + along + across * (thick + 2)));
    }
  }
  QFrame usual;
  usual.setFrameStyle(strip.frameStyle());
  usual.resize(strip.size());
  EXPECT_EQ(without.pixelColor(0, 250), usual.grab().toImage().pixelColor(0, 250)) << "the usual frame";
}

TEST_F(TimelineStripPlaces, IsMeasuredAnewInAnotherSize) {
  show();
  const double before = scale.width;
  strip.resize(800, 200);
  QApplication::processEvents();
  strip.repaint();
  EXPECT_EQ(scale.width, before - 200);
}

TEST_F(TimelineStripPlaces, IsMeasuredAnewInAnotherStyle) {
  show();
  const double before = scale.width;
  const int frame = strip.frameWidth();
  ThickFrames style;
  strip.setStyle(&style);
  strip.repaint();
  EXPECT_EQ(scale.width, before - 2 * (11 - frame));
  strip.setStyle(nullptr);
}

TEST_F(TimelineStripPlaces, MayHaveOtherLettersBeforeItHasAnythingToShow) {
  qt::TimelineStrip empty;
  const int before = empty.minimumSizeHint().width();
  QFont font = empty.font();
  font.setPointSizeF(2 * font.pointSizeF());
  empty.setFont(font);
  EXPECT_GT(empty.minimumSizeHint().width(), before);
}

}  // namespace
}  // namespace pelmarix::test
