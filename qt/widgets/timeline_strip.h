// The platform's timeline as a Qt widget.
#pragma once

#include <QFrame>
#include <QImage>
#include <optional>

#include "platform/timeline_view.h"
#include "qt/widgets/announcer.h"
#include "qt/widgets/timeline_drawing.h"

namespace pelmarix::qt {

/// Lanes with their names at the left, as high as its letters need it. Draws what the data source gives for
/// the part of time in view, and asks again when that changes: by wheel, pinch, dragging and keys.
class TimelineStrip final : public QFrame, public platform::TimelineView {
  Q_OBJECT

 public:
  explicit TimelineStrip(QWidget* parent = nullptr);

  /// Set once, before anything else is done with the strip. Not owned.
  void setDataSource(platform::TimelineDataSource& dataSource) { dataSource_ = &dataSource; }
  /// What is seen, at twice the size.
  QImage toImage();

  void reloadData() override;
  void selectionDidChange(platform::Object* item) override;

  QSize sizeHint() const override { return minimumSizeHint(); }
  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  // Has room made for the lanes' names and for what stands outside of the span.
  void measure();
  // The part of time, as much of it as there is.
  void showSpan(platform::TimelineSpan span);
  // The time at `x` stays where it is.
  void zoom(double factor, double x);
  void moveSpan(double distance);
  platform::TimelineScale scale() const;
  const platform::TimelinePicture& picture();
  // And tells it aloud.
  void select(platform::Object* item);
  void openContextMenu(QPoint place);

  // Null where none is.
  const platform::TimelineMark* selectedMark();
  double lengthOfSpan() const { return span_.end - span_.begin; }
  QString toolTipAt(QPointF point);

  platform::TimelineDataSource* dataSource_ = nullptr;
  platform::TimelineSpan all_{};
  platform::TimelineSpan span_{};                     // in view
  std::optional<platform::TimelinePicture> picture_;  // of it; without, it is to be asked for
  TimelineDrawing drawing_{*this};
  std::optional<QPointF> pressed_;  // where the button went down or was dragged to
  bool isDragging_ = false;
  Announcer announcer_{this};
};

}  // namespace pelmarix::qt
