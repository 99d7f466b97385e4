// The rows of a table as Qt's views ask for them.
#pragma once

#include <QAbstractTableModel>

#include "platform/table_view.h"
#include "qt/widgets/columns.h"

namespace pelmarix::qt {

/// Asks the table's data source for the number of rows at each reload, and its delegate for every cell that a
/// view needs.
class TableModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// Data source and delegate are asked on behalf of `tableView`. Without rows until the first reload.
  TableModel(platform::TableView& tableView, platform::TableViewDataSource& dataSource,
             platform::TableViewDelegate& delegate, const Columns& columns);

  /// Rows are added or removed at the end, and every cell is asked anew.
  void reload();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;

 private:
  platform::TableView& tableView_;
  platform::TableViewDataSource& dataSource_;
  platform::TableViewDelegate& delegate_;
  const Columns& columns_;
  int rowCount_ = 0;
};

}  // namespace pelmarix::qt
