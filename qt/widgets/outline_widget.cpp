#include "qt/widgets/outline_widget.h"

namespace pelmarix::qt {
namespace {

/// The row that follows `row` and all rows below it.
QModelIndex rowPast(QModelIndex row) {
  while (row.isValid()) {
    const QModelIndex next = row.siblingAtRow(row.row() + 1);
    if (next.isValid()) return next;
    row = row.parent();
  }
  return {};
}

}  // namespace

OutlineWidget::OutlineWidget(QWidget* parent) : RowsView(parent) {
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  // A double click is the outline's action; the view must not expand the row a second time.
  setExpandsOnDoubleClick(false);
  connect(this, &QTreeView::doubleClicked, this, &OutlineWidget::rowDoubleClicked);
}

void OutlineWidget::setModel(QAbstractItemModel* model) {
  RowsView::setModel(model);
  header()->setStretchLastSection(false);
  header()->setSectionsMovable(false);
  header()->setSectionResizeMode(0, QHeaderView::Stretch);
  fitColumns();
}

void OutlineWidget::fitColumns() {
  if (model() == nullptr) return;
  header()->resizeSection(1, cellWidth(QStringLiteral("0000-00-00 00:00:00 +0000")));
  header()->resizeSection(2, cellWidth(QStringLiteral("0000.0.0.00")));
}

QModelIndex OutlineWidget::rowAfter(const QModelIndex& row) const {
  // Below the root and every group stand its entries.
  return model()->rowCount(row) > 0 ? model()->index(0, 0, row) : rowPast(row);
}

QModelIndex OutlineWidget::rowBefore(const QModelIndex& row) const {
  if (row.isValid() && row.row() == 0) return row.parent();
  QModelIndex before = row.isValid() ? row.siblingAtRow(row.row() - 1) : QModelIndex();
  while (const int count = model()->rowCount(before)) before = model()->index(count - 1, 0, before);
  return before;
}

QModelIndex OutlineWidget::shownRowAfter(const QModelIndex& row) const {
  return !row.isValid() || isExpanded(row) ? rowAfter(row) : rowPast(row);
}

QModelIndex OutlineWidget::shownRow(const QModelIndex& row) const {
  QModelIndex shown = row;
  for (QModelIndex group = row.parent(); group.isValid(); group = group.parent())
    if (!isExpanded(group)) shown = group;
  return shown;
}

void OutlineWidget::keyPressEvent(QKeyEvent* event) {
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const QModelIndex current = currentIndex().siblingAtColumn(0);
  if (isReturn && event->modifiers() == Qt::NoModifier && model()->hasChildren(current)) {
    setExpanded(current, !isExpanded(current));
    return;
  }
  RowsView::keyPressEvent(event);
}

void OutlineWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  const bool hitsRow = indexAt(event->position().toPoint()).isValid();
  RowsView::mouseDoubleClickEvent(event);
  if (!hitsRow && event->button() == Qt::LeftButton) emit rowDoubleClicked({});
}

}  // namespace pelmarix::qt
