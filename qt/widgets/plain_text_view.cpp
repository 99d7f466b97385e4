#include "qt/widgets/plain_text_view.h"

#include <QApplication>
#include <QClipboard>
#include <QDrag>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <functional>
#include <utility>

#include "qt/services/text_conversion.h"
#include "qt/widgets/palette_colors.h"
#include "qt/widgets/placeholder.h"
#include "qt/widgets/plain_text_view_accessible.h"

namespace pelmarix::qt {
namespace {

// A part of a text, for the clipboard. It is cut out when somebody takes it and not before: all that is ever
// selected is offered to others.
class PartOfText final : public QMimeData {
 public:
  PartOfText(platform::SharedText text, TextRange range) : text_(std::move(text)), range_(range) {}

  QStringList formats() const override { return {QStringLiteral("text/plain")}; }

 protected:
  QVariant retrieveData(const QString& format, QMetaType /*preferredType*/) const override {
    if (!formats().contains(format)) return {};
    return toQString(std::string_view(*text_).substr(range_.begin, range_.end - range_.begin));
  }

 private:
  platform::SharedText text_;
  TextRange range_;
};

}  // namespace

PlainTextView::PlainTextView(QWidget* parent) : TextPane(parent) {
  installAccessibleTexts();
  viewport()->setCursor(Qt::IBeamCursor);
}

void PlainTextView::showText(platform::SharedText text) {
  if (text == this->text()) return;
  const bool isSame = *text == *this->text();
  const QString before = spokenBeginning(index());
  setText(std::move(text));
  if (isSame) return;
  // In view, so that the next key doesn't leave it.
  anchor_ = caret_ = index().line(static_cast<std::size_t>(verticalScrollBar()->value())).begin;
  verticalMovesX_.reset();
  endSelecting();
  tellTextChanged(*this, before);
  emit textChanged();
}

void PlainTextView::setPointSize(double size) {
  constexpr double smallestDrawn = 1;
  constexpr double largestDrawn = 500;
  QFont sized = font();
  sized.setPointSizeF(std::clamp(size, smallestDrawn, largestDrawn));
  setFont(sized);
}

// What is selected.

void PlainTextView::setSelection(std::size_t anchor, std::size_t caret) {
  verticalMovesX_.reset();
  if (anchor == anchor_ && caret == caret_) return;
  anchor_ = anchor;
  caret_ = caret;
  viewport()->update();
  tellSelectionChanged(*this);
  emit selectionChanged();
}

void PlainTextView::select(std::size_t anchor, std::size_t caret) {
  setSelection(anchor, caret);
  reveal(caret);
}

void PlainTextView::selectAll() {
  setSelection(0, text()->size());
  offerSelection();
}

QMimeData* PlainTextView::selectedData() const { return new PartOfText(text(), selection()); }

void PlainTextView::copy() const {
  if (!selection().isEmpty()) QApplication::clipboard()->setMimeData(selectedData());
}

void PlainTextView::offerSelection() const {
  QClipboard* const clipboard = QApplication::clipboard();
  if (clipboard->supportsSelection() && !selection().isEmpty())
    clipboard->setMimeData(selectedData(), QClipboard::Selection);
}

// What is found.

void PlainTextView::markMatches(const QString& text) {
  marked_ = SoughtText(text);
  viewport()->update();
}

bool PlainTextView::selectMatchAhead(const QString& text, SearchStart start, SearchDirection direction) {
  const SoughtText sought(text);
  const std::string_view all = *this->text();
  const bool isForward = direction == SearchDirection::forward;
  const bool isFromEdge = start == SearchStart::atEdge || start == SearchStart::upToSelection;
  const std::size_t place =
      start == SearchStart::atSelection || !isForward ? selection().begin : selection().end;
  TextRange where{0, all.size()};
  if (start != SearchStart::atEdge) (isForward == isFromEdge ? where.end : where.begin) = place;
  const auto match = isForward ? sought.firstIn(all, where) : sought.lastIn(all, where);
  if (!match) return false;
  reveal(match->begin);
  select(match->begin, match->end);
  return true;
}

MatchCount PlainTextView::countMatches(const QString& text) const {
  const SoughtText sought(text);
  const std::string_view all = *this->text();
  MatchCount count;
  for (auto match = sought.firstIn(all, {0, all.size()}); match;
       match = sought.firstIn(all, {match->end, all.size()})) {
    ++count.matches;
    if (*match == selection()) count.selected = count.matches;
  }
  return count;
}

QString PlainTextView::selectedMatchInWords() const {
  // Of an endless line, what comes from the match on.
  constexpr std::size_t longestTold = 2000;
  TextRange told = index().line(index().lineAt(selection().begin));
  if (selection().begin - told.begin > longestTold / 2) told.begin = selection().begin;
  told.end = index().placeAt(std::min(told.end, told.begin + longestTold));
  return toQString(index().part(told));
}

// What it looks like.

std::vector<TextPane::Highlight> PlainTextView::highlightsIn(TextRange range) const {
  std::vector<Highlight> highlights;
  QTextCharFormat mark;
  mark.setBackground(tintOfHighlight(palette()));
  // A match may begin before the range and end after it.
  const std::size_t reach = marked_.longestMatch();
  TextRange where{range.begin - std::min(reach, range.begin), range.end};
  while (const auto match = marked_.firstIn(*text(), where)) {
    highlights.push_back({*match, mark});
    where.begin = match->end;
  }
  const QPalette colors = hasFocus() ? palette() : withoutFocus(palette());
  QTextCharFormat selected;
  selected.setBackground(colors.highlight());
  selected.setForeground(colors.highlightedText());
  highlights.push_back({selection(), selected});
  return highlights;
}

void PlainTextView::paintEvent(QPaintEvent* event) {
  TextPane::paintEvent(event);
  if (text()->empty()) paintPlaceholder(*this, placeholderText_);
  if (!hasFocus()) return;
  const QRectF place = rectOf(caret_);
  QPainter(viewport())
      .fillRect(QRectF(place.left(), place.top(), 1, place.height()), palette().color(QPalette::Text));
}

void PlainTextView::focusInEvent(QFocusEvent* event) {
  TextPane::focusInEvent(event);
  viewport()->update();
}

void PlainTextView::focusOutEvent(QFocusEvent* event) {
  TextPane::focusOutEvent(event);
  viewport()->update();
}

// The keyboard.

void PlainTextView::keyPressEvent(QKeyEvent* event) {
  using Keys = QKeySequence;
  std::optional<qreal> keptX;
  const auto next = [this](TextUnit unit) { return nextPlace(index(), caret_, unit); };
  const auto previous = [this](TextUnit unit) { return previousPlace(index(), caret_, unit); };
  const auto otherLine = [&](int lines) {
    keptX = verticalMovesX_ ? verticalMovesX_ : xOf(caret_);
    return placeInOtherLine(lines, *keptX);
  };
  const TextRange line = index().line(index().lineAt(caret_));
  const struct {
    Keys::StandardKey go;
    Keys::StandardKey extend;
    std::function<std::size_t()> place;
  } moves[] = {
      {Keys::MoveToNextChar, Keys::SelectNextChar, [&] { return next(TextUnit::character); }},
      {Keys::MoveToPreviousChar, Keys::SelectPreviousChar, [&] { return previous(TextUnit::character); }},
      {Keys::MoveToNextWord, Keys::SelectNextWord, [&] { return next(TextUnit::word); }},
      {Keys::MoveToPreviousWord, Keys::SelectPreviousWord, [&] { return previous(TextUnit::word); }},
      {Keys::MoveToNextLine, Keys::SelectNextLine, [&] { return otherLine(1); }},
      {Keys::MoveToPreviousLine, Keys::SelectPreviousLine, [&] { return otherLine(-1); }},
      {Keys::MoveToNextPage, Keys::SelectNextPage, [&] { return otherLine(linesInView()); }},
      {Keys::MoveToPreviousPage, Keys::SelectPreviousPage, [&] { return otherLine(-linesInView()); }},
      {Keys::MoveToStartOfLine, Keys::SelectStartOfLine, [&] { return line.begin; }},
      {Keys::MoveToEndOfLine, Keys::SelectEndOfLine, [&] { return line.end; }},
      {Keys::MoveToStartOfDocument, Keys::SelectStartOfDocument, [] { return std::size_t{0}; }},
      {Keys::MoveToEndOfDocument, Keys::SelectEndOfDocument, [&] { return text()->size(); }},
  };
  if (event->matches(Keys::Copy)) return copy();
  if (event->matches(Keys::SelectAll)) return selectAll();
  for (const auto& move : moves) {
    const bool extends = event->matches(move.extend);
    if (!extends && !event->matches(move.go)) continue;
    const std::size_t place = move.place();
    select(extends ? anchor_ : place, place);
    verticalMovesX_ = keptX;
    if (extends) offerSelection();
    return;
  }
  TextPane::keyPressEvent(event);
}

std::size_t PlainTextView::placeInOtherLine(int lines, qreal x) {
  // By pages, the caret stays where it is in the view.
  if (std::abs(lines) > 1) verticalScrollBar()->setValue(verticalScrollBar()->value() + lines);
  const auto line = static_cast<std::ptrdiff_t>(index().lineAt(caret_)) + lines;
  const auto last = static_cast<std::ptrdiff_t>(index().lineCount()) - 1;
  return placeInLine(static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(line, 0, last)), x);
}

// The mouse.

void PlainTextView::beginSelecting(QPointF point, TextUnit unit) {
  isSelecting_ = true;
  unit_ = unit;
  origin_ = unitAround(index(), placeUnder(point), unit);
  selectTo(point);
}

std::size_t PlainTextView::placeUnder(QPointF point) {
  const std::size_t place = placeAt(point);
  const std::size_t before = previousPlace(index(), place, TextUnit::character);
  return unit_ != TextUnit::character && rectOf(before).contains(point) ? before : place;
}

void PlainTextView::selectTo(QPointF point) {
  mouse_ = point;
  const TextRange here = unitAround(index(), placeUnder(point), unit_);
  if (here.begin < origin_.begin)
    select(origin_.end, here.begin);
  else
    select(origin_.begin, std::max(here.end, origin_.end));
}

void PlainTextView::endSelecting() {
  scrolling_.stop();
  isSelecting_ = mayDragOut_ = false;
}

void PlainTextView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  mouse_ = event->position();
  const bool isThird = sinceDoubleClick_.isValid() &&
                       !sinceDoubleClick_.hasExpired(QApplication::doubleClickInterval()) &&
                       (mouse_ - doubleClick_).manhattanLength() < QApplication::startDragDistance();
  sinceDoubleClick_.invalidate();
  const std::size_t place = placeAt(mouse_);
  const bool isOnSelection = place >= selection().begin && place < selection().end;
  if (isThird) return beginSelecting(mouse_, TextUnit::line);
  if (event->modifiers().testFlag(Qt::ShiftModifier)) {
    isSelecting_ = true;
    unit_ = TextUnit::character;
    origin_ = {anchor_, anchor_};
    return selectTo(mouse_);
  }
  if (isOnSelection)
    mayDragOut_ = true;
  else
    beginSelecting(mouse_, TextUnit::character);
}

void PlainTextView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  doubleClick_ = event->position();
  sinceDoubleClick_.start();
  mayDragOut_ = false;
  beginSelecting(doubleClick_, TextUnit::word);
}

void PlainTextView::mouseMoveEvent(QMouseEvent* event) {
  if (mayDragOut_ && (event->position() - mouse_).manhattanLength() >= QApplication::startDragDistance()) {
    mayDragOut_ = false;
    auto* const drag = new QDrag(this);
    drag->setMimeData(selectedData());
    drag->exec(Qt::CopyAction);
    return;  // the view may be gone by now
  }
  if (!isSelecting_) return;
  constexpr int scrollInterval = 50;  // milliseconds
  selectTo(event->position());
  if (viewport()->rect().contains(event->position().toPoint()))
    scrolling_.stop();
  else if (!scrolling_.isActive())
    scrolling_.start(scrollInterval, this);
}

void PlainTextView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  scrolling_.stop();
  // A click on what is selected, and no drag.
  if (std::exchange(mayDragOut_, false)) beginSelecting(event->position(), TextUnit::character);
  if (std::exchange(isSelecting_, false)) offerSelection();
}

void PlainTextView::timerEvent(QTimerEvent* event) {
  if (event->timerId() != scrolling_.timerId()) return TextPane::timerEvent(event);
  // The release may have gone to a window that came up meanwhile.
  if (!QGuiApplication::mouseButtons().testFlag(Qt::LeftButton)) return endSelecting();
  selectTo(mouse_);  // farther each time, for what it brings into view moves the text under the mouse
}

void PlainTextView::wheelEvent(QWheelEvent* event) {
  if (!event->modifiers().testFlag(Qt::ControlModifier)) return TextPane::wheelEvent(event);
  constexpr int anglePerStep = 120;
  wheelAngle_ += event->angleDelta().y();
  const int steps = wheelAngle_ / anglePerStep;
  wheelAngle_ -= steps * anglePerStep;
  if (steps != 0) emit zoomRequested(steps);
  event->accept();
}

void PlainTextView::contextMenuEvent(QContextMenuEvent* event) {
  auto* const menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  QAction* const copyItem = menu->addAction(tr("&Copy"), QKeySequence::Copy, this, &PlainTextView::copy);
  copyItem->setEnabled(!selection().isEmpty());
  menu->addAction(tr("Select &All"), QKeySequence::SelectAll, this, &PlainTextView::selectAll);
  menu->popup(event->globalPos());
}

}  // namespace pelmarix::qt
