#include "qt/widgets/row_text.h"

#include <QMimeData>
#include <algorithm>
#include <utility>
#include <vector>

namespace pelmarix::qt {
namespace {

// Whether a spreadsheet may begin another cell or row behind it.
bool endsCell(QChar character) {
  constexpr char16_t nextLine = 0x85;
  const char16_t code = character.unicode();
  return (code >= u'\t' && code <= u'\r') || code == nextLine || code == QChar::LineSeparator ||
         code == QChar::ParagraphSeparator;
}

QString inOneCell(QString text) {
  std::replace_if(text.begin(), text.end(), endsCell, QLatin1Char(' '));
  return text;
}

// The first cell of each row that an index belongs to, in the order in which a view shows them.
std::vector<QModelIndex> rowsInOrder(const QModelIndexList& indexes) {
  // The row in the first level and the one below it; -1 for the former itself, which stands before those
  // below.
  std::vector<std::pair<int, int>> places;
  places.reserve(static_cast<std::size_t>(indexes.size()));
  for (const QModelIndex& index : indexes) {
    const QModelIndex group = index.parent();
    places.push_back(group.isValid() ? std::pair(group.row(), index.row()) : std::pair(index.row(), -1));
  }
  std::sort(places.begin(), places.end());
  places.erase(std::unique(places.begin(), places.end()), places.end());

  std::vector<QModelIndex> rows;
  rows.reserve(places.size());
  for (const auto& [groupRow, entryRow] : places) {
    const QModelIndex group = indexes.first().model()->index(groupRow, 0);
    rows.push_back(entryRow < 0 ? group : group.model()->index(entryRow, 0, group));
  }
  return rows;
}

}  // namespace

QMimeData* rowsAsMimeData(const QModelIndexList& indexes) {
  if (indexes.isEmpty()) return nullptr;
  const int columns = indexes.first().model()->columnCount();
  QString text;
  for (const QModelIndex& row : rowsInOrder(indexes)) {
    for (int column = 0; column < columns; ++column) {
      if (column > 0) text += QLatin1Char('\t');
      text += inOneCell(row.siblingAtColumn(column).data().toString());
    }
    text += QLatin1Char('\n');
  }
  auto* data = new QMimeData;
  data->setText(text);
  return data;
}

QString cellsAsText(const QModelIndexList& indexes, int column) {
  QString text;
  for (const QModelIndex& row : rowsInOrder(indexes)) {
    if (!text.isEmpty()) text += QLatin1Char('\n');
    text += inOneCell(row.siblingAtColumn(column).data().toString()).trimmed();
  }
  return text;
}

}  // namespace pelmarix::qt
