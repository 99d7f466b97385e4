// The platform's table over a Qt widget.
#pragma once

#include <string>
#include <vector>

#include "platform/table_view.h"
#include "qt/cell_templates.h"
#include "qt/table_model.h"
#include "qt/table_widget.h"

namespace pelmarix::qt {

class TableAdapter final : public TableView {
 public:
  /// `widget` isn't owned and outlives the adapter.
  TableAdapter(TableWidget& widget, const std::vector<ColumnTemplate>& columns,
               const std::vector<std::string>& cellIdentifiers);
  ~TableAdapter() override;

  void setDataSource(TableViewDataSource* dataSource) { model_.setDataSource(dataSource); }
  void setDelegate(TableViewDelegate* delegate) { model_.setDelegate(delegate); }

  View* makeViewWithIdentifier(const std::string& identifier) override;
  void reloadData() override;
  /// Of several selected rows the one with the focus, else the first.
  std::ptrdiff_t selectedRow() const override;
  const std::vector<TableColumn*>& tableColumns() const override { return model_.tableColumns(); }

 private:
  TableWidget& widget_;
  CellTemplates cells_;
  TableModel model_;
};

}  // namespace pelmarix::qt
