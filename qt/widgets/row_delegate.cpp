#include "qt/widgets/row_delegate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <vector>

#include "qt/widgets/palette_colors.h"
#include "qt/widgets/text_search.h"
#include "qt/widgets/visible_text.h"

namespace pelmarix::qt {
namespace {

constexpr QChar emSpace(0x2003);

// A guess at more than the widest screen shows: a text of megabytes is not laid out for its first words.
constexpr qsizetype longestShown = 2000;

// A field between these has its own writing direction. Nothing else that is drawn holds them.
constexpr QChar firstStrongIsolate(0x2068);
constexpr QChar popDirectionalIsolate(0x2069);

QString isolated(const QString& field) { return firstStrongIsolate + field + popDirectionalIsolate; }

bool mayHoldRightToLeft(const QString& text) {
  constexpr char16_t firstOfHebrew = 0x0590;
  return std::any_of(text.begin(), text.end(),
                     [](QChar character) { return character.unicode() >= firstOfHebrew; });
}

// A group is named after its first entry, and a version follows.
QString withFieldsIsolated(const QString& shown, const QString& nameOfFirstEntry) {
  const QString name = nameOfFirstEntry + QLatin1Char(' ');
  if (!nameOfFirstEntry.isEmpty() && shown.startsWith(name))
    return isolated(nameOfFirstEntry) + QLatin1Char(' ') + isolated(shown.mid(name.size()));
  const auto isIndentation = [](QChar character) { return character == emSpace; };
  const auto indentation = std::find_if_not(shown.begin(), shown.end(), isIndentation) - shown.begin();
  return shown.left(indentation) + isolated(shown.mid(indentation));
}

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
  return visible(text.replace(0, tabs, QString(2 * tabs, emSpace)));
}

void RowDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  if (!index.flags().testFlag(Qt::ItemNeverHasChildren)) {
    option->font.setBold(true);
    option->fontMetrics = QFontMetrics(option->font);
  }
  if (!mayHoldRightToLeft(option->text)) return;
  const QVariant nameOfFirstEntry = index.model()->index(0, index.column(), index).data();
  option->text = withFieldsIsolated(option->text, displayText(nameOfFirstEntry, option->locale));
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
  QTextLayout layout(elided(cell, rect.width()), cell.font);
  QTextOption leftToRight;
  leftToRight.setTextDirection(Qt::LeftToRight);
  layout.setTextOption(leftToRight);
  layout.beginLayout();
  const QTextLine line = layout.createLine();
  layout.endLayout();
  if (!line.isValid()) return;
  const bool isSelected = cell.state.testFlag(QStyle::State_Selected);
  const QPalette::ColorGroup group =
      cell.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
  const QColor textColor = cell.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
  painter.setPen(textColor);
  QTextCharFormat mark;
  // In a selected row the tint would be the row's own colour: a frame stands out from it.
  if (isSelected)
    mark.setProperty(QTextFormat::OutlinePen, QPen(textColor));
  else
    mark.setBackground(tintOfHighlight(cell.palette));
  const QPointF place(rect.left(), rect.top() + (rect.height() - line.height()) / 2);
  layout.draw(&painter, place, matches(layout.text(), mark));
}

QString RowDelegate::elided(const QStyleOptionViewItem& cell, int width) const {
  constexpr QChar ellipsis(0x2026);
  constexpr qsizetype lettersBefore = 4;
  const QString sought = visible(marked_);
  const qsizetype match = indexOfIgnoringCase(cell.text, sought);
  for (const Qt::TextElideMode mode : {cell.textElideMode, Qt::ElideLeft}) {
    QString text = cell.fontMetrics.elidedText(cell.text, mode, width);
    if (match < 0 || indexOfIgnoringCase(text, sought) >= 0) return text;
  }
  qsizetype begin = std::max<qsizetype>(match - lettersBefore, 0);
  if (cell.text.at(begin).isLowSurrogate()) ++begin;
  const QString rest = begin == 0 ? cell.text : ellipsis + cell.text.mid(begin);
  return cell.fontMetrics.elidedText(rest, Qt::ElideRight, width);
}

QList<QTextLayout::FormatRange> RowDelegate::matches(const QString& drawn,
                                                     const QTextCharFormat& mark) const {
  if (marked_.isEmpty()) return {};
  QString shown;
  std::vector<int> places;  // of its characters in what is drawn
  for (int place = 0; place < drawn.size(); ++place) {
    if (drawn.at(place) == firstStrongIsolate || drawn.at(place) == popDirectionalIsolate) continue;
    shown += drawn.at(place);
    places.push_back(place);
  }
  const QString sought = visible(marked_);
  QList<QTextLayout::FormatRange> matches;
  for (qsizetype at = 0; (at = indexOfIgnoringCase(shown, sought, at)) >= 0; at += sought.size()) {
    const int first = places[static_cast<std::size_t>(at)];
    const int last = places[static_cast<std::size_t>(at + sought.size() - 1)];
    matches += {first, last + 1 - first, mark};
  }
  return matches;
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
  if (elided(cell, textRect(cell).width()) != cell.text) lines += cell.text.trimmed();
  const QString description = displayText(index.data(Qt::ToolTipRole), option.locale);
  if (!description.isEmpty()) lines += description;
  // As rich text, so that long lines wrap and no markup in a name takes effect.
  QString tip;
  for (const QString& line : lines) tip += QStringLiteral("<p>%1</p>").arg(line.toHtmlEscaped());
  QToolTip::showText(event->globalPos(), tip, view);
  return true;
}

}  // namespace pelmarix::qt
