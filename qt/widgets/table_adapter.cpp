#include "qt/widgets/table_adapter.h"

#include <QItemSelectionModel>
#include <algorithm>

namespace pelmarix::qt {

TableAdapter::TableAdapter(TableWidget& widget, const std::vector<ColumnDescription>& columns,
                           platform::TableViewDataSource& dataSource, platform::TableViewDelegate& delegate)
    : widget_(widget), columns_(columns), model_(*this, dataSource, delegate, columns_) {
  widget_.setModel(&model_);
  widget_.setColumns(columns);
}

platform::View* TableAdapter::makeViewWithIdentifier(const std::string& identifier) {
  return columns_.makeCell(identifier);
}

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

void TableAdapter::selectRow(std::ptrdiff_t row) {
  widget_.selectAlone(model_.index(static_cast<int>(row), 0));
}

}  // namespace pelmarix::qt
