#include "qt/widgets/table_widget.h"

namespace pelmarix::qt {

TableWidget::TableWidget(QWidget* parent) : RowsView(parent) {
  setShowGrid(false);
  setWordWrap(false);
  setCornerButtonEnabled(false);
  verticalHeader()->hide();
  connect(this, &QTableView::doubleClicked, this, &TableWidget::rowOpened);
}

void TableWidget::setModel(QAbstractItemModel* model) {
  RowsView::setModel(model);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
  fitColumns();
}

void TableWidget::fitColumns() {
  if (model() == nullptr) return;
  // One height for all rows: no row is ever measured.
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(RowDelegate::rowHeight(fontMetrics()));
  horizontalHeader()->resizeSection(0, cellWidth(QStringLiteral("0000-00-00 00:00:00 +0000")));
}

QModelIndex TableWidget::rowAfter(const QModelIndex& row) const { return model()->index(row.row() + 1, 0); }

QModelIndex TableWidget::rowBefore(const QModelIndex& row) const {
  return model()->index((row.isValid() ? row.row() : model()->rowCount()) - 1, 0);
}

void TableWidget::keyPressEvent(QKeyEvent* event) {
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  // A blank goes on with a name that is being typed.
  const bool isSpace = event->key() == Qt::Key_Space && !isTyping();
  if ((isReturn || isSpace) && event->modifiers() == Qt::NoModifier && selectionModel()->hasSelection()) {
    emit rowOpened();
    return;
  }
  RowsView::keyPressEvent(event);
}

}  // namespace pelmarix::qt
