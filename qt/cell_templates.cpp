#include "qt/cell_templates.h"

#include "qt/text_conversion.h"

namespace pelmarix::qt {

CellTemplates::CellTemplates(const std::vector<std::string>& identifiers) {
  for (const std::string& identifier : identifiers) cells_.try_emplace(identifier);
}

View* CellTemplates::makeView(const std::string& identifier) {
  const auto found = cells_.find(identifier);
  if (found == cells_.end()) return nullptr;
  found->second.field.setStringValue({});
  return &found->second.view;
}

QVariant CellTemplates::textOf(View* view) {
  const auto* cell = dynamic_cast<TableCellView*>(view);
  if (cell == nullptr) return {};
  const auto* field = dynamic_cast<Field*>(cell->textField());
  return field == nullptr ? QVariant() : QVariant(toQString(field->stringValue()));
}

Columns::Columns(const std::vector<ColumnTemplate>& templates) {
  for (const ColumnTemplate& column : templates) {
    titles_.push_back(column.title);
    pointers_.push_back(columns_.emplace_back(std::make_unique<TableColumn>(column.identifier)).get());
  }
}

QVariant Columns::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= count()) return {};
  if (role == Qt::TextAlignmentRole) return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
  return role == Qt::DisplayRole ? titles_[static_cast<std::size_t>(section)] : QVariant();
}

}  // namespace pelmarix::qt
