#include "qt/widgets/outline_adapter.h"

#include <QItemSelectionModel>
#include <QScrollBar>
#include <utility>

namespace pelmarix::qt {

OutlineAdapter::OutlineAdapter(OutlineWidget& widget, const std::vector<ColumnTemplate>& columns,
                               const std::vector<std::string>& cellIdentifiers)
    : widget_(widget), cells_(cellIdentifiers), model_(*this, cells_, columns) {
  widget_.setModel(&model_);
  QObject::connect(&widget_, &OutlineWidget::rowDoubleClicked, &model_, [this](const QModelIndex& index) {
    clicked_ = index.siblingAtColumn(0);
    if (doubleAction_) doubleAction_();
    clicked_ = QPersistentModelIndex();
  });
}

OutlineAdapter::~OutlineAdapter() { widget_.setModel(nullptr); }

void OutlineAdapter::setDataSource(platform::OutlineViewDataSource* dataSource) {
  model_.setDataSource(dataSource);
  spanGroups();
}

void OutlineAdapter::setDelegate(platform::OutlineViewDelegate* delegate) {
  model_.setDelegate(delegate);
  spanGroups();
}

platform::View* OutlineAdapter::makeViewWithIdentifier(const std::string& identifier) {
  return cells_.makeView(identifier);
}

void OutlineAdapter::reloadItemReloadChildren(platform::Object* /*item*/, bool /*reloadChildren*/) {
  // Nothing is told of the same rows' cells: the view would look for each of 100,000 rows that it doesn't
  // show.
  if (model_.isUpToDate())
    widget_.viewport()->update();
  else
    resetKeepingPlace();
}

void OutlineAdapter::resetKeepingPlace() {
  struct Group {
    platform::Object* item;
    bool isExpanded;
  };
  std::vector<Group> groups;
  // A group stands before the groups in it, so that each is there again when its turn comes.
  for (const QModelIndex& index : model_.loadedGroups())
    groups.push_back({model_.itemAt(index), widget_.isExpanded(index)});
  std::vector<platform::Object*> selected;
  for (const QModelIndex& index : widget_.selectionModel()->selectedRows())
    selected.push_back(model_.itemAt(index));
  platform::Object* const current = model_.itemAt(widget_.currentIndex());
  platform::Object* const top = model_.itemAt(widget_.indexAt({0, 0}));

  model_.reset();

  spanGroups();
  for (const Group& group : groups) {
    const QModelIndex index = model_.indexOf(group.item);
    if (model_.rowCount() > 0 && index.isValid() && model_.rowCount(index) > 0)
      widget_.setExpanded(index, group.isExpanded);
  }
  QItemSelectionModel& selection = *widget_.selectionModel();
  selection.setCurrentIndex(model_.indexOf(current), QItemSelectionModel::NoUpdate);
  for (const platform::Object* item : selected)
    selection.select(model_.indexOf(item), QItemSelectionModel::Select | QItemSelectionModel::Rows);
  if (const QModelIndex index = model_.indexOf(top); index.isValid())
    widget_.scrollTo(index, QAbstractItemView::PositionAtTop);
}

void OutlineAdapter::spanGroups() {
  for (int row = 0; row < model_.rowCount(); ++row)
    if (model_.hasChildren(model_.index(row, 0))) widget_.setFirstColumnSpanned(row, {}, true);
}

void OutlineAdapter::revealLastGroup() {
  const QModelIndex last = model_.index(model_.rowCount() - 1, 0);
  if (!last.isValid()) return;
  widget_.expand(last);
  widget_.selectionModel()->setCurrentIndex(last, QItemSelectionModel::NoUpdate);
  widget_.scrollTo(last, QAbstractItemView::PositionAtTop);
}

std::ptrdiff_t OutlineAdapter::shownRowsBelow(const QModelIndex& parent) const {
  if (parent.isValid() && !widget_.isExpanded(parent)) return 0;
  std::ptrdiff_t rows = model_.rowCount(parent);
  for (int row = 0; row < model_.rowCount(parent); ++row) {
    const QModelIndex child = model_.index(row, 0, parent);
    if (model_.hasChildren(child)) rows += shownRowsBelow(child);
  }
  return rows;
}

std::ptrdiff_t OutlineAdapter::clickedRow() const {
  if (!clicked_.isValid()) return -1;
  std::ptrdiff_t row = -1;
  for (QModelIndex index = clicked_; index.isValid(); index = index.parent()) {
    for (int before = 0; before < index.row(); ++before)
      row += 1 + shownRowsBelow(index.siblingAtRow(before));
    ++row;
  }
  return row;
}

platform::Object* OutlineAdapter::itemAtRow(std::ptrdiff_t row) {
  QModelIndex parent;
  for (int i = 0; row >= 0 && i < model_.rowCount(parent);) {
    const QModelIndex index = model_.index(i, 0, parent);
    const std::ptrdiff_t below = model_.hasChildren(index) ? shownRowsBelow(index) : 0;
    if (row == 0) return model_.itemAt(index);
    --row;
    if (row < below) {
      parent = index;
      i = 0;
    } else {
      row -= below;
      ++i;
    }
  }
  return nullptr;
}

bool OutlineAdapter::isItemExpanded(platform::Object* item) {
  return widget_.isExpanded(model_.indexOf(item));
}

void OutlineAdapter::expandItem(platform::Object* item) { widget_.expand(model_.indexOf(item)); }

void OutlineAdapter::collapseItem(platform::Object* item) { widget_.collapse(model_.indexOf(item)); }

}  // namespace pelmarix::qt
