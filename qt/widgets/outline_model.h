// The rows of the outline as Qt's views ask for them.
#pragma once

#include <QAbstractItemModel>
#include <vector>

#include "platform/table_view.h"
#include "qt/widgets/columns.h"

namespace pelmarix::qt {

/// Two levels: groups and their entries. What is remembered from one reload to the next is the groups and how
/// many entries each has; an entry and its cells are asked for when a view draws it.
class OutlineModel final : public QAbstractItemModel {
  Q_OBJECT

 public:
  /// Data source and delegate are asked on behalf of `outlineView`. Without rows until the first reload.
  OutlineModel(platform::OutlineView& outlineView, platform::OutlineViewDataSource& dataSource,
               platform::OutlineViewDelegate& delegate, const Columns& columns);

  /// Asks for all groups anew. False when they are the same as before, and every index stays valid.
  bool reload();

  /// Null for an invalid index.
  platform::Object* itemAt(const QModelIndex& index) const;
  /// Of the group's first cell; invalid for any other item.
  QModelIndex indexOfGroup(const platform::Object* group) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  QModelIndex sibling(int row, int column, const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;

 private:
  struct Group {
    platform::Object* item;
    int entryCount;
    friend bool operator==(const Group&, const Group&) = default;
  };

  // Whichever cell of the row the index is of; 0 for an entry.
  int entryCount(const QModelIndex& index) const;

  platform::OutlineView& outlineView_;
  platform::OutlineViewDataSource& dataSource_;
  platform::OutlineViewDelegate& delegate_;
  const Columns& columns_;
  std::vector<Group> groups_;  // an entry's index has its group's row, counted from 1, as its identifier
};

}  // namespace pelmarix::qt
