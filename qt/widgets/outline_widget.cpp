#include "qt/widgets/outline_widget.h"

namespace pelmarix::qt {

OutlineWidget::OutlineWidget(QWidget* parent) : QTreeView(parent), RowsView(*this, *header()) {
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  // A double click is the outline's action; the view must not expand the row a second time.
  setExpandsOnDoubleClick(false);
  connect(this, &QTreeView::doubleClicked, this, &OutlineWidget::rowDoubleClicked);
  tellingGroups_.setSingleShot(true);
  connect(&tellingGroups_, &QTimer::timeout, this, &OutlineWidget::tellGroups);
  connect(this, &QTreeView::expanded, &tellingGroups_, qOverload<>(&QTimer::start));
  connect(this, &QTreeView::collapsed, &tellingGroups_, qOverload<>(&QTimer::start));
}

void OutlineWidget::reset() {
  QTreeView::reset();
  tellingGroups_.start();
}

void OutlineWidget::expandAll() {
  QTreeView::expandAll();  // says nothing of the groups
  tellingGroups_.start();
}

bool OutlineWidget::holdsGroup(bool isExpandedGroup) const {
  for (int row = 0; row < model()->rowCount(); ++row) {
    const QModelIndex group = model()->index(row, 0);
    if (model()->hasChildren(group) && isExpanded(group) == isExpandedGroup) return true;
  }
  return false;
}

void OutlineWidget::tellGroups() {
  emit canExpandChanged(holdsGroup(false));
  emit canCollapseChanged(holdsGroup(true));
}

void OutlineWidget::keyPressEvent(QKeyEvent* event) {
  if (takesKey(*event)) return;
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const QModelIndex current = currentIndex().siblingAtColumn(0);
  if (isReturn && isAlone(*event) && model()->hasChildren(current))
    return setExpanded(current, !isExpanded(current));
  QTreeView::keyPressEvent(event);
}

bool OutlineWidget::isArrowByAnotherButton(const QMouseEvent& event) const {
  const QPoint place = event.position().toPoint();
  return event.button() != Qt::LeftButton && place.x() < visualRect(indexAt(place)).left();
}

void OutlineWidget::mousePressEvent(QMouseEvent* event) {
  if (!isArrowByAnotherButton(*event)) QTreeView::mousePressEvent(event);
}

void OutlineWidget::mouseReleaseEvent(QMouseEvent* event) {
  if (!isArrowByAnotherButton(*event)) QTreeView::mouseReleaseEvent(event);
}

void OutlineWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const bool hitsRow = indexAt(event->position().toPoint()).isValid();
  QTreeView::mouseDoubleClickEvent(event);
  if (!hitsRow) emit rowDoubleClicked({});
}

void OutlineWidget::paintEvent(QPaintEvent* event) {
  QTreeView::paintEvent(event);
  paintPlaceholder();
}

void OutlineWidget::changeEvent(QEvent* event) {
  QTreeView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) fitColumns();
}

}  // namespace pelmarix::qt
