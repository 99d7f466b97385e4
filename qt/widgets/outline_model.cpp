#include "qt/widgets/outline_model.h"

#include <QMimeData>

#include "qt/widgets/row_text.h"

namespace pelmarix::qt {

OutlineModel::OutlineModel(platform::OutlineView& outlineView, const CellTemplates& cells,
                           const std::vector<ColumnTemplate>& columns)
    : outlineView_(outlineView), cells_(cells), columns_(columns) {}

void OutlineModel::setDataSource(platform::OutlineViewDataSource* dataSource) {
  dataSource_ = dataSource;
  reset();
}

void OutlineModel::setDelegate(platform::OutlineViewDelegate* delegate) {
  delegate_ = delegate;
  reset();
}

int OutlineModel::numberOfChildren(const Node& node) const {
  // A data source may answer for an item that isn't expandable as it does for the root.
  if (dataSource_ == nullptr || !node.isExpandable) return 0;
  return static_cast<int>(dataSource_->outlineViewNumberOfChildrenOfItem(outlineView_, node.item));
}

OutlineModel::Node& OutlineModel::loaded(Node& node) const {
  if (node.isLoaded) return node;
  node.isLoaded = true;
  node.children.resize(static_cast<std::size_t>(numberOfChildren(node)));
  int row = 0;
  for (Node& child : node.children) {
    child.item = dataSource_->outlineViewChildOfItem(outlineView_, row, node.item);
    child.parent = &node;
    child.row = row++;
    child.isExpandable = dataSource_->outlineViewIsItemExpandable(outlineView_, child.item);
    nodes_[child.item] = &child;
  }
  return node;
}

bool OutlineModel::isUpToDate(const Node& node) const {
  if (!node.isLoaded) return true;
  if (numberOfChildren(node) != static_cast<int>(node.children.size())) return false;
  for (const Node& child : node.children) {
    if (dataSource_->outlineViewChildOfItem(outlineView_, child.row, node.item) != child.item ||
        dataSource_->outlineViewIsItemExpandable(outlineView_, child.item) != child.isExpandable ||
        !isUpToDate(child))
      return false;
  }
  return true;
}

bool OutlineModel::isUpToDate() const { return isUpToDate(root_); }

void OutlineModel::reset() {
  beginResetModel();
  nodes_.clear();
  root_ = Node();
  endResetModel();
}

OutlineModel::Node& OutlineModel::nodeOf(const QModelIndex& index) const {
  return index.isValid() ? *static_cast<Node*>(index.internalPointer()) : root_;
}

platform::Object* OutlineModel::itemAt(const QModelIndex& index) const { return nodeOf(index).item; }

QModelIndex OutlineModel::indexOf(const Node& node) const {
  return &node == &root_ ? QModelIndex() : createIndex(node.row, 0, &node);
}

QModelIndex OutlineModel::indexOf(const platform::Object* item) const {
  const auto found = nodes_.find(item);
  return found == nodes_.end() ? QModelIndex() : indexOf(*found->second);
}

void OutlineModel::appendLoadedGroups(const Node& node, QModelIndexList& groups) const {
  for (const Node& child : node.children) {
    if (!child.isLoaded || !child.isExpandable) continue;
    groups += indexOf(child);
    appendLoadedGroups(child, groups);
  }
}

QModelIndexList OutlineModel::loadedGroups() const {
  QModelIndexList groups;
  appendLoadedGroups(root_, groups);
  return groups;
}

QModelIndex OutlineModel::indexBelow(Node& parent, int row, int column) const {
  std::vector<Node>& children = loaded(parent).children;
  if (row < 0 || row >= std::ssize(children) || column < 0 || column >= columns_.count()) return {};
  return createIndex(row, column, &children[static_cast<std::size_t>(row)]);
}

QModelIndex OutlineModel::index(int row, int column, const QModelIndex& parent) const {
  return parent.column() > 0 ? QModelIndex() : indexBelow(nodeOf(parent), row, column);
}

QModelIndex OutlineModel::parent(const QModelIndex& child) const {
  return child.isValid() ? indexOf(*nodeOf(child).parent) : QModelIndex();
}

QModelIndex OutlineModel::sibling(int row, int column, const QModelIndex& index) const {
  return index.isValid() ? indexBelow(*nodeOf(index).parent, row, column) : QModelIndex();
}

int OutlineModel::rowCount(const QModelIndex& parent) const {
  if (parent.column() > 0) return 0;
  return static_cast<int>(loaded(nodeOf(parent)).children.size());
}

int OutlineModel::columnCount(const QModelIndex& /*parent*/) const { return columns_.count(); }

bool OutlineModel::hasChildren(const QModelIndex& parent) const {
  // Answered without asking for the children: a view asks it of every row.
  if (parent.column() > 0) return false;
  return parent.isValid() ? nodeOf(parent).isExpandable : rowCount() > 0;
}

QString OutlineModel::countText(const Node& node) const {
  const int count = numberOfChildren(node);
  return count == 1 ? tr("1 entry") : tr("%1 entries").arg(count);
}

QVariant OutlineModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Node& node = nodeOf(index);
  switch (role) {
    case Qt::DisplayRole: {
      if (delegate_ == nullptr) return {};
      return cells_.textOf(
          delegate_->outlineViewViewForTableColumnItem(outlineView_, columns_.at(index.column()), node.item));
    }
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
      return node.isExpandable ? countText(node) : QVariant();
    default:
      return {};
  }
}

QVariant OutlineModel::headerData(int section, Qt::Orientation orientation, int role) const {
  return columns_.headerData(section, orientation, role);
}

Qt::ItemFlags OutlineModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled;
  return nodeOf(index).isExpandable ? flags : flags | Qt::ItemNeverHasChildren;
}

QMimeData* OutlineModel::mimeData(const QModelIndexList& indexes) const {
  return indexes.isEmpty() ? nullptr : rowsAsMimeData(indexes);
}

QStringList OutlineModel::mimeTypes() const { return {QStringLiteral("text/plain")}; }

}  // namespace pelmarix::qt
