// The rows of a table as Qt's views ask for them.
#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "platform/table_view.h"
#include "qt/cell_templates.h"

namespace pelmarix::qt {

/// Asks the table's data source for the number of rows at each reload, and its delegate for every cell that a
/// view needs.
class TableModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// Data source and delegate are asked on behalf of `tableView`, whose cells are `cells`.
  TableModel(TableView& tableView, const CellTemplates& cells, const std::vector<ColumnTemplate>& columns);

  /// Neither is owned; null for none.
  void setDataSource(TableViewDataSource* dataSource);
  void setDelegate(TableViewDelegate* delegate);
  /// Rows are added or removed at the end, and every cell is asked anew.
  void reload();

  const std::vector<TableColumn*>& tableColumns() const { return columns_.all(); }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;
  QStringList mimeTypes() const override;

 private:
  TableView& tableView_;
  const CellTemplates& cells_;
  TableViewDataSource* dataSource_ = nullptr;
  TableViewDelegate* delegate_ = nullptr;
  Columns columns_;
  int rowCount_ = 0;
};

}  // namespace pelmarix::qt
