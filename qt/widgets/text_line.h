// One line of a text, laid out to be drawn.
#pragma once

#include <QFontMetricsF>
#include <QTextLayout>
#include <deque>

namespace pelmarix::qt {

/// Its fields stand from left to right whatever letters they are of, and each is laid out by itself. A field
/// ends after a tab, after a colon with a blank, and before a date. Places in it are numbers of UTF-16 units.
class TextLine final {
 public:
  /// Tab stops are eight blanks apart. A line feed at the end is as wide as a blank.
  TextLine(const QString& text, const QFont& font);
  TextLine(TextLine&&) = default;

  qreal width() const { return fields_.back().right; }
  /// Where a unit begins: at its right where letters go to the left.
  qreal xOf(qsizetype unit) const;
  qreal xAfter(qsizetype unit) const;
  /// The place between two characters that is nearest.
  qsizetype unitAt(qreal x) const;
  /// Highlights are parts of the line with what they look like.
  void draw(QPainter& painter, QPointF topLeft, const QList<QTextLayout::FormatRange>& highlights) const;

 private:
  struct Field {
    Field(const QString& text, const QFont& font, int fieldBegin, qreal fieldLeft);
    QTextLayout layout;  // without the tab at its end
    int begin;
    int end;
    qreal left;
    qreal textRight;
    qreal right;  // with the tab, or the line feed after the last field
  };
  void addField(const QString& text, const QFont& font);
  const Field& fieldWith(qsizetype unit) const;

  QFontMetricsF metrics_;
  std::deque<Field> fields_;  // never none
};

}  // namespace pelmarix::qt
