#include "qt/widgets/text_line.h"

#include <QPainter>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>

namespace pelmarix::qt {

TextLine::TextLine(const QString& text, const QFont& font) : metrics_(font) {
  static const QRegularExpression fieldEnd(QStringLiteral("\\t|: |(?= -?\\d{4,}-\\d\\d-\\d\\d )"));
  const bool isWhole = text.endsWith(QLatin1Char('\n'));
  const QString letters = isWhole ? text.chopped(1) : text;
  qsizetype begin = 0;
  for (auto ends = fieldEnd.globalMatch(letters); ends.hasNext();) {
    const qsizetype end = ends.next().capturedEnd();
    addField(letters.mid(begin, end - begin), font);
    begin = end;
  }
  addField(letters.mid(begin), font);
  if (isWhole) fields_.back().right += metrics_.horizontalAdvance(QLatin1Char(' '));
}

TextLine::Field::Field(const QString& text, const QFont& font, int fieldBegin, qreal fieldLeft)
    : layout(text.endsWith(QLatin1Char('\t')) ? text.chopped(1) : text, font),
      begin(fieldBegin),
      end(fieldBegin + static_cast<int>(text.size())),
      left(fieldLeft) {
  QTextOption option;
  option.setTextDirection(Qt::LeftToRight);
  option.setWrapMode(QTextOption::NoWrap);
  option.setFlags(QTextOption::IncludeTrailingSpaces);
  layout.setTextOption(option);
  layout.setCacheEnabled(true);
  layout.beginLayout();
  layout.createLine();
  layout.endLayout();
  right = textRight = left + layout.lineAt(0).horizontalAdvance();
}

void TextLine::addField(const QString& text, const QFont& font) {
  const int begin = fields_.empty() ? 0 : fields_.back().end;
  Field& field = fields_.emplace_back(text, font, begin, fields_.empty() ? 0 : fields_.back().right);
  if (!text.endsWith(QLatin1Char('\t'))) return;
  const qreal tabStop = 8 * metrics_.horizontalAdvance(QLatin1Char(' '));
  field.right = (std::floor(field.textRight / tabStop) + 1) * tabStop;
}

const TextLine::Field& TextLine::fieldWith(qsizetype unit) const {
  return *std::find_if(fields_.begin(), fields_.end() - 1,
                       [unit](const Field& one) { return unit < one.end; });
}

qreal TextLine::xOf(qsizetype unit) const {
  const Field& field = fieldWith(unit);
  return field.left + field.layout.lineAt(0).cursorToX(static_cast<int>(unit) - field.begin);
}

qreal TextLine::xAfter(qsizetype unit) const {
  const Field& field = fieldWith(unit);
  const int inField = static_cast<int>(unit) - field.begin;
  if (inField >= field.layout.text().size()) return field.right;
  return field.left + field.layout.lineAt(0).cursorToX(inField, QTextLine::Trailing);
}

qsizetype TextLine::unitAt(qreal x) const {
  // The second half of a tab belongs to the next field.
  const auto field = std::find_if(fields_.begin(), fields_.end() - 1,
                                  [x](const Field& one) { return x < (one.textRight + one.right) / 2; });
  return field->begin + field->layout.lineAt(0).xToCursor(x - field->left);
}

void TextLine::draw(QPainter& painter, QPointF topLeft,
                    const QList<QTextLayout::FormatRange>& highlights) const {
  for (const Field& field : fields_) {
    const int length = static_cast<int>(field.layout.text().size());
    QList<QTextLayout::FormatRange> inField;
    for (QTextLayout::FormatRange highlight : highlights) {
      const int end = highlight.start + highlight.length - field.begin;
      highlight.start = std::max(highlight.start - field.begin, 0);
      highlight.length = std::min(end, length) - highlight.start;
      if (highlight.length > 0) inField += highlight;
      if (highlight.start <= length && end > length)
        painter.fillRect(QRectF(topLeft.x() + field.textRight, topLeft.y(), field.right - field.textRight,
                                metrics_.height()),
                         highlight.format.background());
    }
    const qreal top = topLeft.y() + metrics_.ascent() - field.layout.lineAt(0).ascent();
    field.layout.draw(&painter, {topLeft.x() + field.left, top}, inField);
  }
}

}  // namespace pelmarix::qt
