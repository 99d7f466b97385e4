#include "qt/widgets/columns.h"

namespace pelmarix::qt {

Columns::Columns(const std::vector<ColumnDescription>& descriptions) {
  for (const ColumnDescription& description : descriptions) {
    titles_.push_back(description.title);
    pointers_.push_back(&columns_.emplace_back(description.identifier));
    for (const std::string& identifier : description.cellIdentifiers) cells_.emplace_back(identifier);
  }
}

QVariant Columns::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= count()) return {};
  if (role == Qt::TextAlignmentRole) return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
  return role == Qt::DisplayRole ? titles_[static_cast<std::size_t>(section)] : QVariant();
}

platform::View* Columns::makeCell(const std::string& identifier) {
  for (Cell& cell : cells_) {
    if (cell.identifier != identifier) continue;
    cell.text.clear();
    return &cell.view;
  }
  return nullptr;
}

QVariant Columns::textOf(const platform::View* view) const {
  for (const Cell& cell : cells_)
    if (&cell.view == view) return cell.text;
  return {};
}

}  // namespace pelmarix::qt
