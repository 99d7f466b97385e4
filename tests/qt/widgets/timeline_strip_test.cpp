#include "qt/widgets/timeline_strip.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QHelpEvent>
#include <QMenu>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QPointingDevice>
#include <QTest>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "qt/widgets/palette_colors.h"
#include "tests/qt/widgets/pictures.h"

namespace pelmarix::test {
namespace {

using platform::TimelineDirection;
using platform::TimelineKind;
using platform::TimelineMark;
using platform::TimelinePlace;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::IsEmpty;

struct Entry final : platform::Object {
  Entry(double secondsOfEntry, TimelineKind kindOfEntry) : seconds(secondsOfEntry), kind(kindOfEntry) {}
  double seconds;
  TimelineKind kind;
  std::size_t count = 1;
  TimelinePlace place = TimelinePlace::inside;
};

/// A data source that gives each entry as a mark of its own and chooses at once what it is told to.
class TimelineStrip : public testing::Test, public platform::TimelineDataSource {
 protected:
  TimelineStrip() {
    strip.setDataSource(*this);
    strip.setAccessibleName(QStringLiteral("Timeline"));
    strip.resize(1000, 200);
  }

  platform::TimelineSpan timelineSpan() override { return span; }
  platform::TimelinePicture timelinePicture(const platform::TimelineScale& wanted) override {
    ++pictureQuestions;
    scale = wanted;
    platform::TimelinePicture drawn = rest;
    for (int kind = 0; kind < 6; ++kind)
      drawn.lanes.push_back({static_cast<TimelineKind>(kind), "Lane " + std::to_string(kind)});
    drawn.lanes.resize(lanes);
    for (const auto& entry : entries) {
      double x = (entry->seconds - scale.span.begin) / (scale.span.end - scale.span.begin) * scale.width;
      if (entry->place == TimelinePlace::before) x = -scale.markWidth;
      if (entry->place == TimelinePlace::after) x = scale.width + scale.markWidth;
      drawn.marks.push_back({.kind = entry->kind,
                             .x = x,
                             .place = entry->place,
                             .date = entry->place == TimelinePlace::inside ? "" : "1904-01-01",
                             .count = entry->count,
                             .item = entry.get(),
                             .nextItem = entry.get(),
                             .isSelected = entry.get() == selected});
    }
    return drawn;
  }
  std::string timelineInWords() override { return words; }
  std::string timelineMarkInWords(const TimelineMark& mark) override {
    return "Entry of <" + std::to_string(static_cast<int>(dynamic_cast<Entry&>(*mark.item).seconds)) +
           ">\u202e";
  }
  platform::Object* timelineItemBeside(const platform::TimelineScale& asked,
                                       TimelineDirection direction) override {
    EXPECT_EQ(asked.width, scale.width);
    directions.push_back(direction);
    return beside;
  }
  double timelineTimeOfItem(platform::Object* item) override { return dynamic_cast<Entry&>(*item).seconds; }
  void timelineSelectItem(platform::Object* item) override {
    chosen.push_back(item);
    selected = item;
    strip.selectionDidChange(item);
  }

  Entry* add(double seconds, TimelineKind kind) {
    return entries.emplace_back(std::make_unique<Entry>(seconds, kind)).get();
  }
  void show() {
    strip.reloadData();
    strip.show();
    strip.activateWindow();
    strip.setFocus();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&strip));
    QApplication::processEvents();
    strip.repaint();
  }
  QImage picture() { return strip.grab().toImage(); }
  /// What is drawn because of what `change` does.
  QRect drawnBy(const std::function<void()>& change) {
    const QImage before = picture();
    change();
    strip.reloadData();
    return changedPart(before, picture());
  }
  /// The middle of the only mark, found by what it draws.
  QPoint placeOf(std::size_t number) {
    std::unique_ptr<Entry> taken = std::move(entries.at(number));
    entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(number));
    strip.reloadData();
    const QPoint place =
        drawnBy([&] {
          entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(number), std::move(taken));
        }).center();
    return place;
  }
  /// Where a moment is drawn, as the only mark is at `known`.
  void wheel(QPoint place, QPoint angle) {
    QWheelEvent event(place, strip.mapToGlobal(place), {}, angle, {}, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&strip, &event);
    strip.repaint();
  }
  void pinch(QPoint place, double value) {
    QNativeGestureEvent event(Qt::ZoomNativeGesture, QPointingDevice::primaryPointingDevice(), 2, place,
                              place, strip.mapToGlobal(place), value, {});
    QApplication::sendEvent(&strip, &event);
    strip.repaint();
  }
  void drag(QPoint from, QPoint to) {
    QTest::mousePress(&strip, Qt::LeftButton, {}, from);
    QTest::mouseMove(&strip, (from + to) / 2);
    QMouseEvent move(QEvent::MouseMove, to, strip.mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&strip, &move);
    QTest::mouseRelease(&strip, Qt::LeftButton, {}, to);
    strip.repaint();
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&strip, key, modifiers);
    strip.repaint();
  }
  std::string toolTipAt(QPoint place) {
    QToolTip::hideText();
    EXPECT_TRUE(QTest::qWaitFor([] { return !QToolTip::isVisible(); }));
    QHelpEvent event(QEvent::ToolTip, place, strip.mapToGlobal(place));
    QApplication::sendEvent(&strip, &event);
    return QToolTip::text().toStdString();
  }
  QString announced() {
    return QAccessible::queryAccessibleInterface(strip.findChild<qt::Announcer*>())->text(QAccessible::Name);
  }
  double length() const { return scale.span.end - scale.span.begin; }

  platform::TimelineSpan span{0, 1000};
  std::vector<std::unique_ptr<Entry>> entries;
  platform::TimelinePicture rest;  // bands, gaps and ticks
  std::size_t lanes = 6;
  std::string words = "From first to last.";
  platform::Object* selected = nullptr;
  platform::Object* beside = nullptr;
  platform::TimelineScale scale{};
  int pictureQuestions = 0;
  std::vector<TimelineDirection> directions;
  std::vector<platform::Object*> chosen;
  qt::TimelineStrip strip;
};

/// Of two colours on a screen; 1 for the same.
double contrast(const QColor& one, const QColor& other) {
  const auto luminance = [](const QColor& color) {
    const auto linear = [](double part) {
      return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
  };
  const double less = std::min(luminance(one), luminance(other));
  const double more = std::max(luminance(one), luminance(other));
  return (more + 0.05) / (less + 0.05);
}

QPalette darkPalette() {
  QPalette dark(QColor(42, 46, 50));
  dark.setColor(QPalette::Base, QColor(27, 30, 32));
  dark.setColor(QPalette::Text, Qt::white);
  dark.setColor(QPalette::Highlight, QColor(61, 174, 233));
  return dark;
}

// What it looks like.

TEST_F(TimelineStrip, DrawsAMarkInItsLaneAtItsTime) {
  show();
  QRect above;
  for (int kind = 0; kind < 6; ++kind) {
    const QRect early = drawnBy([&] { add(0, static_cast<TimelineKind>(kind)); });
    const QRect late = drawnBy([&] { add(1000, static_cast<TimelineKind>(kind)); });
    EXPECT_FALSE(early.isEmpty()) << kind;
    EXPECT_NEAR(late.center().x() - early.center().x(), scale.width, 1) << kind;
    EXPECT_EQ(early.center().y(), late.center().y());
    EXPECT_GT(early.top(), above.bottom()) << kind;
    above = early;
  }
  EXPECT_TRUE(strip.contentsRect().contains(above));
}

TEST_F(TimelineStrip, TellsKindsApartByShapeAndByColour) {
  // Where nothing else is drawn.
  std::vector<QImage> shapes;
  for (int kind = 0; kind < 6; ++kind) {
    show();
    const QPoint place = [&] {
      add(500, static_cast<TimelineKind>(kind));
      return placeOf(0);
    }();
    shapes.push_back(picture().copy(QRect(place - QPoint(8, 8), QSize(16, 16))));
    entries.clear();
  }
  const auto inkOf = [](const QImage& image) {
    QImage ink = image.convertToFormat(QImage::Format_Grayscale8);
    for (int y = 0; y < ink.height(); ++y)
      for (int x = 0; x < ink.width(); ++x)
        ink.scanLine(y)[x] = ink.pixelColor(x, y).lightness() < 170 ? 0 : 255;
    return ink;
  };
  for (std::size_t i = 0; i < shapes.size(); ++i)
    for (std::size_t j = 0; j < i; ++j) {
      EXPECT_NE(inkOf(shapes[i]), inkOf(shapes[j])) << i << " and " << j;
      for (const QPalette& palette : {QApplication::palette(), darkPalette()})
        EXPECT_NE(qt::colorOfKind(palette, static_cast<int>(i)),
                  qt::colorOfKind(palette, static_cast<int>(j)));
    }
}

TEST_F(TimelineStrip, HasColoursThatCanBeReadOnLightAndOnDark) {
  for (const QPalette& palette : {QApplication::palette(), darkPalette()})
    for (int kind = 0; kind < 6; ++kind)
      EXPECT_GE(contrast(qt::colorOfKind(palette, kind), palette.color(QPalette::Base)), 4.5) << kind;
}

TEST_F(TimelineStrip, WritesIntoAMarkHowManyEntriesItIs) {
  Entry& entry = *add(500, TimelineKind::securityData);
  show();
  const int width = drawnBy([&] { entry.count = 2; }).width();
  EXPECT_GT(width, 0);
  EXPECT_FALSE(drawnBy([&] { entry.count = 3; }).isEmpty());
  const QRect wide = drawnBy([&] { entry.count = 100'000; });
  EXPECT_GT(wide.width(), width);
  EXPECT_LT(wide.width(), scale.markWidth * 3 / 2);
}

TEST_F(TimelineStrip, DrawsWhatIsSelectedDifferently) {
  Entry& entry = *add(500, TimelineKind::receipt);
  show();
  EXPECT_FALSE(drawnBy([&] { selected = &entry; }).isEmpty());
}

TEST_F(TimelineStrip, ShowsThatItHasTheKeyboard) {
  show();
  const QImage focused = picture();
  const QImage saved = strip.toImage();
  strip.clearFocus();
  EXPECT_TRUE(isAbout(changedPart(focused, picture()), strip.contentsRect()));
  EXPECT_EQ(strip.toImage(), saved) << "a saved picture has no focus";
}

TEST_F(TimelineStrip, HasOutliersBesideTheSpanWithTheirDates) {
  show();
  const double width = scale.width;
  const QRect before =
      drawnBy([&] { add(-1e9, TimelineKind::systemInstall)->place = TimelinePlace::before; });
  strip.repaint();
  EXPECT_LT(scale.width, width - strip.fontMetrics().horizontalAdvance(QStringLiteral("1904-01-01")));
  EXPECT_FALSE(before.isEmpty());
  EXPECT_EQ(toolTipAt(placeOf(0)), "");  // between mark and date: that part is wide
}

TEST_F(TimelineStrip, NamesABandWhereItIsWideEnough) {
  rest.bands = {{0, 400, "", false}};
  show();
  EXPECT_FALSE(drawnBy([&] { rest.bands[0].name = "macOS Mojave 10.14"; }).isEmpty());
  rest.bands[0].right = 20;
  strip.reloadData();
  EXPECT_TRUE(drawnBy([&] { rest.bands[0].name = "macOS Catalina 10.15"; }).isEmpty());
}

TEST_F(TimelineStrip, WritesTheNameOfAReleaseAboveItsNextGroupsAndNoNameOverAnother) {
  rest.bands = {{0, 20, "macOS Mojave 10.14", false}, {20, 400, "", false}, {400, 600, "", true}};
  show();
  const QRect name = drawnBy([&] { rest.bands[0].name = ""; });
  EXPECT_GT(name.width(), 60);
  EXPECT_LT(name.right(), 400 + strip.width() - scale.width);
  rest.bands[0].name = "macOS Mojave 10.14";
  strip.reloadData();
  EXPECT_TRUE(drawnBy([&] { rest.bands[1].name = "10.14.1"; }).isEmpty()) << "its place is taken";
  rest.bands[1].left = 200;
  strip.reloadData();
  rest.bands[1].name = "";
  strip.reloadData();
  EXPECT_FALSE(drawnBy([&] { rest.bands[1].name = "10.14.1"; }).isEmpty());
}

TEST_F(TimelineStrip, TellsTheLongestGapInWordsWhereNotAllHaveRoom) {
  rest.gaps = {{400, 440, "40 days without security data"}};
  show();
  const QRect alone = drawnBy([&] { rest.gaps[0].words = ""; });
  EXPECT_GT(alone.width(), 100);
  const auto isTold = [&](double left) {
    rest.gaps = {{left, left + 10, ""}, {400, 440, "40 days without security data"}};
    strip.reloadData();
    return !drawnBy([&] { rest.gaps[0].words = "10 days without security data"; }).isEmpty();
  };
  EXPECT_FALSE(isTold(415));
  EXPECT_TRUE(isTold(415 - alone.width() * 2 / 3)) << "to the left";
  EXPECT_TRUE(isTold(415 + alone.width() * 2 / 3)) << "to the right";
}

TEST_F(TimelineStrip, WritesNoDateOverAnother) {
  rest.ticks = {{100, "2019-01-01"}, {120, ""}};
  show();
  EXPECT_FALSE(drawnBy([&] { rest.ticks[0].label = "2018-01-01"; }).isEmpty());
  EXPECT_TRUE(drawnBy([&] { rest.ticks[1].label = "2019-02-01"; }).isEmpty());
  rest.ticks[1] = {scale.width, ""};
  strip.reloadData();
  const QRect last = drawnBy([&] { rest.ticks[1].label = "2020-01-01"; });
  EXPECT_FALSE(last.isEmpty());
  EXPECT_GE(last.width(), strip.fontMetrics().horizontalAdvance(QStringLiteral("2020-01-01")) - 4) << "whole";
}

TEST_F(TimelineStrip, IsAsHighAsItsLanesAndItsLettersNeed) {
  show();
  const int six = strip.sizeHint().height();
  lanes = 5;
  strip.reloadData();
  EXPECT_LT(strip.sizeHint().height(), six);
  QFont large = strip.font();
  large.setPointSizeF(large.pointSizeF() * 2);
  strip.setFont(large);
  EXPECT_GT(strip.sizeHint().height(), six * 3 / 2);
  EXPECT_EQ(strip.minimumSizeHint().height(), strip.sizeHint().height());
}

TEST_F(TimelineStrip, AsksForWhatIsInViewOnce) {
  for (int i = 0; i < 100; ++i) add(i * 10, TimelineKind::receipt);
  show();
  pictureQuestions = 0;
  strip.repaint();
  toolTipAt({500, 100});
  EXPECT_EQ(pictureQuestions, 0);
  press(Qt::Key_Plus);
  EXPECT_EQ(pictureQuestions, 1);
}

TEST_F(TimelineStrip, MakesAPictureOfTwiceItsSize) {
  add(500, TimelineKind::receipt);
  show();
  const QImage image = strip.toImage();
  EXPECT_EQ(image.size(), strip.size() * 2);
  QImage plain(image.size(), image.format());
  plain.fill(strip.palette().color(QPalette::Base));
  EXPECT_GT(changedPart(plain, image).width(), image.width() / 2);
}

// With the mouse.

TEST_F(TimelineStrip, ChoosesTheMarkThatIsClicked) {
  Entry* const first = add(300, TimelineKind::securityData);
  Entry* const second = add(700, TimelineKind::receipt);
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
  EXPECT_THAT(length(), DoubleNear(10, 1e-6));
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
  Entry* const entry = add(300, TimelineKind::receipt);
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
  Entry* const entry = add(300, TimelineKind::receipt);
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
  Entry* const early = add(100, TimelineKind::receipt);
  Entry* const late = add(900, TimelineKind::receipt);
  Entry* const last = add(999, TimelineKind::receipt);
  show();
  strip.selectionDidChange(early);
  strip.repaint();
  EXPECT_EQ(length(), 1000);
  press(Qt::Key_Plus);
  for (int i = 0; i < 5; ++i) press(Qt::Key_Plus);
  const double zoomed = length();
  for (Entry* const entry : {late, early, last}) {
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
