#include "qt/widgets/row_delegate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QTextLayout>
#include <QToolTip>

#include "qt/widgets/palette_colors.h"
#include "qt/widgets/text_search.h"

namespace pelmarix::qt {
namespace {

constexpr QChar emSpace(0x2003);

// A guess at more than the widest screen shows: a text of megabytes is not laid out for its first words.
constexpr qsizetype longestShown = 2000;

// Where the style puts the cell's text.
QRect textRect(const QStyleOptionViewItem& option) {
  const QStyle* style = option.widget != nullptr ? option.widget->style() : QApplication::style();
  const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, option.widget) + 1;
  return style->subElementRect(QStyle::SE_ItemViewItemText, &option, option.widget)
      .adjusted(margin, 0, -margin, 0);
}

}  // namespace

QString RowDelegate::displayText(const QVariant& value, const QLocale& /*locale*/) const {
  QString text = value.toString().left(longestShown);
  qsizetype tabs = 0;
  while (tabs < text.size() && text.at(tabs) == QLatin1Char('\t')) ++tabs;
  for (QChar& character : text) {
    if (character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
        character == QChar::ParagraphSeparator)
      character = QLatin1Char(' ');
  }
  return text.replace(0, tabs, QString(2 * tabs, emSpace));
}

void RowDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  if (!index.flags().testFlag(Qt::ItemNeverHasChildren)) {
    option->font.setBold(true);
    option->fontMetrics = QFontMetrics(option->font);
  }
}

void RowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
  QStyleOptionViewItem cell = option;
  initStyleOption(&cell, index);
  const QStyle* style = cell.widget != nullptr ? cell.widget->style() : QApplication::style();
  style->drawPrimitive(QStyle::PE_PanelItemViewItem, &cell, painter, cell.widget);
  painter->save();
  painter->setClipRect(cell.rect, Qt::IntersectClip);
  paintText(*painter, cell, textRect(cell));
  painter->restore();
  if (cell.state.testFlag(QStyle::State_HasFocus)) {
    QStyleOptionFocusRect focus;
    focus.QStyleOption::operator=(cell);
    focus.state |= QStyle::State_KeyboardFocusChange | QStyle::State_Item;
    style->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, painter, cell.widget);
  }
}

// Not left to the style, so that the marks of matches lie behind the letters.
void RowDelegate::paintText(QPainter& painter, const QStyleOptionViewItem& cell, const QRect& rect) const {
  QTextLayout layout(cell.text, cell.font);
  const auto layOut = [&layout] {
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    return line;
  };
  QTextLine line = layOut();
  if (!line.isValid()) return;
  if (line.naturalTextWidth() > rect.width()) {
    layout.setText(cell.fontMetrics.elidedText(cell.text, cell.textElideMode, rect.width()));
    line = layOut();
    if (!line.isValid()) return;
  }
  const bool isSelected = cell.state.testFlag(QStyle::State_Selected);
  const QPalette::ColorGroup group =
      cell.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
  painter.setPen(cell.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text));
  const QPointF place(rect.left(), rect.top() + (rect.height() - line.height()) / 2);
  const QString shown = layout.text();
  for (qsizetype at = 0; (at = indexOfIgnoringCase(shown, marked_, at)) >= 0; at += marked_.size()) {
    const qreal left = line.cursorToX(static_cast<int>(at));
    const qreal right = line.cursorToX(static_cast<int>(at + marked_.size()));
    const QRectF match(place.x() + left, place.y(), right - left, line.height() - 1);
    // In a selected row the tint would be the row's own colour: a frame stands out from it.
    if (isSelected)
      painter.drawRect(match);
    else
      painter.fillRect(match, matchMarkColor(cell.palette));
  }
  layout.draw(&painter, place);
}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  return {QStyledItemDelegate::sizeHint(option, index).width(), rowHeight(option.fontMetrics)};
}

bool RowDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                            const QModelIndex& index) {
  if (event->type() != QEvent::ToolTip) return QStyledItemDelegate::helpEvent(event, view, option, index);
  QStyleOptionViewItem cell = option;
  initStyleOption(&cell, index);
  QStringList lines;
  if (cell.fontMetrics.horizontalAdvance(cell.text) > textRect(cell).width()) lines += cell.text.trimmed();
  const QString description = index.data(Qt::ToolTipRole).toString();
  if (!description.isEmpty()) lines += description;
  // As rich text, so that long lines wrap and no markup in a name takes effect.
  QString tip;
  for (const QString& line : lines) tip += QStringLiteral("<p>%1</p>").arg(line.toHtmlEscaped());
  QToolTip::showText(event->globalPos(), tip, view);
  return true;
}

}  // namespace pelmarix::qt
