// A strip over a data source that a test fills.
#pragma once

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QHelpEvent>
#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QTest>
#include <QToolTip>
#include <QWheelEvent>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "qt/widgets/timeline_strip.h"
#include "tests/qt/widgets/pictures.h"

namespace pelmarix::test {

struct TimelineEntry final : platform::Object {
  TimelineEntry(double secondsOfEntry, platform::TimelineKind kindOfEntry)
      : seconds(secondsOfEntry), kind(kindOfEntry) {}
  double seconds;
  platform::TimelineKind kind;
  std::size_t count = 1;
  platform::TimelinePlace place = platform::TimelinePlace::inside;
};

/// A data source that gives each entry as a mark of its own and chooses at once what it is told to.
class TimelineStripFixture : public testing::Test, public platform::TimelineDataSource {
 protected:
  TimelineStripFixture() {
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
      drawn.lanes.push_back({static_cast<platform::TimelineKind>(kind), "Lane " + std::to_string(kind)});
    drawn.lanes.resize(lanes);
    for (const auto& entry : entries) {
      double x = (entry->seconds - scale.span.begin) / (scale.span.end - scale.span.begin) * scale.width;
      if (entry->place == platform::TimelinePlace::before) x = -scale.markWidth;
      if (entry->place == platform::TimelinePlace::after) x = scale.width + scale.markWidth;
      drawn.marks.push_back({.kind = entry->kind,
                             .x = x,
                             .place = entry->place,
                             .date = entry->place == platform::TimelinePlace::inside ? "" : outlierDate,
                             .count = entry->count,
                             .item = entry.get(),
                             .nextItem = entry.get(),
                             .isSelected = entry.get() == selected});
    }
    return drawn;
  }
  std::string timelineInWords() override { return words; }
  std::string timelineMarkInWords(const platform::TimelineMark& mark) override {
    return "Entry of <" + std::to_string(static_cast<int>(dynamic_cast<TimelineEntry&>(*mark.item).seconds)) +
           ">\u202e";
  }
  platform::Object* timelineItemBeside(const platform::TimelineScale& asked,
                                       platform::TimelineDirection direction) override {
    EXPECT_EQ(asked.width, scale.width);
    directions.push_back(direction);
    return beside;
  }
  double timelineTimeOfItem(platform::Object* item) override {
    return dynamic_cast<TimelineEntry&>(*item).seconds;
  }
  void timelineSelectItem(platform::Object* item) override {
    chosen.push_back(item);
    selected = item;
    strip.selectionDidChange(item);
  }

  TimelineEntry* add(double seconds, platform::TimelineKind kind) {
    return entries.emplace_back(std::make_unique<TimelineEntry>(seconds, kind)).get();
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
    std::unique_ptr<TimelineEntry> taken = std::move(entries.at(number));
    entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(number));
    strip.reloadData();
    const QPoint place =
        drawnBy([&] {
          entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(number), std::move(taken));
        }).center();
    return place;
  }
  void wheel(QPoint place, QPoint angle) {
    QWheelEvent event(place, strip.mapToGlobal(place), {}, angle, {}, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&strip, &event);
    strip.repaint();
  }
  void pinch(QPoint place, double value) {
    QNativeGestureEvent event(Qt::ZoomNativeGesture, QPointingDevice::primaryPointingDevice(), 2, place,
                              place, strip.mapToGlobal(place), value, {});
    EXPECT_TRUE(QApplication::sendEvent(&strip, &event));
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
    EXPECT_TRUE(QApplication::sendEvent(&strip, &event)) << "or its parent would show one of its own";
    return QToolTip::text().toStdString();
  }
  QString announced() {
    return QAccessible::queryAccessibleInterface(strip.findChild<qt::Announcer*>())->text(QAccessible::Name);
  }
  double length() const { return scale.span.end - scale.span.begin; }

  platform::TimelineSpan span{0, 1000};
  std::vector<std::unique_ptr<TimelineEntry>> entries;
  platform::TimelinePicture rest;  // bands, gaps and ticks
  std::string outlierDate = "1904-01-01";
  std::size_t lanes = 6;
  std::string words = "From first to last.";
  platform::Object* selected = nullptr;
  platform::Object* beside = nullptr;
  platform::TimelineScale scale{};
  int pictureQuestions = 0;
  std::vector<platform::TimelineDirection> directions;
  std::vector<platform::Object*> chosen;
  qt::TimelineStrip strip;
};

}  // namespace pelmarix::test
