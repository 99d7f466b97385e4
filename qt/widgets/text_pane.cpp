#include "qt/widgets/text_pane.h"

#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <climits>
#include <cmath>
#include <unordered_map>
#include <utility>

#include "qt/services/text_conversion.h"
#include "qt/widgets/visible_text.h"

namespace pelmarix::qt {
namespace {

constexpr int margin = 4;
constexpr std::size_t partSize = 2048;

std::size_t partCount(TextRange line) {
  return std::max<std::size_t>((line.end - line.begin + partSize - 1) / partSize, 1);
}

}  // namespace

TextPane::TextPane(QWidget* parent) : QAbstractScrollArea(parent) {
  // Lines begin at the left on every desktop.
  horizontalScrollBar()->setLayoutDirection(Qt::LeftToRight);
  measureLetters();
}

void TextPane::measureLetters() {
  const QFontMetricsF metrics(font());
  lineHeight_ = std::ceil(metrics.lineSpacing());
  letterWidth_ = metrics.averageCharWidth();
  partWidths_.clear();
  widest_ = 0;
}

void TextPane::setColumns(const QList<QTextOption::TabType>& columns) {
  columns_ = columns;
  fitColumns();
  layOut();
}

void TextPane::setText(platform::SharedText text) {
  const TextIndex before = std::exchange(index_, TextIndex(std::move(text)));
  fitColumns();
  partWidths_.clear();
  widest_ = 0;
  const std::size_t first = sameLine(before, static_cast<std::size_t>(verticalScrollBar()->value()));
  layOut();
  verticalScrollBar()->setValue(static_cast<int>(first));
}

std::size_t TextPane::sameLine(const TextIndex& before, std::size_t first) const {
  if (first == 0 || *before.text() == *index_.text()) return first;
  struct Sought {
    std::size_t row;
    std::size_t count = 0;
    std::size_t line = 0;  // the last one that isn't after where it was, or else the first
  };
  std::unordered_map<std::string_view, Sought> inView;
  const std::size_t rows = std::min(static_cast<std::size_t>(linesInView()), before.lineCount() - first);
  for (std::size_t row = 0; row < rows; ++row)
    inView.emplace(before.part(before.line(first + row)), Sought{row});
  std::string_view rest = *index_.text();
  for (std::size_t line = 0; line < index_.lineCount(); ++line) {
    const std::string_view letters = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(letters.size() + 1, rest.size()));
    const auto found = inView.find(letters);
    if (found == inView.end()) continue;
    Sought& sought = found->second;
    if (sought.count++ == 0 || line <= first + sought.row) sought.line = line;
  }
  // Blank lines and others that are there many times don't tell where in the text they are. The rarest does,
  // and the first that was in view is near to it.
  const Sought* rarest = nullptr;
  for (const auto& [letters, sought] : inView)
    if (sought.count > 0 &&
        (rarest == nullptr || std::pair(sought.count, sought.row) < std::pair(rarest->count, rarest->row)))
      rarest = &sought;
  if (rarest == nullptr) return first;
  for (std::size_t row = 0; row < rarest->row; ++row) {
    const std::string_view letters = before.part(before.line(first + row));
    for (std::size_t distance = 1; distance <= rows; ++distance)
      for (const std::size_t line : {rarest->line - distance, rarest->line + distance})
        if (line < index_.lineCount() && index_.part(index_.line(line)) == letters) return line;
  }
  return rarest->line;
}

// Where things are.

int TextPane::linesInView() const {
  return std::max(static_cast<int>((viewport()->height() - margin) / lineHeight_), 1);
}

qreal TextPane::topOf(std::size_t line) const {
  return margin + (static_cast<qreal>(line) - verticalScrollBar()->value()) * lineHeight_;
}

TextRange TextPane::wholeLine(std::size_t line) const {
  const TextRange letters = index_.line(line);
  return {letters.begin, std::min(letters.end + 1, index_.text()->size())};
}

TextRange TextPane::partOfLine(TextRange line, std::size_t number) const {
  const std::size_t begin = line.begin + number * partSize;
  return {index_.placeAt(begin), std::min(index_.placeAt(begin + partSize), line.end)};
}

qreal TextPane::widthOf(TextRange line, std::size_t number) const {
  const std::size_t begin = line.begin + number * partSize;
  const auto known = partWidths_.find(begin);
  if (known != partWidths_.end()) return known->second;
  return static_cast<qreal>(std::min(partSize, line.end - begin)) * letterWidth_;
}

TextPane::Part TextPane::part(std::size_t line, std::size_t number, qreal left) {
  const TextRange whole = wholeLine(line);
  const TextRange range = partOfLine(whole, number);
  const QList<QTextOption::Tab> tabs = number == 0 ? tabs_ : QList<QTextOption::Tab>();
  Part part{range, line, left, TextLine(visible(toQString(index_.part(range))), font(), tabs)};
  if (partCount(whole) > 1) partWidths_[whole.begin + number * partSize] = part.layout.width();
  return part;
}

TextPane::Part TextPane::partWith(std::size_t place) {
  const std::size_t line = index_.lineAt(place);
  const TextRange whole = wholeLine(line);
  const std::size_t number = std::min((place - whole.begin) / partSize, partCount(whole) - 1);
  qreal left = 0;
  for (std::size_t before = 0; before < number; ++before) left += widthOf(whole, before);
  return part(line, number, left);
}

qreal TextPane::xOf(std::size_t place) {
  const Part part = partWith(place);
  return part.left +
         part.layout.xOf(static_cast<qsizetype>(utf16Length(index_.part({part.range.begin, place}))));
}

QRectF TextPane::rectOf(std::size_t place) {
  const Part part = partWith(place);
  const auto unit = static_cast<qsizetype>(utf16Length(index_.part({part.range.begin, place})));
  const qreal x = part.layout.xOf(unit);
  return QRectF(part.left + x + margin - horizontalScrollBar()->value(), topOf(part.line),
                part.layout.xAfter(unit) - x, lineHeight_);
}

std::size_t TextPane::placeInLine(std::size_t line, qreal x) {
  const TextRange whole = wholeLine(line);
  const std::size_t last = partCount(whole) - 1;
  std::size_t number = 0;
  qreal left = 0;
  for (; number < last && x >= left + widthOf(whole, number); ++number) left += widthOf(whole, number);
  const Part found = part(line, number, left);
  return found.range.begin +
         bytesOfUtf16(index_.part(found.range), static_cast<std::size_t>(found.layout.unitAt(x - left)));
}

std::size_t TextPane::placeAt(QPointF point) {
  const qreal line = verticalScrollBar()->value() + std::floor((point.y() - margin) / lineHeight_);
  const qreal last = static_cast<qreal>(index_.lineCount() - 1);
  return placeInLine(static_cast<std::size_t>(std::clamp(line, 0.0, last)),
                     point.x() - margin + horizontalScrollBar()->value());
}

// What is in view.

void TextPane::layOut() {
  const int linesAbove = static_cast<int>(std::min<std::size_t>(index_.lineCount(), INT_MAX)) - linesInView();
  verticalScrollBar()->setRange(0, std::max(linesAbove, 0));
  verticalScrollBar()->setPageStep(linesInView());
  parts_.clear();
  auto line = static_cast<std::size_t>(verticalScrollBar()->value());
  for (; line < index_.lineCount() && topOf(line) < viewport()->height(); ++line)
    widest_ = std::max(widest_, layOutLine(line));
  const int width = viewport()->width();
  const qreal hidden = std::ceil(widest_ + 2 * margin) - width;
  horizontalScrollBar()->setRange(0, static_cast<int>(std::clamp<qreal>(hidden, 0, INT_MAX / 2)));
  horizontalScrollBar()->setPageStep(width);
  horizontalScrollBar()->setSingleStep(static_cast<int>(lineHeight_));
  viewport()->update();
}

qreal TextPane::layOutLine(std::size_t line) {
  const TextRange whole = wholeLine(line);
  const std::size_t count = partCount(whole);
  const int leftEdge = horizontalScrollBar()->value() - margin;
  qreal left = 0;
  for (std::size_t number = 0; number < count; ++number) {
    qreal width = widthOf(whole, number);
    if (count == 1 || (left + width >= leftEdge && left <= leftEdge + viewport()->width())) {
      parts_.push_back(part(line, number, left));
      width = parts_.back().layout.width();
    }
    left += width;
  }
  return left;
}

void TextPane::reveal(std::size_t place) {
  const int line = static_cast<int>(index_.lineAt(place));
  QScrollBar& vertical = *verticalScrollBar();
  vertical.setValue(std::clamp(vertical.value(), line - linesInView() + 1, line));
  const int farthest = viewport()->width() - 2 * margin;
  QScrollBar& horizontal = *horizontalScrollBar();
  const auto xNow = [&] { return static_cast<int>(std::min<qreal>(xOf(place), INT_MAX / 2)); };
  // Again for as long as parts of a very long line that come into view have other widths than expected.
  int before = -1;
  for (int x = xNow(); x != before; x = xNow()) {
    before = x;
    if (x - farthest > horizontal.maximum()) layOut();
    horizontal.setValue(std::clamp(horizontal.value(), std::min(x - farthest, x), x));
  }
}

void TextPane::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::Text));
  for (const Part& part : parts_) {
    QList<QTextLayout::FormatRange> ranges;
    for (const Highlight& highlight : highlightsIn(part.range)) {
      const std::size_t begin = std::max(highlight.range.begin, part.range.begin);
      const std::size_t end = std::min(highlight.range.end, part.range.end);
      if (begin >= end) continue;
      ranges += {static_cast<int>(utf16Length(index_.part({part.range.begin, begin}))),
                 static_cast<int>(utf16Length(index_.part({begin, end}))), highlight.format};
    }
    part.layout.draw(painter, {margin - horizontalScrollBar()->value() + part.left, topOf(part.line)},
                     ranges);
  }
}

void TextPane::resizeEvent(QResizeEvent* /*event*/) { layOut(); }

void TextPane::scrollContentsBy(int /*dx*/, int /*dy*/) { layOut(); }

void TextPane::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() != QEvent::FontChange) return;
  measureLetters();
  fitColumns();
  layOut();
}

}  // namespace pelmarix::qt
