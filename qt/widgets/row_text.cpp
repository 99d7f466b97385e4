#include "qt/widgets/row_text.h"

#include <QHash>
#include <QMimeData>
#include <algorithm>
#include <utility>
#include <vector>

namespace pelmarix::qt {
namespace {

/// Rows in the order in which a view shows them: an item stands before those below it.
class RowsInOrder {
 public:
  void add(const QModelIndex& row) { add(row, Row::oneOfThem); }

  template <typename Visit>
  void forEachBelow(const QModelIndex& parent, const QAbstractItemModel& model, Visit visit) {
    const auto found = below_.find(parent);
    if (found == below_.end()) return;
    std::vector<std::pair<int, Row>>& rows = *found;
    std::sort(rows.begin(), rows.end());
    int last = -1;
    for (const auto& [row, kind] : rows) {
      if (row == last) continue;
      last = row;
      const QModelIndex index = model.index(row, 0, parent);
      if (kind == Row::oneOfThem) visit(index);
      if (model.hasChildren(index)) forEachBelow(index, model, visit);
    }
  }

 private:
  /// A row that was added itself stands before the same one that only leads to some below it.
  enum class Row { oneOfThem, leadsToSome };

  void add(const QModelIndex& row, Row kind) {
    const QModelIndex parent = row.parent();
    std::vector<std::pair<int, Row>>& siblings = below_[parent];
    siblings.emplace_back(row.row(), kind);
    if (siblings.size() == 1 && parent.isValid()) add(parent, Row::leadsToSome);
  }

  QHash<QModelIndex, std::vector<std::pair<int, Row>>> below_;  // by their parents
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
