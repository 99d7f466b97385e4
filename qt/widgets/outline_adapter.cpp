#include "qt/widgets/outline_adapter.h"

#include <QItemSelectionModel>

namespace pelmarix::qt {

OutlineAdapter::OutlineAdapter(OutlineWidget& widget, const std::vector<ColumnDescription>& columns,
                               platform::OutlineViewDataSource& dataSource,
                               platform::OutlineViewDelegate& delegate)
    : widget_(widget), columns_(columns), model_(*this, dataSource, delegate, columns_) {
  widget_.setModel(&model_);
  widget_.setColumns(columns);
  QObject::connect(&widget_, &OutlineWidget::rowDoubleClicked, &model_, [this](const QModelIndex& index) {
    clicked_ = index;
    if (doubleAction_) doubleAction_();
    clicked_ = QPersistentModelIndex();
  });
}

void OutlineAdapter::revealLastGroup() {
  const QModelIndex last = model_.index(model_.rowCount() - 1, 0);
  widget_.expand(last);
  widget_.selectionModel()->setCurrentIndex(last, QItemSelectionModel::NoUpdate);
  widget_.scrollTo(last, QAbstractItemView::PositionAtTop);
}

platform::View* OutlineAdapter::makeViewWithIdentifier(const std::string& identifier) {
  return columns_.makeCell(identifier);
}

void OutlineAdapter::reloadItemReloadChildren(platform::Object* /*item*/, bool /*reloadChildren*/) {
  const bool isChanged = model_.reload();
  // Not by QAbstractItemModel::dataChanged: the view would look up 100,000 rows to find the few on screen.
  if (!isChanged) return widget_.viewport()->update();
  // The names of groups, which have no date and no version, take the whole row.
  for (int row = 0; row < model_.rowCount(); ++row)
    if (model_.hasChildren(model_.index(row, 0))) widget_.setFirstColumnSpanned(row, {}, true);
}

bool OutlineAdapter::isItemExpanded(platform::Object* item) {
  return widget_.isExpanded(model_.indexOfGroup(item));
}

void OutlineAdapter::expandItem(platform::Object* item) { widget_.expand(model_.indexOfGroup(item)); }

void OutlineAdapter::collapseItem(platform::Object* item) { widget_.collapse(model_.indexOfGroup(item)); }

platform::Object* OutlineAdapter::selectedItem() const {
  const QItemSelectionModel& selection = *widget_.selectionModel();
  if (selection.isSelected(selection.currentIndex())) return model_.itemAt(selection.currentIndex());
  const QItemSelection ranges = selection.selection();
  return ranges.isEmpty() ? nullptr : model_.itemAt(ranges.front().topLeft());
}

void OutlineAdapter::selectChildOfItem(std::ptrdiff_t index, platform::Object* item) {
  widget_.selectAlone(model_.index(static_cast<int>(index), 0, model_.indexOfGroup(item)));
}

}  // namespace pelmarix::qt
