// What a timeline looks like: where everything in its picture is, and how it is drawn.
#pragma once

#include <QFrame>
#include <QPainter>
#include <string>
#include <vector>

#include "platform/timeline_view.h"

namespace pelmarix::qt {

/// Hues around that of selections and grey for receipts, as dark or as light as lets them and what is written
/// on them in the colour of the ground be read.
QColor colorOfKind(const QPalette& palette, platform::TimelineKind kind);

/// From top to bottom: the names of bands, the lanes with theirs at the left, and the dates. Below the lane
/// of security data stand the gaps' words. Colours, letters and room are those of a widget.
class TimelineDrawing final {
 public:
  /// Not owned.
  explicit TimelineDrawing(const QFrame& widget) : widget_(widget) {}

  /// Has room made for the lanes' names and for what stands outside of the span.
  void measure(const platform::TimelinePicture& picture);
  /// What the widget is to have.
  int height() const;

  /// Where the span is drawn: the lanes.
  QRectF plot() const;
  double markWidth() const;
  double labelWidth() const;
  /// What is seen at a point; null where there is no mark, no gap and no band.
  const platform::TimelineMark* markAt(const platform::TimelinePicture& picture, QPointF point) const;
  const std::string* gapOrBandAt(const platform::TimelinePicture& picture, QPointF point) const;

  void draw(QPainter& painter, const platform::TimelinePicture& picture) const;

 private:
  int letterHeight() const { return widget_.fontMetrics().height(); }
  int laneHeight() const { return letterHeight() * 5 / 4; }
  double blank() const { return letterHeight() / 2.0; }
  // Not rounded, so that a text has room in what is made as wide.
  double textWidth(const QString& text) const {
    return QFontMetricsF(widget_.fontMetrics()).horizontalAdvance(text);
  }
  QFont smallFont() const;
  double topOf(platform::TimelineKind kind) const;
  QRectF rectOf(const platform::TimelineMark& mark) const;

  void drawBands(QPainter& painter, const std::vector<platform::TimelineBand>& bands) const;
  void drawLanes(QPainter& painter) const;
  void drawTicks(QPainter& painter, const std::vector<platform::TimelineTick>& ticks) const;
  void drawGaps(QPainter& painter, std::vector<platform::TimelineGap> gaps) const;
  void drawMark(QPainter& painter, const platform::TimelineMark& mark) const;

  const QFrame& widget_;
  std::vector<platform::TimelineLane> lanes_;
  double nameWidth_ = 0;
  double leftMargin_ = 0;
  double rightMargin_ = 0;
};

}  // namespace pelmarix::qt
