#include "qt/widgets/outline_model.h"

#include <algorithm>
#include <utility>

#include "qt/widgets/row_text.h"

namespace pelmarix::qt {

OutlineModel::OutlineModel(platform::OutlineView& outlineView, platform::OutlineViewDataSource& dataSource,
                           platform::OutlineViewDelegate& delegate, const Columns& columns)
    : outlineView_(outlineView), dataSource_(dataSource), delegate_(delegate), columns_(columns) {}

bool OutlineModel::reload() {
  const auto childCount = [this](platform::Object* item) {
    return static_cast<int>(dataSource_.outlineViewNumberOfChildrenOfItem(outlineView_, item));
  };
  std::vector<Group> groups(static_cast<std::size_t>(childCount(nullptr)));
  std::ptrdiff_t row = 0;
  for (Group& group : groups) {
    group.item = dataSource_.outlineViewChildOfItem(outlineView_, row++, nullptr);
    // A data source may answer for an item that isn't expandable as it does for the root.
    if (dataSource_.outlineViewIsItemExpandable(outlineView_, group.item))
      group.entryCount = childCount(group.item);
  }
  if (groups == groups_) return false;
  beginResetModel();
  groups_ = std::move(groups);
  endResetModel();
  return true;
}

platform::Object* OutlineModel::itemAt(const QModelIndex& index) const {
  if (!index.isValid()) return nullptr;
  if (index.internalId() == 0) return groups_[static_cast<std::size_t>(index.row())].item;
  return dataSource_.outlineViewChildOfItem(outlineView_, index.row(),
                                            groups_[static_cast<std::size_t>(index.internalId() - 1)].item);
}

QModelIndex OutlineModel::indexOfGroup(const platform::Object* item) const {
  const auto found =
      std::find_if(groups_.begin(), groups_.end(), [item](const Group& group) { return group.item == item; });
  return found == groups_.end() ? QModelIndex() : index(static_cast<int>(found - groups_.begin()), 0);
}

QModelIndex OutlineModel::index(int row, int column, const QModelIndex& parent) const {
  if (row < 0 || row >= rowCount(parent) || column < 0 || column >= columns_.count()) return {};
  return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : 0);
}

QModelIndex OutlineModel::parent(const QModelIndex& child) const {
  if (!child.isValid() || child.internalId() == 0) return {};
  return createIndex(static_cast<int>(child.internalId()) - 1, 0);
}

QModelIndex OutlineModel::sibling(int row, int column, const QModelIndex& index) const {
  return index.isValid() ? OutlineModel::index(row, column, parent(index)) : QModelIndex();
}

int OutlineModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return static_cast<int>(groups_.size());
  return parent.column() == 0 ? entryCount(parent) : 0;
}

int OutlineModel::entryCount(const QModelIndex& index) const {
  return index.internalId() == 0 ? groups_[static_cast<std::size_t>(index.row())].entryCount : 0;
}

int OutlineModel::columnCount(const QModelIndex& /*parent*/) const { return columns_.count(); }

QVariant OutlineModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role == Qt::DisplayRole)
    return columns_.textOf(delegate_.outlineViewViewForTableColumnItem(
        outlineView_, columns_.at(index.column()), itemAt(index)));
  if (role == Qt::ToolTipRole)
    return toQString(delegate_.outlineViewToolTipForItem(outlineView_, itemAt(index)));
  // Of the first cell alone: the others' names are all that there is to say of them.
  if (role == Qt::AccessibleDescriptionRole && index.column() == 0)
    return toQString(delegate_.outlineViewAccessibilityDescriptionForItem(outlineView_, itemAt(index)));
  return {};
}

QVariant OutlineModel::headerData(int section, Qt::Orientation orientation, int role) const {
  return columns_.headerData(section, orientation, role);
}

Qt::ItemFlags OutlineModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled;
  return entryCount(index) > 0 ? flags : flags | Qt::ItemNeverHasChildren;
}

QMimeData* OutlineModel::mimeData(const QModelIndexList& indexes) const { return rowsAsMimeData(indexes); }

}  // namespace pelmarix::qt
