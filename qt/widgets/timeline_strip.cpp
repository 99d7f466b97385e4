#include "qt/widgets/timeline_strip.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QHelpEvent>
#include <QMenu>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "qt/services/text_conversion.h"
#include "qt/widgets/palette_colors.h"
#include "qt/widgets/visible_text.h"

namespace pelmarix::qt {
namespace {

using platform::TimelineDirection;
using platform::TimelineKind;
using platform::TimelineMark;
using platform::TimelinePlace;
using platform::TimelineSpan;

constexpr double shortestSpan = 10;  // seconds
constexpr double zoomStep = 1.25;
constexpr qsizetype longestName = 200;  // that is looked at to be drawn

QAccessibleInterface* chart(const QString& /*className*/, QObject* object) {
  auto* const strip = qobject_cast<TimelineStrip*>(object);
  return strip == nullptr ? nullptr : new QAccessibleWidget(strip, QAccessible::Chart);
}

QString shown(const std::string& name) { return visibleInOneLine(toQString(name).left(longestName)); }

// More than fits into a mark is rounded down.
QString countText(std::size_t count) {
  if (count < 1000) return QString::number(count);
  if (count < 1000000) return QString::number(count / 1000) + QLatin1Char('k');
  return QString::number(count / 1000000) + QLatin1Char('M');
}

// Each kind has its own; wider ones are drawn out in their middle.
QPainterPath shapeOf(TimelineKind kind, const QRectF& rect) {
  const double middle = rect.center().y();
  const double half = rect.height() / 2;
  QPainterPath path;
  switch (kind) {
    case TimelineKind::securityUpdate:  // a shield
      path.addPolygon(QPolygonF({rect.topLeft(),
                                 rect.topRight(),
                                 {rect.right(), middle},
                                 {rect.right() - half, rect.bottom()},
                                 {rect.left() + half, rect.bottom()},
                                 {rect.left(), middle}}));
      path.closeSubpath();
      return path;
    case TimelineKind::criticalUpdate:
      path.addPolygon(QPolygonF({{rect.left() + half, rect.top()},
                                 {rect.right() - half, rect.top()},
                                 {rect.right(), middle},
                                 {rect.right() - half, rect.bottom()},
                                 {rect.left() + half, rect.bottom()},
                                 {rect.left(), middle}}));
      path.closeSubpath();
      return path;
    case TimelineKind::securityData:
    case TimelineKind::configurationData:
      path.addRoundedRect(rect, half, half);
      return path;
    case TimelineKind::systemInstall:
    case TimelineKind::receipt:
      break;
  }
  path.addRect(rect);
  return path;
}

// What comes in great number and matters less.
bool isHollow(TimelineKind kind) {
  return kind == TimelineKind::configurationData || kind == TimelineKind::receipt;
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
  picture_.reset();
  lanes_ = picture().lanes;
  const double blank = letterHeight() / 2.0;
  double widestName = 0;
  for (const platform::TimelineLane& lane : lanes_)
    widestName = std::max<double>(widestName, fontMetrics().horizontalAdvance(shown(lane.name)));
  nameWidth_ = std::min(widestName, width() / 3.0);
  leftMargin_ = nameWidth_ + letterHeight() + 3 * blank + markWidth() / 2;
  rightMargin_ = blank + markWidth() / 2;
  double before = 0;
  double after = 0;
  for (const TimelineMark& mark : picture().marks) {
    if (mark.place == TimelinePlace::inside) continue;
    double& margin = mark.place == TimelinePlace::before ? before : after;
    margin = std::max(
        margin, markWidth() + 2 * blank + fontMetrics().horizontalAdvance(shown("\u2190 " + mark.date)));
  }
  leftMargin_ += before;
  rightMargin_ += after;
  picture_.reset();
  updateGeometry();
  update();
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
  const double part = std::clamp((x - plot().left()) / plot().width(), 0.0, 1.0);
  const double length = std::max(lengthOfSpan() * factor, shortestSpan);
  const double begin = span_.begin + part * (lengthOfSpan() - length);
  showSpan({begin, begin + length});
}

void TimelineStrip::moveSpan(double distance) {
  const double seconds = distance / plot().width() * lengthOfSpan();
  showSpan({span_.begin - seconds, span_.end - seconds});
}

platform::TimelineScale TimelineStrip::scale() const {
  const double labelWidth =
      fontMetrics().horizontalAdvance(QStringLiteral("0000-00-00 00:00")) + letterHeight();
  return {span_, plot().width(), markWidth(), labelWidth};
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

// What is where.

QFont TimelineStrip::smallFont() const {
  QFont small = font();
  small.setPointSizeF(small.pointSizeF() * 0.85);
  return small;
}

double TimelineStrip::markWidth() const {
  return QFontMetricsF(smallFont()).horizontalAdvance(QStringLiteral("000")) + letterHeight() * 0.5;
}

QRectF TimelineStrip::plot() const {
  const QRectF contents = contentsRect();
  return {contents.left() + leftMargin_, contents.top() + laneHeight(),
          std::max(contents.width() - leftMargin_ - rightMargin_, 1.0),
          contents.height() - 2.0 * laneHeight()};
}

double TimelineStrip::topOf(TimelineKind kind) const {
  double top = plot().top();
  for (const platform::TimelineLane& lane : lanes_) {
    if (lane.kind == kind) break;
    top += laneHeight();
    if (lane.kind == TimelineKind::securityData) top += letterHeight();  // the gaps' words
  }
  return top;
}

QSize TimelineStrip::sizeHint() const {
  const int lanes = static_cast<int>(lanes_.size()) + 2;
  return {fontMetrics().averageCharWidth() * 100, lanes * laneHeight() + letterHeight() + 2 * frameWidth()};
}

QSize TimelineStrip::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() * 40, sizeHint().height()};
}

QRectF TimelineStrip::rectOf(const TimelineMark& mark) const {
  const double height = letterHeight() - 1.0;
  double width = height;
  if (mark.count > 1)
    width = std::max(width, QFontMetricsF(smallFont()).horizontalAdvance(countText(mark.count)) + height / 2);
  const double middle = topOf(mark.kind) + laneHeight() / 2.0;
  return {plot().left() + mark.x - width / 2, middle - height / 2, width, height};
}

const TimelineMark* TimelineStrip::markAt(QPointF point) {
  for (const TimelineMark& mark : picture().marks)
    if (rectOf(mark).contains(point)) return &mark;
  return nullptr;
}

QString TimelineStrip::toolTipAt(QPointF point) {
  if (const TimelineMark* mark = markAt(point))
    return visible(toQString(dataSource_->timelineMarkInWords(*mark)));
  const double x = point.x() - plot().left();
  const double top = topOf(TimelineKind::securityData);
  if (point.y() >= top && point.y() < top + laneHeight() + letterHeight())
    for (const platform::TimelineGap& gap : picture().gaps)
      if (x >= gap.left && x <= gap.right) return toQString(gap.words);
  if (plot().adjusted(0, -laneHeight(), 0, 0).contains(point))
    for (const platform::TimelineBand& band : picture().bands)
      if (x >= band.left && x < band.right) return shown(band.name);
  return {};
}

// What it looks like.

QImage TimelineStrip::toImage() {
  QImage image(size() * 2, QImage::Format_RGB32);
  image.setDevicePixelRatio(2);
  QPainter painter(&image);
  painter.setFont(font());
  painter.fillRect(rect(), palette().base());
  draw(painter);
  return image;
}

void TimelineStrip::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.fillRect(contentsRect(), palette().base());
  draw(painter);
  if (hasFocus()) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawRect(contentsRect().adjusted(1, 1, -1, -1));
  }
  QFrame::paintEvent(event);
}

void TimelineStrip::draw(QPainter& painter) {
  painter.setRenderHint(QPainter::Antialiasing);
  drawBands(painter);
  drawLanes(painter);
  drawTicks(painter);
  drawGaps(painter);
  painter.setFont(smallFont());
  for (const TimelineMark& mark : picture().marks)
    if (!mark.isSelected) drawMark(painter, mark);
  for (const TimelineMark& mark : picture().marks)
    if (mark.isSelected) drawMark(painter, mark);
  painter.setFont(font());
}

void TimelineStrip::drawBands(QPainter& painter) {
  const auto& bands = picture().bands;
  const double blank = letterHeight() / 3.0;
  double free = 0;  // of names, from here on
  for (auto band = bands.begin(); band != bands.end(); ++band) {
    const bool isFirst = band == bands.begin() || band[-1].isSecond != band->isSecond;
    const QRectF rect(plot().left() + band->left, plot().top() - laneHeight(), band->right - band->left,
                      plot().height() + laneHeight());
    if (band->isSecond) painter.fillRect(rect, faintColor(palette()));
    // The name of a release's first group goes on above those of its others.
    const auto next = std::find_if(
        band, bands.end(), [&](const auto& other) { return isFirst && other.isSecond != band->isSecond; });
    const double right = isFirst ? std::prev(next)->right : band->right;
    const QString name = shown(band->name);
    const int room = static_cast<int>(right - band->left - 2 * blank);
    const bool fits = fontMetrics().horizontalAdvance(name) <= room;
    if (isFirst ? room < fontMetrics().averageCharWidth() * 8 : !fits || band->left < free) continue;
    painter.setPen(palette().color(QPalette::Text));
    const QString drawn = fontMetrics().elidedText(name, Qt::ElideRight, room);
    painter.drawText(QRectF(rect.left() + blank, rect.top(), room, laneHeight()),
                     Qt::AlignVCenter | Qt::TextSingleLine, drawn);
    free = band->left + fontMetrics().horizontalAdvance(drawn) + 2 * blank;
  }
}

void TimelineStrip::drawLanes(QPainter& painter) {
  const double blank = letterHeight() / 2.0;
  for (const platform::TimelineLane& lane : lanes_) {
    const QRectF row(contentsRect().left() + blank, topOf(lane.kind), nameWidth_ + letterHeight() + blank,
                     laneHeight());
    TimelineMark sign{};
    sign.kind = lane.kind;
    sign.count = 1;
    sign.x = row.left() + letterHeight() / 2.0 - plot().left();
    drawMark(painter, sign);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(
        row.adjusted(letterHeight() + blank, 0, 0, 0), Qt::AlignVCenter | Qt::TextSingleLine,
        fontMetrics().elidedText(shown(lane.name), Qt::ElideRight, static_cast<int>(nameWidth_) + 1));
    painter.setPen(faintColor(palette()));
    const double middle = std::floor(row.center().y()) + 0.5;
    painter.drawLine(QPointF(plot().left(), middle), QPointF(plot().right(), middle));
  }
}

void TimelineStrip::drawTicks(QPainter& painter) {
  double free = 0;  // of labels, from here on
  for (const platform::TimelineTick& tick : picture().ticks) {
    const double x = std::floor(plot().left() + tick.x) + 0.5;
    painter.setPen(faintColor(palette()));
    painter.drawLine(QPointF(x, plot().top()), QPointF(x, plot().bottom()));
    const QString label = toQString(tick.label);
    const double labelWidth = fontMetrics().horizontalAdvance(label);
    const double left = std::min(x - labelWidth / 2, contentsRect().right() - labelWidth);
    if (left < free) continue;
    painter.setPen(placeholderColor(palette()));
    painter.drawText(QRectF(left, plot().bottom(), labelWidth, laneHeight()),
                     Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip, label);
    free = left + labelWidth + letterHeight() / 2.0;
  }
}

void TimelineStrip::drawGaps(QPainter& painter) {
  auto gaps = picture().gaps;
  std::stable_sort(gaps.begin(), gaps.end(), [](const auto& gap, const auto& other) {
    return gap.right - gap.left > other.right - other.left;
  });
  const QColor color = colorOfKind(palette(), static_cast<int>(TimelineKind::criticalUpdate));
  const double top = topOf(TimelineKind::securityData);
  const double blank = letterHeight() / 2.0;
  std::vector<QRectF> taken;
  for (const platform::TimelineGap& gap : gaps) {
    const QRectF rect(plot().left() + gap.left, top + 2, gap.right - gap.left, laneHeight() - 4);
    painter.fillRect(rect, QBrush(color, Qt::BDiagPattern));
    // Below its middle, or else to one side of it.
    const QString words = toQString(gap.words);
    const double wordsWidth = fontMetrics().horizontalAdvance(words);
    const double last = std::max(plot().left(), plot().right() - wordsWidth);
    for (const double left : {rect.center().x() - wordsWidth / 2, rect.right() - wordsWidth, rect.left()}) {
      const QRectF place(std::clamp(left, plot().left(), last), top + laneHeight(), wordsWidth,
                         letterHeight());
      const auto overlaps = [&](const QRectF& other) {
        return other.adjusted(-blank, 0, blank, 0).intersects(place);
      };
      if (std::any_of(taken.begin(), taken.end(), overlaps)) continue;
      taken.push_back(place);
      painter.setPen(palette().color(QPalette::Text));
      painter.drawText(place, Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip, words);
      break;
    }
  }
}

void TimelineStrip::drawMark(QPainter& painter, const TimelineMark& mark) const {
  const QRectF rect = rectOf(mark);
  const QColor color = colorOfKind(palette(), static_cast<int>(mark.kind));
  const QPainterPath shape = shapeOf(mark.kind, mark.count == 1 ? rect.adjusted(2, 2, -2, -2) : rect);
  painter.setPen(isHollow(mark.kind) ? QPen(color, 1.5) : QPen(Qt::NoPen));
  painter.setBrush(isHollow(mark.kind) ? palette().color(QPalette::Base) : color);
  painter.drawPath(shape);
  if (mark.isSelected) {
    painter.setPen(QPen(palette().color(QPalette::Text), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(-2, -1, 2, 1), 3, 3);
  }
  if (mark.count > 1) {
    painter.setPen(palette().color(isHollow(mark.kind) ? QPalette::Text : QPalette::Base));
    painter.drawText(rect, Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip, countText(mark.count));
  }
  if (mark.place == TimelinePlace::inside) return;
  painter.setPen(palette().color(QPalette::Text));
  const bool isBefore = mark.place == TimelinePlace::before;
  const QString date = toQString(isBefore ? "\u2190 " + mark.date : mark.date + " \u2192");
  const double blank = letterHeight() / 2.0;
  const QRectF room(isBefore ? rect.left() - blank - width() : rect.right() + blank, rect.top(), width(),
                    rect.height());
  painter.drawText(room, Qt::AlignVCenter | Qt::TextSingleLine | (isBefore ? Qt::AlignRight : Qt::AlignLeft),
                   date);
}

// What the user does.

void TimelineStrip::resizeEvent(QResizeEvent* event) {
  QFrame::resizeEvent(event);
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
    zoom(factor, mark == nullptr ? plot().center().x() : plot().left() + mark->x);
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
    moveSpan(event->pixelDelta().isNull() ? angle.x() / 120.0 * markWidth() : event->pixelDelta().x());
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
  if (const TimelineMark* mark = markAt(event->position())) dataSource_->timelineSelectItem(mark->nextItem);
}

void TimelineStrip::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  // Quick clicks on a mark go through its entries.
  if (markAt(event->position()) != nullptr) return mousePressEvent(event);
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
