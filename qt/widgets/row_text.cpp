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

}  // namespace

QMimeData* rowsAsMimeData(const QModelIndexList& indexes) {
  if (indexes.isEmpty()) return nullptr;
  const QAbstractItemModel& model = *indexes.first().model();
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

  const int columns = model.columnCount();
  QString text;
  for (const auto& [groupRow, entryRow] : places) {
    const bool isEntry = entryRow >= 0;
    const QModelIndex parent = isEntry ? model.index(groupRow, 0) : QModelIndex();
    for (int column = 0; column < columns; ++column) {
      if (column > 0) text += QLatin1Char('\t');
      text += inOneCell(model.index(isEntry ? entryRow : groupRow, column, parent).data().toString());
    }
    text += QLatin1Char('\n');
  }
  auto* data = new QMimeData;
  data->setText(text);
  return data;
}

}  // namespace pelmarix::qt
