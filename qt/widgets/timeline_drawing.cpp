#include "qt/widgets/timeline_drawing.h"

#include <QPainterPath>
#include <algorithm>
#include <array>
#include <cmath>

#include "qt/services/text_conversion.h"
#include "qt/widgets/palette_colors.h"
#include "qt/widgets/visible_text.h"

namespace pelmarix::qt {
namespace {

using platform::TimelineBand;
using platform::TimelineGap;
using platform::TimelineKind;
using platform::TimelineLane;
using platform::TimelineMark;
using platform::TimelinePicture;
using platform::TimelinePlace;
using platform::TimelineTick;

constexpr int line = Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip;

QString shown(const std::string& name) { return visibleInOneLine(toQString(name)); }

// Of a thousand and more only what fits into a mark.
QString countText(std::size_t count) {
  if (count < 1000) return QString::number(count);
  if (count < 1000000) return QString::number(count / 1000) + QLatin1Char('k');
  return QString::number(count / 1000000) + QLatin1Char('M');
}

QString dateOutside(const TimelineMark& mark) {
  const QString date = toQString(mark.date);
  return mark.place == TimelinePlace::before ? QStringLiteral("\u2190 ") + date
                                             : date + QStringLiteral(" \u2192");
}

// Each kind has its own; what is wider than high is drawn out in its middle.
QPainterPath shapeOf(TimelineKind kind, const QRectF& rect) {
  const double middle = rect.center().y();
  const double half = rect.height() / 2;
  QPolygonF corners;
  QPainterPath path;
  switch (kind) {
    case TimelineKind::systemInstall:
    case TimelineKind::receipt:
      path.addRect(rect);
      return path;
    case TimelineKind::securityData:
    case TimelineKind::configurationData:
      path.addRoundedRect(rect, half, half);
      return path;
    case TimelineKind::securityUpdate:  // a shield
      corners << rect.topLeft() << rect.topRight();
      break;
    case TimelineKind::criticalUpdate:
      corners << rect.topLeft() + QPointF(half, 0) << rect.topRight() - QPointF(half, 0);
      break;
  }
  corners << QPointF(rect.right(), middle) << rect.bottomRight() - QPointF(half, 0)
          << rect.bottomLeft() + QPointF(half, 0) << QPointF(rect.left(), middle);
  path.addPolygon(corners);
  path.closeSubpath();
  return path;
}

// What comes in great number and matters less.
bool isHollow(TimelineKind kind) {
  return kind == TimelineKind::configurationData || kind == TimelineKind::receipt;
}

}  // namespace

QColor colorOfKind(const QPalette& palette, TimelineKind kind) {
  constexpr std::array<double, 5> turns{0, 0.2, 0.83, 0.42, 0.55};
  const bool isGrey = kind == TimelineKind::receipt;
  const bool isDark = palette.color(QPalette::Base).lightnessF() < 0.5F;
  const double hue = std::max(static_cast<double>(palette.color(QPalette::Highlight).hslHueF()), 0.0);
  const double turn = isGrey ? 0 : turns.at(static_cast<std::size_t>(kind));
  return QColor::fromHslF(static_cast<float>(std::fmod(hue + turn, 1)), isGrey ? 0.0F : 0.5F,
                          isDark ? 0.68F : 0.34F);
}

void TimelineDrawing::measure(const TimelinePicture& picture) {
  lanes_ = picture.lanes;
  nameWidth_ = 0;
  for (const TimelineLane& lane : lanes_) nameWidth_ = std::max(nameWidth_, textWidth(shown(lane.name)));
  nameWidth_ = std::min(nameWidth_, widget_.width() / 3.0);
  double before = 0;
  double after = 0;
  for (const TimelineMark& mark : picture.marks) {
    if (mark.place == TimelinePlace::inside) continue;
    double& room = mark.place == TimelinePlace::before ? before : after;
    room = std::max(room, markWidth() + 2 * blank() + textWidth(dateOutside(mark)));
  }
  leftMargin_ = blank() + letterHeight() + blank() + nameWidth_ + blank() + before + markWidth() / 2;
  rightMargin_ = blank() + after + markWidth() / 2;
}

int TimelineDrawing::height() const {
  const int lanes = static_cast<int>(lanes_.size());
  return (lanes + 2) * laneHeight() + letterHeight() + 2 * widget_.frameWidth();
}

QRectF TimelineDrawing::plot() const {
  const QRectF all = widget_.contentsRect();
  const double width = all.width() - leftMargin_ - rightMargin_;
  return {all.left() + leftMargin_, all.top() + laneHeight(), std::max(width, 1.0),
          all.height() - 2 * laneHeight()};
}

QFont TimelineDrawing::smallFont() const {
  QFont small = widget_.font();
  small.setPointSizeF(small.pointSizeF() * 0.85);
  return small;
}

double TimelineDrawing::markWidth() const {
  return QFontMetricsF(smallFont()).horizontalAdvance(QStringLiteral("000")) + blank();
}

double TimelineDrawing::labelWidth() const {
  return textWidth(QStringLiteral("0000-00-00 00:00")) + letterHeight();
}

double TimelineDrawing::topOf(TimelineKind kind) const {
  double top = plot().top();
  for (const TimelineLane& lane : lanes_) {
    if (lane.kind == kind) break;
    top += laneHeight();
    if (lane.kind == TimelineKind::securityData) top += letterHeight();
  }
  return top;
}

QRectF TimelineDrawing::rectOf(const TimelineMark& mark) const {
  const double height = letterHeight() * 0.93;
  double width = height;
  if (mark.count > 1)
    width = std::max(width, QFontMetricsF(smallFont()).horizontalAdvance(countText(mark.count)) + height / 2);
  const double middle = topOf(mark.kind) + laneHeight() / 2.0;
  return {plot().left() + mark.x - width / 2, middle - height / 2, width, height};
}

const TimelineMark* TimelineDrawing::markAt(const TimelinePicture& picture, QPointF point) const {
  for (const TimelineMark& mark : picture.marks)
    if (rectOf(mark).contains(point)) return &mark;
  return nullptr;
}

const std::string* TimelineDrawing::gapOrBandAt(const TimelinePicture& picture, QPointF point) const {
  const double x = point.x() - plot().left();
  const double top = topOf(TimelineKind::securityData);
  if (point.y() >= top && point.y() < top + laneHeight() + letterHeight())
    for (const TimelineGap& gap : picture.gaps)
      if (x >= gap.left && x < gap.right) return &gap.words;
  if (plot().adjusted(0, -laneHeight(), 0, 0).contains(point))
    for (const TimelineBand& band : picture.bands)
      if (x >= band.left && x < band.right) return &band.name;
  return nullptr;
}

void TimelineDrawing::draw(QPainter& painter, const TimelinePicture& picture) const {
  painter.fillRect(widget_.contentsRect(), widget_.palette().base());
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setFont(widget_.font());
  drawBands(painter, picture.bands);
  drawLanes(painter);
  drawTicks(painter, picture.ticks);
  drawGaps(painter, picture.gaps);
  painter.setFont(smallFont());
  for (const bool isSelected : {false, true})
    for (const TimelineMark& mark : picture.marks)
      if (mark.isSelected == isSelected) drawMark(painter, mark);
}

void TimelineDrawing::drawBands(QPainter& painter, const std::vector<TimelineBand>& bands) const {
  const int least = widget_.fontMetrics().averageCharWidth() * 8;
  double free = 0;  // of names, from here on
  for (auto band = bands.begin(); band != bands.end(); ++band) {
    const QRectF rect(plot().left() + band->left, plot().top() - laneHeight(), band->right - band->left,
                      plot().height() + laneHeight());
    if (band->isSecond) painter.fillRect(rect, faintColor(widget_.palette()));
    // The name of a release's first group goes on above its next ones.
    double right = band->right;
    const bool isFirst = band == bands.begin() || band[-1].isSecond != band->isSecond;
    if (isFirst)
      for (auto next = band; next != bands.end() && next->isSecond == band->isSecond; ++next)
        right = next->right;
    const int room = static_cast<int>(right - band->left - blank());
    const QString name = shown(band->name);
    if (isFirst ? room < least : band->left < free || textWidth(name) > room) continue;
    const QString drawn = widget_.fontMetrics().elidedText(name, Qt::ElideRight, room);
    painter.setPen(widget_.palette().color(QPalette::Text));
    painter.drawText(QRectF(rect.left() + blank() / 2, rect.top(), room, laneHeight()), line, drawn);
    free = band->left + textWidth(drawn) + blank();
  }
}

void TimelineDrawing::drawLanes(QPainter& painter) const {
  for (const TimelineLane& lane : lanes_) {
    TimelineMark sign{};
    sign.kind = lane.kind;
    sign.count = 1;
    const double signMiddle = widget_.contentsRect().left() + blank() + letterHeight() / 2.0;
    sign.x = signMiddle - plot().left();
    drawMark(painter, sign);
    const QRectF name(signMiddle + letterHeight(), topOf(lane.kind), nameWidth_, laneHeight());
    painter.setPen(widget_.palette().color(QPalette::Text));
    painter.drawText(name, line,
                     widget_.fontMetrics().elidedText(shown(lane.name), Qt::ElideRight,
                                                      static_cast<int>(std::ceil(nameWidth_))));
    const double middle = std::floor(name.center().y()) + 0.5;
    painter.setPen(faintColor(widget_.palette()));
    painter.drawLine(QPointF(plot().left(), middle), QPointF(plot().right(), middle));
  }
}

void TimelineDrawing::drawTicks(QPainter& painter, const std::vector<TimelineTick>& ticks) const {
  double free = 0;  // of labels, from here on
  for (const TimelineTick& tick : ticks) {
    const double x = std::floor(plot().left() + tick.x) + 0.5;
    painter.setPen(faintColor(widget_.palette()));
    painter.drawLine(QPointF(x, plot().top()), QPointF(x, plot().bottom()));
    const QString label = toQString(tick.label);
    const double width = textWidth(label);
    const double left = std::min(x - width / 2, widget_.contentsRect().right() - width);
    if (left < free) continue;
    painter.setPen(placeholderColor(widget_.palette()));
    painter.drawText(QRectF(left, plot().bottom(), width, laneHeight()), line, label);
    free = left + width + blank();
  }
}

void TimelineDrawing::drawGaps(QPainter& painter, std::vector<TimelineGap> gaps) const {
  std::stable_sort(gaps.begin(), gaps.end(), [](const TimelineGap& one, const TimelineGap& other) {
    return one.right - one.left > other.right - other.left;
  });
  const QColor color = colorOfKind(widget_.palette(), TimelineKind::criticalUpdate);
  const double top = topOf(TimelineKind::securityData);
  std::vector<QRectF> taken;
  for (const TimelineGap& gap : gaps) {
    const double middle = plot().left() + (gap.left + gap.right) / 2;
    const double half = (gap.right - gap.left) / 2;
    painter.fillRect(QRectF(middle - half, top + blank() / 4, 2 * half, laneHeight() - blank() / 2),
                     QBrush(color, Qt::BDiagPattern));
    // Below its middle, or else to one side of it.
    const QString words = toQString(gap.words);
    const double width = textWidth(words);
    const double last = std::max(plot().left(), plot().right() - width);
    for (const double left : {middle - width / 2, middle + half - width, middle - half}) {
      const QRectF place(std::clamp(left, plot().left(), last), top + laneHeight(), width, letterHeight());
      const auto overlaps = [&](const QRectF& other) {
        return other.adjusted(-blank(), 0, blank(), 0).intersects(place);
      };
      if (std::any_of(taken.begin(), taken.end(), overlaps)) continue;
      painter.setPen(widget_.palette().color(QPalette::Text));
      painter.drawText(place, line, words);
      taken.push_back(place);
      break;
    }
  }
}

void TimelineDrawing::drawMark(QPainter& painter, const TimelineMark& mark) const {
  const QPalette& palette = widget_.palette();
  const QColor color = colorOfKind(palette, mark.kind);
  const QRectF rect = rectOf(mark);
  const double thin = letterHeight() / 10.0;
  const double inset = mark.count > 1 ? 0 : 1.5 * thin;  // nothing is written into it
  painter.setPen(isHollow(mark.kind) ? QPen(color, thin) : QPen(Qt::NoPen));
  painter.setBrush(isHollow(mark.kind) ? palette.color(QPalette::Base) : color);
  painter.drawPath(shapeOf(mark.kind, rect.adjusted(inset, inset, -inset, -inset)));
  if (mark.isSelected) {
    painter.setPen(QPen(palette.color(QPalette::Text), 1.5 * thin));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(-thin, -thin, thin, thin), 2 * thin, 2 * thin);
  }
  if (mark.count > 1) {
    painter.setPen(palette.color(isHollow(mark.kind) ? QPalette::Text : QPalette::Base));
    painter.drawText(rect, line | Qt::AlignHCenter, countText(mark.count));
  }
  if (mark.place == TimelinePlace::inside) return;
  painter.setPen(palette.color(QPalette::Text));
  const bool isBefore = mark.place == TimelinePlace::before;
  const QPointF corner =
      isBefore ? rect.topLeft() - QPointF(blank(), 0) : rect.topRight() + QPointF(blank(), 0);
  painter.drawText(QRectF(corner, QSizeF(0, rect.height())),
                   line | (isBefore ? Qt::AlignRight : Qt::AlignLeft), dateOutside(mark));
}

}  // namespace pelmarix::qt
