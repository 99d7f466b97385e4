// The rows of an outline as Qt's views ask for them.
#pragma once

#include <QAbstractItemModel>
#include <unordered_map>
#include <vector>

#include "platform/table_view.h"
#include "qt/widgets/cell_templates.h"

namespace pelmarix::qt {

/// Asks the outline's data source for items and its delegate for cells. The items below an item are asked for
/// when a view first needs them and remembered until the next reload, each with its place, so that every
/// answer takes the same time whatever the number of items. Cells are not remembered: what a view draws is
/// asked for as it draws it.
class OutlineModel final : public QAbstractItemModel {
  Q_OBJECT

 public:
  /// Data source and delegate are asked on behalf of `outlineView`, whose cells are `cells`.
  OutlineModel(platform::OutlineView& outlineView, const CellTemplates& cells,
               const std::vector<ColumnTemplate>& columns);

  /// Neither is owned; null for none.
  void setDataSource(platform::OutlineViewDataSource* dataSource);
  void setDelegate(platform::OutlineViewDelegate* delegate);

  /// True when the data source still answers as it did, item for item, for all that was asked so far.
  bool isUpToDate() const;
  /// All rows are asked anew; every index that a view holds ends.
  void reset();

  /// Null for the root.
  platform::Object* itemAt(const QModelIndex& index) const;
  /// Of the item's first cell; invalid when no view has come across the item yet.
  QModelIndex indexOf(const platform::Object* item) const;

  /// All items whose children a view has asked for, an item before those below it.
  QModelIndexList loadedGroups() const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  QModelIndex sibling(int row, int column, const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  bool hasChildren(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;
  QStringList mimeTypes() const override;

 private:
  struct Node {
    platform::Object* item = nullptr;
    Node* parent = nullptr;
    int row = 0;
    bool isExpandable = true;
    bool isLoaded = false;
    std::vector<Node> children;  // never changes size once loaded: nodes point to their parents
  };

  Node& nodeOf(const QModelIndex& index) const;
  QModelIndex indexOf(const Node& node) const;
  /// Invalid when there is no such row or column.
  QModelIndex indexBelow(Node& parent, int row, int column) const;
  int numberOfChildren(const Node& node) const;
  /// The node, once its children are there.
  Node& loaded(Node& node) const;
  bool isUpToDate(const Node& node) const;
  void appendLoadedGroups(const Node& node, QModelIndexList& groups) const;
  QString countText(const Node& node) const;

  platform::OutlineView& outlineView_;
  const CellTemplates& cells_;
  platform::OutlineViewDataSource* dataSource_ = nullptr;
  platform::OutlineViewDelegate* delegate_ = nullptr;
  Columns columns_;
  mutable Node root_;
  mutable std::unordered_map<const platform::Object*, Node*> nodes_;
};

}  // namespace pelmarix::qt
