#include "qt/widgets/row_text.h"

#include <QMimeData>
#include <algorithm>
#include <map>
#include <vector>

namespace pelmarix::qt {

QMimeData* rowsAsMimeData(const QModelIndexList& indexes) {
  if (indexes.isEmpty()) return nullptr;
  // By the row's number in each level, the outermost first: so a row stands before those below it.
  std::map<std::vector<int>, QModelIndex> rows;
  for (const QModelIndex& index : indexes) {
    std::vector<int> path;
    for (QModelIndex level = index; level.isValid(); level = level.parent()) path.push_back(level.row());
    std::reverse(path.begin(), path.end());
    rows.try_emplace(std::move(path), index);
  }
  QString text;
  const int columns = indexes.first().model()->columnCount();
  for (const auto& [path, row] : rows) {
    for (int column = 0; column < columns; ++column) {
      if (column > 0) text += QLatin1Char('\t');
      text += row.siblingAtColumn(column).data().toString();
    }
    text += QLatin1Char('\n');
  }
  auto* data = new QMimeData;
  data->setText(text);
  return data;
}

}  // namespace pelmarix::qt
