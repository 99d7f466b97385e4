// What the outline and the table have in common as widgets.
#pragma once

#include <QAbstractItemView>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QKeyEvent>
#include <vector>

#include "qt/widgets/columns.h"
#include "qt/widgets/row_delegate.h"
#include "qt/widgets/searchable.h"

namespace pelmarix::qt {

/// Whole rows are selected, copied and dragged as text; typing goes to the row whose name begins so; an empty
/// list says what its placeholder says. A base of a widget beside Qt's; the widget's event handlers call what
/// is protected here.
class RowsView : public Searchable {
 public:
  /// Those of the model, which is set before. Exactly one has no usual text: that of names.
  void setColumns(const std::vector<ColumnDescription>& columns);
  /// What an empty list says, as its accessible description, too.
  void setPlaceholderText(const QString& text);
  /// Shows it below the placeholder of an empty list. It is a sibling of the widget, because what is inside a
  /// list is not reached by screen readers.
  void showAction(QWidget& action);

  /// Selects a row and nothing else, whichever keys are held down just now, and brings it into view, with
  /// those above it opened. An invalid index changes nothing.
  void selectAlone(const QModelIndex& row);

  /// Puts the selected rows on the clipboard, or their names alone; nothing selected leaves it alone.
  void copy() const;
  void copyNames() const;

  void markMatches(const QString& text) override;
  bool selectMatchAhead(const QString& text, SearchStart start, SearchDirection direction) override;
  MatchCount countMatches(const QString& text) const override;
  QString selectedMatchInWords() const override;

 protected:
  /// `view` is the widget itself, `header` that of its columns.
  RowsView(QAbstractItemView& view, QHeaderView& header);

  /// True for a row that shows those below it.
  virtual bool isOpen(const QModelIndex& row) const = 0;
  /// How far from the left edge of its column the name of a row begins that is below another.
  virtual int indentationOfNames() const { return 0; }

  /// True when no key that changes its meaning is held down with it.
  static bool isAlone(const QKeyEvent& key) {
    return key.modifiers().setFlag(Qt::KeypadModifier, false) == Qt::NoModifier;
  }

  /// Goes to the next shown row whose name begins with what was typed without a pause. Not Qt's own, which
  /// searches the current cell's column and takes a name's indentation for a part of it.
  void goToTyped(const QString& typed);
  /// True while the user types the beginning of a name.
  bool isTyping() const;

  /// Does what a key does in every list; false for a key that does nothing here.
  bool takesKey(const QKeyEvent& key);
  /// Opens a menu of the widget's actions.
  void openContextMenu(const QContextMenuEvent& event);

  /// Gives the columns the widths of their usual texts, in the view's font and style, and fits that of names.
  void fitColumns();
  /// Gives the column of names what room there is in the view; where others stand behind it, not so much that
  /// they are far from the names. With so little room that a name couldn't be told by its two ends, it gets
  /// what names take, and the view scrolls sideways. To be called when the view's size has changed.
  void fitNames();
  void paintPlaceholder();
  /// To be called when the view has another size.
  void placeAction();

 private:
  int usualWidth(int column) const;
  // Of a cell, in which there are some pixels left and right of its text.
  int widthForText(const QString& text) const;
  QModelIndexList selectedRows() const;
  void openContextMenu(QPoint place);
  void openContextMenuAtCurrentRow();

  QAbstractItemView& view_;
  QHeaderView& header_;
  RowDelegate* delegate_;
  std::vector<ColumnDescription> columns_;
  int nameColumn_ = 0;
  QString placeholderText_;
  QWidget* action_ = nullptr;
  QString typed_;
  QElapsedTimer sinceTyped_;
};

}  // namespace pelmarix::qt
