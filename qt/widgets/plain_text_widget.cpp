#include "qt/widgets/plain_text_widget.h"

#include <QMimeData>
#include <QPainter>
#include <QTextBlock>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

#include "qt/services/text_conversion.h"
#include "qt/widgets/palette_colors.h"
#include "qt/widgets/text_search.h"
#include "qt/widgets/visible_text.h"

namespace pelmarix::qt {
namespace {

// A part of a text, for the clipboard. It is cut out when somebody takes it and not before: all that is ever
// selected is offered to others.
class PartOfText final : public QMimeData {
 public:
  PartOfText(platform::SharedText text, int begin, int end)
      : text_(std::move(text)), begin_(begin), end_(end) {}

  QStringList formats() const override { return {QStringLiteral("text/plain")}; }

 protected:
  QVariant retrieveData(const QString& format, QMetaType /*preferredType*/) const override {
    return formats().contains(format) ? toQString(*text_).mid(begin_, end_ - begin_) : QVariant();
  }

 private:
  platform::SharedText text_;
  int begin_;
  int end_;
};

}  // namespace

PlainTextWidget::PlainTextWidget(QWidget* parent) : QPlainTextEdit(parent) {
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setUndoRedoEnabled(false);
  setLineWrapMode(NoWrap);
  setTabChangesFocus(true);
}

void PlainTextWidget::showText(platform::SharedText text) {
  const bool isShown = text == text_ || *text == *text_;
  text_ = std::move(text);
  if (isShown) return;
  shown_ = visible(toQString(*text_));
  setPlainText(shown_);
}

QMimeData* PlainTextWidget::createMimeDataFromSelection() const {
  const QTextCursor cursor = textCursor();
  return new PartOfText(text_, cursor.selectionStart(), cursor.selectionEnd());
}

void PlainTextWidget::wheelEvent(QWheelEvent* event) {
  if (!event->modifiers().testFlag(Qt::ControlModifier)) return QPlainTextEdit::wheelEvent(event);
  constexpr int anglePerStep = 120;
  wheelAngle_ += event->angleDelta().y();
  const int steps = wheelAngle_ / anglePerStep;
  wheelAngle_ -= steps * anglePerStep;
  if (steps != 0) emit zoomRequested(steps);
  event->accept();
}

void PlainTextWidget::markMatches(const QString& text) {
  marked_ = text;
  viewport()->update();
}

bool PlainTextWidget::selectMatch(const QString& text, SearchStart start, SearchDirection direction) {
  if (text.isEmpty()) return false;
  const QStringView all = shown_;
  QTextCursor selection = textCursor();
  const qsizetype from = start == SearchStart::atSelection || direction == SearchDirection::backward
                             ? selection.selectionStart()
                             : selection.selectionEnd();
  // Matches begin before `from` in the one part, there or later in the other.
  const QStringView before = all.first(std::min(from + text.size() - 1, all.size()));
  qsizetype at = -1;
  if (direction == SearchDirection::forward) {
    at = indexOfIgnoringCase(all, text, from);
    if (at < 0) at = indexOfIgnoringCase(before, text);
  } else {
    at = lastIndexOfIgnoringCase(before, text);
    if (at < 0) {
      at = lastIndexOfIgnoringCase(all.sliced(from), text);
      if (at >= 0) at += from;
    }
  }
  if (at < 0) return false;
  selection.setPosition(static_cast<int>(at));
  selection.setPosition(static_cast<int>(at + text.size()), QTextCursor::KeepAnchor);
  setTextCursor(selection);
  return true;
}

void PlainTextWidget::paintEvent(QPaintEvent* event) {
  if (!marked_.isEmpty()) {
    // Only what is on screen is searched: a text of any size is scrolled as fast with marks as without.
    QPainter painter(viewport());
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
      const QRectF geometry = blockBoundingGeometry(block).translated(contentOffset());
      if (geometry.top() > event->rect().bottom()) break;
      paintMatches(painter, block, geometry.topLeft());
    }
  }
  QPlainTextEdit::paintEvent(event);
}

void PlainTextWidget::paintMatches(QPainter& painter, const QTextBlock& block, const QPointF& topLeft) const {
  if (block.layout()->lineCount() == 0) return;
  const QTextLine line = block.layout()->lineAt(0);
  const QString text = block.text();
  // Of a very long line, the part between the view's edges, with a match's length before it.
  const int firstShown = line.xToCursor(-topLeft.x());
  const int lastShown = line.xToCursor(viewport()->width() - topLeft.x());
  const int length = static_cast<int>(marked_.size());
  for (qsizetype at = std::max(0, firstShown - length);
       (at = indexOfIgnoringCase(text, marked_, at)) >= 0 && at <= lastShown; at += length) {
    const int position = static_cast<int>(at);
    const qreal left = line.cursorToX(position);
    const qreal right = line.cursorToX(position + length);
    painter.fillRect(QRectF(topLeft.x() + left, topLeft.y(), right - left, line.height()),
                     matchMarkColor(palette()));
  }
}

}  // namespace pelmarix::qt
