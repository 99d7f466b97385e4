#include "qt/widgets/cell_templates.h"

namespace pelmarix::qt {

CellTemplates::CellTemplates(const std::vector<std::string>& identifiers) {
  for (const std::string& identifier : identifiers) cells_.emplace_back(identifier);
}

platform::View* CellTemplates::makeView(const std::string& identifier) {
  for (Cell& cell : cells_) {
    if (cell.identifier != identifier) continue;
    cell.field.text.clear();
    return &cell.view;
  }
  return nullptr;
}

QVariant CellTemplates::textOf(const platform::View* view) const {
  for (const Cell& cell : cells_)
    if (&cell.view == view) return cell.field.text;
  return {};
}

Columns::Columns(const std::vector<ColumnTemplate>& templates) {
  for (const ColumnTemplate& column : templates) {
    titles_.push_back(column.title);
    pointers_.push_back(
        columns_.emplace_back(std::make_unique<platform::TableColumn>(column.identifier)).get());
  }
}

QVariant Columns::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= count()) return {};
  if (role == Qt::TextAlignmentRole) return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
  return role == Qt::DisplayRole ? titles_[static_cast<std::size_t>(section)] : QVariant();
}

}  // namespace pelmarix::qt
