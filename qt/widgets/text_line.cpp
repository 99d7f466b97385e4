#include "qt/widgets/text_line.h"

#include <QPainter>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>
#include <vector>

namespace pelmarix::qt {
namespace {

// More fields than a person has use for: with thousands in each line a page takes 0.1 s, and with these 0.01
// s.
constexpr std::ptrdiff_t mostFieldsAtBegin = 12;
constexpr std::ptrdiff_t mostFieldsAtEnd = 4;

// What is drawn of a field: all but the tab at its end. Where many fields are laid out as one, tabs are
// blanks.
QString withoutTabs(const QString& field) {
  QString letters = field.endsWith(QLatin1Char('\t')) ? field.chopped(1) : field;
  return letters.replace(QLatin1Char('\t'), QLatin1Char(' '));
}

// Where fields end, all but the last.
std::vector<qsizetype> fieldEnds(const QString& text) {
  std::vector<qsizetype> ends;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text[i] == QLatin1Char('\t')) ends.push_back(i + 1);
    if (QStringView(text).mid(i, 2) == QLatin1String(": ")) ends.push_back(i + 2);
  }
  static const QRegularExpression date(QStringLiteral("(?<!:)(?= -?\\d{4,}-\\d\\d-\\d\\d )"));
  for (auto dates = date.globalMatch(text); dates.hasNext();) ends.push_back(dates.next().capturedStart());
  std::sort(ends.begin(), ends.end());
  if (std::ssize(ends) > mostFieldsAtBegin + mostFieldsAtEnd)
    ends.erase(ends.begin() + mostFieldsAtBegin, ends.end() - mostFieldsAtEnd);
  return ends;
}

}  // namespace

TextLine::TextLine(const QString& text, const QFont& font, QList<QTextOption::Tab> tabs)
    : metrics_(font), tabDistance_(8 * metrics_.horizontalAdvance(QLatin1Char(' '))), tabs_(std::move(tabs)) {
  const bool isWhole = text.endsWith(QLatin1Char('\n'));
  const QString letters = isWhole ? text.chopped(1) : text;
  qsizetype begin = 0;
  for (const qsizetype end : fieldEnds(letters)) {
    addField(letters.mid(begin, end - begin), font);
    begin = end;
  }
  addField(letters.mid(begin), font);
  if (isWhole) fields_.back().right += metrics_.horizontalAdvance(QLatin1Char(' '));
}

TextLine::Field::Field(const QString& text, const QFont& font, int fieldBegin)
    : layout(withoutTabs(text), font), begin(fieldBegin), end(fieldBegin + static_cast<int>(text.size())) {
  QTextOption option;
  option.setTextDirection(Qt::LeftToRight);
  option.setWrapMode(QTextOption::NoWrap);
  option.setFlags(QTextOption::IncludeTrailingSpaces);
  layout.setTextOption(option);
  layout.setCacheEnabled(true);
  layout.beginLayout();
  layout.createLine();
  layout.endLayout();
}

void TextLine::addField(const QString& text, const QFont& font) {
  Field* const before = fields_.empty() ? nullptr : &fields_.back();
  Field& field = fields_.emplace_back(text, font, before == nullptr ? 0 : before->end);
  const qreal width = field.layout.lineAt(0).horizontalAdvance();
  if (before != nullptr) {
    const bool isAfterTab = before->end - before->begin > before->layout.text().size();
    if (isAfterTab) before->right = leftAfterTab(before->textRight(), width);
    field.left = before->right;
  }
  field.right = field.left + width;
}

qreal TextLine::leftAfterTab(qreal x, qreal width) {
  if (!tabs_.isEmpty()) {
    const QTextOption::Tab tab = tabs_.takeFirst();
    const qreal left = tab.type == QTextOption::RightTab ? tab.position - width : tab.position;
    if (left > x) return left;
  }
  return (std::floor(x / tabDistance_) + 1) * tabDistance_;
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
                                  [x](const Field& one) { return x < (one.textRight() + one.right) / 2; });
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
        painter.fillRect(QRectF(topLeft.x() + field.textRight(), topLeft.y(), field.right - field.textRight(),
                                metrics_.height()),
                         highlight.format.background());
    }
    const qreal top = topLeft.y() + metrics_.ascent() - field.layout.lineAt(0).ascent();
    field.layout.draw(&painter, {topLeft.x() + field.left, top}, inField);
  }
}

}  // namespace pelmarix::qt
