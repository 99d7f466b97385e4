// What the outline and the table have in common as widgets.
#pragma once

#include <QAbstractItemView>
#include <QElapsedTimer>
#include <QHeaderView>
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
  /// Those of the model, which is set before.
  void setColumns(const std::vector<ColumnDescription>& columns);
  void setPlaceholderText(const QString& text) { placeholderText_ = text; }

  /// Puts the selected rows on the clipboard; nothing selected leaves it alone.
  void copyRows() const;

  void markMatches(const QString& text) override;
  bool selectMatch(const QString& text, SearchStart start, SearchDirection direction) override;

 protected:
  /// `view` is the widget itself, `header` that of its columns.
  RowsView(QAbstractItemView& view, QHeaderView& header);

  /// True for a row that shows those below it.
  virtual bool isOpen(const QModelIndex& row) const = 0;

  /// Goes to the next shown row whose name begins with what was typed without a pause.
  void goToTyped(const QString& typed);
  /// True while the user types the beginning of a name.
  bool isTyping() const;

  /// Gives the columns the widths of their usual texts, in the view's font and style.
  void fitColumns();
  void paintPlaceholder();

 private:
  /// And nothing else, whichever keys are held down just now.
  void selectAlone(const QModelIndex& row);

  QAbstractItemView& view_;
  QHeaderView& header_;
  RowDelegate* delegate_;
  std::vector<ColumnDescription> columns_;
  int nameColumn_ = 0;
  QString placeholderText_;
  QString typed_;
  QElapsedTimer sinceTyped_;
};

}  // namespace pelmarix::qt
