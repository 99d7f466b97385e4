#include "qt/widgets/outline_widget.h"

#include "qt/widgets/palette_colors.h"

namespace pelmarix::qt {

OutlineWidget::OutlineWidget(QWidget* parent) : QTreeView(parent), RowsView(*this, *header()) {
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  // A double click is the outline's action; the view must not expand the row a second time.
  setExpandsOnDoubleClick(false);
  connect(this, &QTreeView::doubleClicked, this, &OutlineWidget::rowDoubleClicked);
  connect(this, &QTreeView::expanded, this, [this] { setExpandedGroups(expandedGroups_ + 1); });
  connect(this, &QTreeView::collapsed, this, [this] { setExpandedGroups(expandedGroups_ - 1); });
}

void OutlineWidget::reset() {
  QTreeView::reset();
  expandableGroups_ = 0;
  for (int row = 0; model() != nullptr && row < model()->rowCount(); ++row)
    if (model()->hasChildren(model()->index(row, 0))) ++expandableGroups_;
  setExpandedGroups(0);
}

// Counted, for it takes the view 0.3 s to find the expanded one among a million groups.
void OutlineWidget::setExpandedGroups(int count) {
  expandedGroups_ = count;
  emit canExpandChanged(expandedGroups_ < expandableGroups_);
  emit canCollapseChanged(expandedGroups_ > 0);
}

void OutlineWidget::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  // Qt's own tells screen readers that the row has the focus, which it hasn't when a search comes to it.
  if (hasFocus()) return QTreeView::currentChanged(current, previous);
  QAbstractItemView::currentChanged(current, previous);  // NOLINT(bugprone-parent-virtual-call)
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

void OutlineWidget::resizeEvent(QResizeEvent* event) {
  QTreeView::resizeEvent(event);
  fitNames();
  placeAction();
}

void OutlineWidget::initViewItemOption(QStyleOptionViewItem* option) const {
  QTreeView::initViewItemOption(option);
  if (!hasFocus()) option->palette = withoutFocus(option->palette);
}

void OutlineWidget::changeEvent(QEvent* event) {
  QTreeView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) fitColumns();
}

}  // namespace pelmarix::qt
