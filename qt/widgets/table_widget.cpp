#include "qt/widgets/table_widget.h"

#include <algorithm>

#include "qt/widgets/palette_colors.h"

namespace pelmarix::qt {

TableWidget::TableWidget(QWidget* parent) : QTableView(parent), RowsView(*this, *horizontalHeader()) {
  setShowGrid(false);
  verticalHeader()->hide();
  fitRows();
  connect(this, &QTableView::doubleClicked, this, [this](const QModelIndex& row) {
    // With the control key held, the first click may have taken the row out of the selection.
    selectionModel()->setCurrentIndex(row, QItemSelectionModel::Select | QItemSelectionModel::Rows);
    emit rowOpened();
  });
}

void TableWidget::fitRows() {
  verticalHeader()->setDefaultSectionSize(RowDelegate::rowHeight(fontMetrics()));
}

void TableWidget::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  // As in the outline.
  if (hasFocus()) return QTableView::currentChanged(current, previous);
  QAbstractItemView::currentChanged(current, previous);  // NOLINT(bugprone-parent-virtual-call)
}

void TableWidget::keyPressEvent(QKeyEvent* event) {
  if (takesKey(*event)) return;
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  // A blank goes on with a name that is being typed.
  const bool isSpace = event->key() == Qt::Key_Space && !isTyping();
  if ((isReturn || isSpace) && isAlone(*event) && selectionModel()->hasSelection()) return emit rowOpened();
  QTableView::keyPressEvent(event);
}

QModelIndex TableWidget::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
  // Qt's own go to the ends of a row, which is one thing here.
  const int column = std::max(currentIndex().column(), 0);
  if (action == MoveHome) return model()->index(0, column);
  if (action == MoveEnd) return model()->index(model()->rowCount() - 1, column);
  return QTableView::moveCursor(action, modifiers);
}

void TableWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) QTableView::mouseDoubleClickEvent(event);
}

void TableWidget::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  paintPlaceholder();
}

void TableWidget::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  fitNames();
  placeAction();
}

void TableWidget::initViewItemOption(QStyleOptionViewItem* option) const {
  QTableView::initViewItemOption(option);
  if (!hasFocus()) option->palette = withoutFocus(option->palette);
}

void TableWidget::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange) return;
  fitColumns();
  fitRows();
}

}  // namespace pelmarix::qt
