// The platform's table over a Qt widget.
#pragma once

#include <string>
#include <vector>

#include "platform/table_view.h"
#include "qt/widgets/columns.h"
#include "qt/widgets/table_model.h"
#include "qt/widgets/table_widget.h"

namespace pelmarix::qt {

class TableAdapter final : public platform::TableView {
 public:
  /// `widget`, `dataSource` and `delegate` aren't owned and outlive the adapter.
  TableAdapter(TableWidget& widget, const std::vector<ColumnDescription>& columns,
               platform::TableViewDataSource& dataSource, platform::TableViewDelegate& delegate);

  platform::View* makeViewWithIdentifier(const std::string& identifier) override;
  void reloadData() override { model_.reload(); }
  /// Of several selected rows the one with the focus, else the first.
  std::ptrdiff_t selectedRow() const override;
  void selectRow(std::ptrdiff_t row) override;
  const std::vector<platform::TableColumn*>& tableColumns() const override { return columns_.all(); }

 private:
  TableWidget& widget_;
  Columns columns_;
  TableModel model_;
};

}  // namespace pelmarix::qt
