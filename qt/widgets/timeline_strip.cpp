#include "qt/widgets/timeline_strip.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QHelpEvent>
#include <QMenu>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "qt/services/text_conversion.h"
#include "qt/widgets/visible_text.h"

namespace pelmarix::qt {
namespace {

using platform::TimelineDirection;
using platform::TimelineMark;
using platform::TimelineSpan;

constexpr double shortestSpan = 600;  // seconds, of which a date can be told at every place
constexpr double zoomStep = 1.25;

QAccessibleInterface* chart(const QString& /*className*/, QObject* object) {
  auto* const strip = qobject_cast<TimelineStrip*>(object);
  return strip == nullptr ? nullptr : new QAccessibleWidget(strip, QAccessible::Chart);
}

}  // namespace

TimelineStrip::TimelineStrip(QWidget* parent) : QFrame(parent) {
  static const bool isInstalled = (QAccessible::installFactory(chart), true);
  static_cast<void>(isInstalled);
  setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void TimelineStrip::reloadData() {
  const bool showsAll = span_.begin == all_.begin && span_.end == all_.end;
  all_ = dataSource_->timelineSpan();
  showSpan(showsAll ? all_ : span_);
  measure();
  setAccessibleDescription(toQString(dataSource_->timelineInWords()));
}

void TimelineStrip::measure() {
  drawing_.measure(picture());
  picture_.reset();
  updateGeometry();
}

void TimelineStrip::showSpan(TimelineSpan span) {
  const double whole = all_.end - all_.begin;
  const double length = std::max(span.end - span.begin, shortestSpan);
  if (length < whole) {
    span_.begin = std::clamp(span.begin, all_.begin, std::max(all_.begin, all_.end - length));
    span_.end = span_.begin + length;
  } else {
    span_ = all_;
  }
  picture_.reset();
  update();
}

void TimelineStrip::zoom(double factor, double x) {
  const double part = std::clamp((x - drawing_.plot().left()) / drawing_.plot().width(), 0.0, 1.0);
  const double length = std::max(lengthOfSpan() * factor, shortestSpan);
  const double begin = span_.begin + part * (lengthOfSpan() - length);
  showSpan({begin, begin + length});
}

void TimelineStrip::moveSpan(double distance) {
  const double seconds = distance / drawing_.plot().width() * lengthOfSpan();
  showSpan({span_.begin - seconds, span_.end - seconds});
}

platform::TimelineScale TimelineStrip::scale() const {
  return {span_, drawing_.plot().width(), drawing_.markWidth(), drawing_.labelWidth()};
}

const platform::TimelinePicture& TimelineStrip::picture() {
  if (!picture_) picture_ = dataSource_->timelinePicture(scale());
  return *picture_;
}

void TimelineStrip::selectionDidChange(platform::Object* item) {
  picture_.reset();
  update();
  if (item == nullptr) return;
  const double time = dataSource_->timelineTimeOfItem(item);
  if (time < span_.begin || time > span_.end) {
    const double half = lengthOfSpan() / 2;
    showSpan({time - half, time + half});
  }
}

void TimelineStrip::select(platform::Object* item) {
  dataSource_->timelineSelectItem(item);
  if (const TimelineMark* mark = selectedMark())
    announcer_.announce(toQString(dataSource_->timelineMarkInWords(*mark)));
}

const TimelineMark* TimelineStrip::selectedMark() {
  for (const TimelineMark& mark : picture().marks)
    if (mark.isSelected) return &mark;
  return nullptr;
}

QSize TimelineStrip::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() * 40, drawing_.height()};
}

QImage TimelineStrip::toImage() {
  QImage image(size() * 2, QImage::Format_RGB32);
  image.setDevicePixelRatio(2);
  image.fill(palette().color(QPalette::Base));
  QPainter painter(&image);
  drawing_.draw(painter, picture());
  return image;
}

void TimelineStrip::paintEvent(QPaintEvent* event) {
  QFrame::paintEvent(event);
  QPainter painter(this);
  drawing_.draw(painter, picture());
  if (hasFocus()) {
    const double thick = fontMetrics().height() / 7.0;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(
        QPen(palette().color(QPalette::Highlight), thick, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(QRectF(contentsRect()).adjusted(thick / 2, thick / 2, -thick / 2, -thick / 2));
  }
}

QString TimelineStrip::toolTipAt(QPointF point) {
  if (const TimelineMark* mark = drawing_.markAt(picture(), point))
    return visible(toQString(dataSource_->timelineMarkInWords(*mark)));
  const std::string* const words = drawing_.gapOrBandAt(picture(), point);
  return words == nullptr ? QString() : visibleInOneLine(toQString(*words));
}

// What the user does.

void TimelineStrip::resizeEvent(QResizeEvent* /*event*/) {
  if (dataSource_ != nullptr) measure();
}

void TimelineStrip::changeEvent(QEvent* event) {
  QFrame::changeEvent(event);
  if (event->type() == QEvent::FontChange && dataSource_ != nullptr) measure();
}

bool TimelineStrip::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto& help = static_cast<const QHelpEvent&>(*event);
    // As rich text, so that long lines wrap and no markup in a name takes effect.
    const QString text = toolTipAt(help.pos());
    QToolTip::showText(help.globalPos(),
                       text.isEmpty() ? text : QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped()), this);
    return true;
  }
  if (event->type() == QEvent::NativeGesture) {
    const auto& gesture = static_cast<const QNativeGestureEvent&>(*event);
    if (gesture.gestureType() == Qt::ZoomNativeGesture) {
      zoom(1 / std::max(1 + gesture.value(), 0.1), gesture.position().x());
      return true;
    }
  }
  return QFrame::event(event);
}

void TimelineStrip::keyPressEvent(QKeyEvent* event) {
  const auto go = [this](TimelineDirection direction) {
    if (platform::Object* item = dataSource_->timelineItemBeside(scale(), direction)) select(item);
  };
  const auto zoomAtSelection = [this](double factor) {
    const TimelineMark* const mark = selectedMark();
    zoom(factor, mark == nullptr ? drawing_.plot().center().x() : drawing_.plot().left() + mark->x);
  };
  switch (event->key()) {
    case Qt::Key_Left:
      return go(TimelineDirection::left);
    case Qt::Key_Right:
      return go(TimelineDirection::right);
    case Qt::Key_Up:
      return go(TimelineDirection::up);
    case Qt::Key_Down:
      return go(TimelineDirection::down);
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      return zoomAtSelection(1 / zoomStep);
    case Qt::Key_Minus:
      return zoomAtSelection(zoomStep);
    case Qt::Key_Home:
      return showSpan(all_);
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (const TimelineMark* mark = selectedMark()) select(mark->nextItem);
      return;
    case Qt::Key_F10:  // which Qt doesn't know for the menu key on X11
      if (event->modifiers() == Qt::ShiftModifier) return openContextMenu(mapToGlobal(rect().center()));
      return QFrame::keyPressEvent(event);
    default:
      QFrame::keyPressEvent(event);
  }
}

void TimelineStrip::wheelEvent(QWheelEvent* event) {
  const QPoint angle = event->angleDelta();
  if (std::abs(angle.x()) > std::abs(angle.y()))
    moveSpan(event->pixelDelta().isNull() ? angle.x() / 120.0 * drawing_.markWidth()
                                          : event->pixelDelta().x());
  else
    zoom(std::pow(zoomStep, -angle.y() / 120.0), event->position().x());
  event->accept();
}

void TimelineStrip::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  pressed_ = event->position();
  isDragging_ = false;
}

void TimelineStrip::mouseMoveEvent(QMouseEvent* event) {
  if (!pressed_) return;
  const double distance = event->position().x() - pressed_->x();
  if (!isDragging_ && std::abs(distance) < QApplication::startDragDistance()) return;
  isDragging_ = true;
  moveSpan(distance);
  pressed_ = event->position();
}

void TimelineStrip::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !pressed_) return;
  pressed_.reset();
  if (isDragging_) return;
  if (const TimelineMark* mark = drawing_.markAt(picture(), event->position()))
    dataSource_->timelineSelectItem(mark->nextItem);
}

void TimelineStrip::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  // Quick clicks on a mark go through its entries.
  if (drawing_.markAt(picture(), event->position()) != nullptr) return mousePressEvent(event);
  showSpan(all_);
}

void TimelineStrip::contextMenuEvent(QContextMenuEvent* event) {
  const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
  openContextMenu(isByKey ? mapToGlobal(rect().center()) : event->globalPos());
}

void TimelineStrip::openContextMenu(QPoint place) {
  auto* const menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->addActions(actions());
  menu->popup(place);
}

}  // namespace pelmarix::qt
