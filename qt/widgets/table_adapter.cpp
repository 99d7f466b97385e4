#include "qt/widgets/table_adapter.h"

#include <QItemSelectionModel>
#include <algorithm>

namespace pelmarix::qt {

TableAdapter::TableAdapter(TableWidget& widget, const std::vector<ColumnTemplate>& columns,
                           const std::vector<std::string>& cellIdentifiers)
    : widget_(widget), cells_(cellIdentifiers), model_(*this, cells_, columns) {
  widget_.setModel(&model_);
}

TableAdapter::~TableAdapter() { widget_.setModel(nullptr); }

platform::View* TableAdapter::makeViewWithIdentifier(const std::string& identifier) {
  return cells_.makeView(identifier);
}

void TableAdapter::reloadData() { model_.reload(); }

std::ptrdiff_t TableAdapter::selectedRow() const {
  const QItemSelectionModel& selection = *widget_.selectionModel();
  const int current = selection.currentIndex().row();
  if (selection.isRowSelected(current)) return current;
  const QItemSelection ranges = selection.selection();
  const auto first = std::min_element(ranges.begin(), ranges.end(), [](const auto& range, const auto& other) {
    return range.top() < other.top();
  });
  return first == ranges.end() ? -1 : first->top();
}

}  // namespace pelmarix::qt
