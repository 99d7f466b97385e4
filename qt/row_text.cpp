#include "qt/row_text.h"

#include <QMimeData>
#include <algorithm>
#include <utility>

namespace pelmarix::qt {
namespace {

int depthOf(QModelIndex index) {
  int depth = 0;
  for (; index.isValid(); index = index.parent()) ++depth;
  return depth;
}

/// True when a view shows row `first` before `other`; an item stands before those below it.
bool isBefore(QModelIndex first, QModelIndex other) {
  if (first.parent() == other.parent()) return first.row() < other.row();
  const int firstDepth = depthOf(first);
  const int otherDepth = depthOf(other);
  for (int depth = firstDepth; depth > otherDepth; --depth) first = first.parent();
  for (int depth = otherDepth; depth > firstDepth; --depth) other = other.parent();
  if (first == other) return firstDepth < otherDepth;
  while (first.parent() != other.parent()) {
    first = first.parent();
    other = other.parent();
  }
  return first.row() < other.row();
}

}  // namespace

QString rowsAsText(const QModelIndexList& indexes) {
  QModelIndexList rows;
  rows.reserve(indexes.size());
  for (const QModelIndex& index : indexes) rows += index.siblingAtColumn(0);
  std::sort(rows.begin(), rows.end(), isBefore);
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());

  QString text;
  for (const QModelIndex& row : std::as_const(rows)) {
    const int columns = row.model()->columnCount(row.parent());
    for (int column = 0; column < columns; ++column) {
      if (column > 0) text += QLatin1Char('\t');
      text += row.siblingAtColumn(column).data(Qt::DisplayRole).toString();
    }
    text += QLatin1Char('\n');
  }
  return text;
}

QMimeData* rowsAsMimeData(const QModelIndexList& indexes) {
  auto* data = new QMimeData;
  data->setText(rowsAsText(indexes));
  return data;
}

}  // namespace pelmarix::qt
