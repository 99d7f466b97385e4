#include "qt/row_text.h"

#include <QMimeData>
#include <QStringList>
#include <algorithm>
#include <utility>
#include <vector>

namespace pelmarix::qt {
namespace {

/// The row numbers from the root down to the row: rows compare as a view shows them.
using Place = std::vector<int>;

Place placeOf(QModelIndex index) {
  Place place;
  for (; index.isValid(); index = index.parent()) place.push_back(index.row());
  std::reverse(place.begin(), place.end());
  return place;
}

QString rowAsText(const QModelIndex& firstCell) {
  QStringList texts;
  const int columns = firstCell.model()->columnCount(firstCell.parent());
  for (int column = 0; column < columns; ++column)
    texts += firstCell.siblingAtColumn(column).data(Qt::DisplayRole).toString();
  return texts.join(QLatin1Char('\t'));
}

}  // namespace

QString rowsAsText(const QModelIndexList& indexes) {
  std::vector<std::pair<Place, QModelIndex>> rows;
  rows.reserve(static_cast<std::size_t>(indexes.size()));
  for (const QModelIndex& index : indexes) rows.emplace_back(placeOf(index), index.siblingAtColumn(0));
  const auto isBefore = [](const auto& row, const auto& other) { return row.first < other.first; };
  const auto isSame = [](const auto& row, const auto& other) { return row.first == other.first; };
  std::sort(rows.begin(), rows.end(), isBefore);
  rows.erase(std::unique(rows.begin(), rows.end(), isSame), rows.end());

  QString text;
  for (const auto& [place, firstCell] : rows) text += rowAsText(firstCell) + QLatin1Char('\n');
  return text;
}

QMimeData* rowsAsMimeData(const QModelIndexList& indexes) {
  auto* data = new QMimeData;
  data->setText(rowsAsText(indexes));
  return data;
}

}  // namespace pelmarix::qt
