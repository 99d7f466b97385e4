// The widget behind the report and the bill of materials: a text to read, select, copy and search.
#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <optional>

#include "qt/widgets/searchable.h"
#include "qt/widgets/text_pane.h"
#include "qt/widgets/text_places.h"
#include "qt/widgets/utf8_search.h"

namespace pelmarix::qt {

/// Of any size: it is shown as it is, by an index of 1/64 of its size. What has no picture is shown by a sign
/// of its own; copying gives the bytes as they are. Where there is no text it says what its placeholder says.
class PlainTextView final : public TextPane, public Searchable {
  Q_OBJECT

 public:
  explicit PlainTextView(QWidget* parent = nullptr);

  /// Valid UTF-8. Of the text that is shown already everything stays as it is.
  void showText(platform::SharedText text);
  const platform::SharedText& text() const { return index().text(); }
  /// Of its letters, in points; one that no font engine draws becomes the nearest that it does.
  void setPointSize(double size);

  const QString& placeholderText() const { return placeholderText_; }
  void setPlaceholderText(const QString& text) { placeholderText_ = text; }

  /// One end of what is selected and the other, where the caret is.
  std::size_t anchor() const { return anchor_; }
  std::size_t caret() const { return caret_; }
  TextRange selection() const { return {std::min(anchor_, caret_), std::max(anchor_, caret_)}; }
  /// Brings the caret into view.
  void select(std::size_t anchor, std::size_t caret);
  void selectAll();
  void copy() const;

  void markMatches(const QString& text) override;
  bool selectMatchAhead(const QString& text, SearchStart start, SearchDirection direction) override;
  MatchCount countMatches(const QString& text) const override;
  QString selectedMatchInWords() const override;

 signals:
  /// The user turned the wheel with the control key held: bigger by so many steps, smaller when negative.
  void zoomRequested(int steps);
  void textChanged();
  void selectionChanged();

 protected:
  std::vector<Highlight> highlightsIn(TextRange range) const override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void setSelection(std::size_t anchor, std::size_t caret);
  QMimeData* selectedData() const;
  std::size_t placeInOtherLine(int lines, qreal x);
  void beginSelecting(QPointF point, TextUnit unit);
  void selectTo(QPointF point);
  void endSelecting();
  std::size_t placeUnder(QPointF point);
  // On X11, to whoever pastes with the middle button.
  void offerSelection() const;

  std::size_t anchor_ = 0;
  std::size_t caret_ = 0;
  QString placeholderText_;
  // From the beginning of the caret's line, for as long as it goes up and down.
  std::optional<qreal> verticalMovesX_;
  // What the mouse selects: by what, from where, and to where at the moment.
  TextUnit unit_ = TextUnit::character;
  TextRange origin_;
  QPointF mouse_;
  bool isSelecting_ = false;
  bool mayDragOut_ = false;
  QPointF doubleClick_;
  QElapsedTimer sinceDoubleClick_;
  QBasicTimer scrolling_;
  SoughtText marked_{QString()};
  int wheelAngle_ = 0;  // eighths of a degree, since the last step of zooming
};

}  // namespace pelmarix::qt
