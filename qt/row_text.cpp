#include "qt/row_text.h"

#include <QHash>
#include <QMimeData>
#include <map>

namespace pelmarix::qt {
namespace {

/// Rows in the order in which a view shows them: an item stands before those below it.
class RowsInOrder {
 public:
  void add(const QModelIndex& row) {
    const QModelIndex parent = row.parent();
    if (!below_.contains(parent) && parent.isValid()) leadTo(parent);
    below_[parent][row.row()] = true;
  }

  template <typename Visit>
  void forEachBelow(const QModelIndex& parent, const QAbstractItemModel& model, Visit visit) const {
    const auto found = below_.find(parent);
    if (found == below_.end()) return;
    for (const auto& [row, isOneOfThem] : *found) {
      const QModelIndex index = model.index(row, 0, parent);
      if (isOneOfThem) visit(index);
      forEachBelow(index, model, visit);
    }
  }

 private:
  void leadTo(const QModelIndex& row) {
    below_[row.parent()].try_emplace(row.row(), false);
    if (row.parent().isValid()) leadTo(row.parent());
  }

  /// By their parents, each with whether it is one of the rows itself or only leads to some.
  QHash<QModelIndex, std::map<int, bool>> below_;
};

void appendRow(QString& text, const QModelIndex& row, int columns) {
  for (int column = 0; column < columns; ++column) {
    if (column > 0) text += QLatin1Char('\t');
    text += row.siblingAtColumn(column).data(Qt::DisplayRole).toString();
  }
  text += QLatin1Char('\n');
}

}  // namespace

QString rowsAsText(const QModelIndexList& indexes) {
  QString text;
  if (indexes.isEmpty()) return text;
  const QAbstractItemModel& model = *indexes.first().model();
  const int columns = model.columnCount();
  RowsInOrder rows;
  for (const QModelIndex& index : indexes) rows.add(index.siblingAtColumn(0));
  rows.forEachBelow({}, model, [&](const QModelIndex& row) { appendRow(text, row, columns); });
  return text;
}

QMimeData* rowsAsMimeData(const QModelIndexList& indexes) {
  auto* data = new QMimeData;
  data->setText(rowsAsText(indexes));
  return data;
}

}  // namespace pelmarix::qt
