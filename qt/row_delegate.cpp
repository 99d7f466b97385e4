#include "qt/row_delegate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include "qt/match_mark.h"

namespace pelmarix::qt {
namespace {

constexpr QChar emSpace(0x2003);

// More than the widest screen shows: a text of megabytes is not laid out for the sake of its first words.
constexpr qsizetype longestShown = 2000;

/// Where the style puts the cell's text.
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
  QStyledItemDelegate::paint(painter, option, index);
  if (marked_.isEmpty()) return;
  painter->save();
  QStyleOptionViewItem cell = option;
  initStyleOption(&cell, index);
  const QRect rect = textRect(cell);
  const QString shown = cell.fontMetrics.elidedText(cell.text, cell.textElideMode, rect.width());
  for (qsizetype at = 0; (at = shown.indexOf(marked_, at, Qt::CaseInsensitive)) >= 0; at += marked_.size()) {
    const int left = cell.fontMetrics.horizontalAdvance(shown.left(at));
    const int right = cell.fontMetrics.horizontalAdvance(shown.left(at + marked_.size()));
    const QRect match(rect.left() + left, rect.top(), right - left, rect.height());
    if (cell.state.testFlag(QStyle::State_Selected)) {
      // The tint is the selection's own colour: a frame stands out from it.
      painter->setPen(cell.palette.color(QPalette::HighlightedText));
      painter->drawRect(match.adjusted(-1, 1, 0, -2));
    } else {
      painter->fillRect(match, matchMarkColor(cell.palette));
    }
  }
  painter->restore();
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
