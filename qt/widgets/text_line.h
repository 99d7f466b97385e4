// One line of a text, laid out to be drawn.
#pragma once

#include <QFontMetricsF>
#include <QTextLayout>
#include <deque>

namespace pelmarix::qt {

/// Its fields stand from left to right whatever letters they are of, and each is laid out by itself. A field
/// ends after a tab, after a colon with a blank, and before a date; of very many fields those in the middle
/// are laid out as one, with blanks for tabs, which takes no longer than any other text. Places in it are
/// numbers of UTF-16 units.
class TextLine final {
 public:
  /// The first tabs stop at `tabs`, which end or begin the field that follows; all others, and those whose
  /// stop is too near, at the next of places eight blanks apart. A line feed at the end is as wide as a
  /// blank.
  TextLine(const QString& text, const QFont& font, QList<QTextOption::Tab> tabs = {});
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
    Field(const QString& text, const QFont& font, int fieldBegin);
    qreal textRight() const { return left + layout.lineAt(0).horizontalAdvance(); }
    QTextLayout layout;  // without the tab at its end
    int begin;
    int end;
    qreal left = 0;
    qreal right = 0;  // with the tab, or the line feed after the last field
  };
  void addField(const QString& text, const QFont& font);
  // Where a field begins that is so wide and follows a tab that begins at `x`.
  qreal leftAfterTab(qreal x, qreal width);
  const Field& fieldWith(qsizetype unit) const;

  QFontMetricsF metrics_;
  qreal tabDistance_;
  QList<QTextOption::Tab> tabs_;  // those still to come
  std::deque<Field> fields_;      // never none
};

}  // namespace pelmarix::qt
