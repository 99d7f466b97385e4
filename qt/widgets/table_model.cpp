#include "qt/widgets/table_model.h"

#include <algorithm>

#include "qt/widgets/row_text.h"

namespace pelmarix::qt {

TableModel::TableModel(platform::TableView& tableView, platform::TableViewDataSource& dataSource,
                       platform::TableViewDelegate& delegate, const Columns& columns)
    : tableView_(tableView), dataSource_(dataSource), delegate_(delegate), columns_(columns) {}

void TableModel::reload() {
  const int before = rowCount_;
  const int now = static_cast<int>(dataSource_.numberOfRowsInTableView(tableView_));
  if (now > before) {
    beginInsertRows({}, before, now - 1);
    rowCount_ = now;
    endInsertRows();
  } else if (now < before) {
    beginRemoveRows({}, now, before - 1);
    rowCount_ = now;
    endRemoveRows();
  }
  const int kept = std::min(before, now);
  if (kept > 0) emit dataChanged(index(0, 0), index(kept - 1, columns_.count() - 1));
}

int TableModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rowCount_; }

int TableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_.count();
}

QVariant TableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role == Qt::DisplayRole)
    return columns_.textOf(
        delegate_.tableViewViewForTableColumnRow(tableView_, columns_.at(index.column()), index.row()));
  if (role == Qt::AccessibleDescriptionRole && index.column() == 0) {
    QStringList otherCells;
    for (int column = 1; column < columns_.count(); ++column)
      otherCells += index.siblingAtColumn(column).data().toString();
    return otherCells.join(QStringLiteral(", "));
  }
  return {};
}

QVariant TableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  return columns_.headerData(section, orientation, role);
}

Qt::ItemFlags TableModel::flags(const QModelIndex& index) const {
  return index.isValid() ? QAbstractTableModel::flags(index) | Qt::ItemIsDragEnabled : Qt::NoItemFlags;
}

QMimeData* TableModel::mimeData(const QModelIndexList& indexes) const { return rowsAsMimeData(indexes); }

}  // namespace pelmarix::qt
