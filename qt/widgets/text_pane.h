// A text on screen: where each place in it is, and which of it is in view.
#pragma once

#include <QAbstractScrollArea>
#include <QTextCharFormat>
#include <deque>
#include <map>
#include <vector>

#include "qt/widgets/text_columns.h"
#include "qt/widgets/text_index.h"
#include "qt/widgets/text_line.h"

namespace pelmarix::qt {

/// Lines aren't wrapped, and all have one height. Only those in view are laid out, and of a very long one
/// only the parts in view: a part is as wide as an average letter for each of its bytes until it has been in
/// view. The text scrolls as far to the right as the widest line that has been in view.
class TextPane : public QAbstractScrollArea {
 public:
  explicit TextPane(QWidget* parent);

  const TextIndex& index() const { return index_; }
  /// What stands behind tabs stands in columns from now on, as tabStops() says; those of a text stay as they
  /// are while it is scrolled. Without columns tabs stop every eight blanks.
  void setColumns(const QList<QTextOption::TabType>& columns);
  /// The place nearest to a point of the viewport, which may be outside of it.
  std::size_t placeAt(QPointF point);
  /// The same in one line, `x` from the line's beginning.
  std::size_t placeInLine(std::size_t line, qreal x);
  /// Where what stands at a place is in the viewport, as high as its line; its width is negative where
  /// letters go to the left.
  QRectF rectOf(std::size_t place);
  /// How far from its line's beginning a place is.
  qreal xOf(std::size_t place);
  /// Scrolls as little as brings a place into view.
  void reveal(std::size_t place);

 protected:
  struct Highlight {
    TextRange range;
    QTextCharFormat format;
  };
  /// What is to be seen in `range`, later ones above earlier ones.
  virtual std::vector<Highlight> highlightsIn(TextRange range) const = 0;

  /// The first line in view stays where it still is in the text, or else the first after it that is.
  void setText(platform::SharedText text);
  int linesInView() const;

  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void changeEvent(QEvent* event) override;

 private:
  // A part of a line, laid out: all of it but for very long ones.
  struct Part {
    TextRange range;
    std::size_t line;
    qreal left;
    TextLine layout;
  };
  void measureLetters();
  void fitColumns() { tabs_ = tabStops(index_, columns_, font()); }
  void layOut();
  qreal layOutLine(std::size_t line);
  TextRange wholeLine(std::size_t line) const;
  TextRange partOfLine(TextRange line, std::size_t number) const;
  qreal widthOf(TextRange line, std::size_t number) const;
  Part part(std::size_t line, std::size_t number, qreal left);
  Part partWith(std::size_t place);
  qreal topOf(std::size_t line) const;
  std::size_t sameLine(const TextIndex& before, std::size_t first) const;

  TextIndex index_{platform::shareText({})};
  std::deque<Part> parts_;                   // in view
  std::map<std::size_t, qreal> partWidths_;  // of very long lines, by where a part begins
  QList<QTextOption::TabType> columns_;      // after the first
  QList<QTextOption::Tab> tabs_;
  qreal widest_ = 0;
  qreal lineHeight_ = 0;
  qreal letterWidth_ = 0;
};

}  // namespace pelmarix::qt
