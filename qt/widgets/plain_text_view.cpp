#include "qt/widgets/plain_text_view.h"

#include <QApplication>
#include <QClipboard>
#include <QDrag>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QStyleHints>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

#include "qt/services/text_conversion.h"
#include "qt/widgets/palette_colors.h"
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

enum class PlainTextView::Step {
  nextCharacter,
  previousCharacter,
  nextWord,
  previousWord,
  nextLine,
  previousLine,
  nextPage,
  previousPage,
  lineBegin,
  lineEnd,
  textBegin,
  textEnd,
};

PlainTextView::PlainTextView(QWidget* parent) : TextPane(parent) {
  installAccessibleTexts();
  setFocusPolicy(Qt::StrongFocus);
  viewport()->setCursor(Qt::IBeamCursor);
}

void PlainTextView::showText(platform::SharedText text) {
  if (text == this->text()) return;
  const bool isSame = *text == *this->text();
  setText(std::move(text));
  if (isSame) return;
  anchor_ = caret_ = 0;
  verticalMovesX_.reset();
  tellTextChanged(*this);
}

// What is selected.

void PlainTextView::setSelection(std::size_t anchor, std::size_t caret) {
  if (anchor == anchor_ && caret == caret_) return;
  anchor_ = anchor;
  caret_ = caret;
  viewport()->update();
  tellSelectionChanged(*this);
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

bool PlainTextView::selectMatch(const QString& text, SearchStart start, SearchDirection direction) {
  const SoughtText sought(text);
  const std::string_view all = *this->text();
  const bool isForward = direction == SearchDirection::forward;
  const std::size_t from =
      start == SearchStart::atSelection || !isForward ? selection().begin : selection().end;
  const TextRange before{0, from};
  const TextRange after{from, all.size()};
  auto match = isForward ? sought.firstIn(all, after) : sought.lastIn(all, before);
  if (!match) match = isForward ? sought.firstIn(all, before) : sought.lastIn(all, after);
  if (!match) return false;
  reveal(match->begin);
  select(match->begin, match->end);
  return true;
}

// What it looks like.

std::vector<TextPane::Highlight> PlainTextView::highlightsIn(TextRange range) const {
  std::vector<Highlight> highlights;
  QTextCharFormat mark;
  mark.setBackground(matchMarkColor(palette()));
  // A match may begin before the range and end after it.
  const std::size_t reach = marked_.longestMatch();
  TextRange where{range.begin - std::min(reach, range.begin), range.end};
  while (const auto match = marked_.firstIn(*text(), where)) {
    highlights.push_back({*match, mark});
    where.begin = match->end;
  }
  const QPalette::ColorGroup group = hasFocus() ? QPalette::Active : QPalette::Inactive;
  QTextCharFormat selected;
  selected.setBackground(palette().brush(group, QPalette::Highlight));
  selected.setForeground(palette().brush(group, QPalette::HighlightedText));
  highlights.push_back({selection(), selected});
  return highlights;
}

void PlainTextView::paintEvent(QPaintEvent* event) {
  TextPane::paintEvent(event);
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
  struct Keys {
    QKeySequence::StandardKey go;
    QKeySequence::StandardKey extend;
    Step step;
  };
  static constexpr Keys allKeys[] = {
      {QKeySequence::MoveToNextChar, QKeySequence::SelectNextChar, Step::nextCharacter},
      {QKeySequence::MoveToPreviousChar, QKeySequence::SelectPreviousChar, Step::previousCharacter},
      {QKeySequence::MoveToNextWord, QKeySequence::SelectNextWord, Step::nextWord},
      {QKeySequence::MoveToPreviousWord, QKeySequence::SelectPreviousWord, Step::previousWord},
      {QKeySequence::MoveToNextLine, QKeySequence::SelectNextLine, Step::nextLine},
      {QKeySequence::MoveToPreviousLine, QKeySequence::SelectPreviousLine, Step::previousLine},
      {QKeySequence::MoveToNextPage, QKeySequence::SelectNextPage, Step::nextPage},
      {QKeySequence::MoveToPreviousPage, QKeySequence::SelectPreviousPage, Step::previousPage},
      {QKeySequence::MoveToStartOfLine, QKeySequence::SelectStartOfLine, Step::lineBegin},
      {QKeySequence::MoveToEndOfLine, QKeySequence::SelectEndOfLine, Step::lineEnd},
      {QKeySequence::MoveToStartOfDocument, QKeySequence::SelectStartOfDocument, Step::textBegin},
      {QKeySequence::MoveToEndOfDocument, QKeySequence::SelectEndOfDocument, Step::textEnd},
  };
  if (event->matches(QKeySequence::Copy)) return copy();
  if (event->matches(QKeySequence::SelectAll)) return selectAll();
  for (const Keys& keys : allKeys) {
    const bool extends = event->matches(keys.extend);
    if (!extends && !event->matches(keys.go)) continue;
    const std::size_t place = placeAfter(keys.step);
    select(extends ? anchor_ : place, place);
    if (extends) offerSelection();
    return;
  }
  TextPane::keyPressEvent(event);
}

std::size_t PlainTextView::placeAfter(Step step) {
  if (step < Step::nextLine || step > Step::previousPage) verticalMovesX_.reset();
  const TextRange line = index().line(index().lineAt(caret_));
  switch (step) {
    case Step::nextCharacter:
      return nextPlace(index(), caret_, TextUnit::character);
    case Step::previousCharacter:
      return previousPlace(index(), caret_, TextUnit::character);
    case Step::nextWord:
      return nextPlace(index(), caret_, TextUnit::word);
    case Step::previousWord:
      return previousPlace(index(), caret_, TextUnit::word);
    case Step::nextLine:
      return placeInOtherLine(1);
    case Step::previousLine:
      return placeInOtherLine(-1);
    case Step::nextPage:
      return placeInOtherLine(linesInView());
    case Step::previousPage:
      return placeInOtherLine(-linesInView());
    case Step::lineBegin:
      return line.begin;
    case Step::lineEnd:
      return line.end;
    case Step::textBegin:
      return 0;
    case Step::textEnd:
      break;
  }
  return text()->size();
}

std::size_t PlainTextView::placeInOtherLine(std::ptrdiff_t lines) {
  if (!verticalMovesX_) verticalMovesX_ = xOf(caret_);
  // By pages, the caret stays where it is in the view.
  if (std::abs(lines) > 1)
    verticalScrollBar()->setValue(verticalScrollBar()->value() + static_cast<int>(lines));
  const auto line = static_cast<std::ptrdiff_t>(index().lineAt(caret_)) + lines;
  const auto last = static_cast<std::ptrdiff_t>(index().lineCount()) - 1;
  return placeInLine(static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(line, 0, last)), *verticalMovesX_);
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
  verticalMovesX_.reset();
  const TextRange here = unitAround(index(), placeUnder(point), unit_);
  if (here.begin < origin_.begin)
    select(origin_.end, here.begin);
  else
    select(origin_.begin, std::max(here.end, origin_.end));
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
  QMenu menu(this);
  QAction* const copyItem = menu.addAction(tr("&Copy"), QKeySequence::Copy, this, &PlainTextView::copy);
  copyItem->setEnabled(!selection().isEmpty());
  menu.addAction(tr("Select &All"), QKeySequence::SelectAll, this, &PlainTextView::selectAll);
  menu.exec(event->globalPos());
}

}  // namespace pelmarix::qt
