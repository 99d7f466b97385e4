// The platform's table over a Qt widget.
#pragma once

#include <string>
#include <vector>

#include "platform/table_view.h"
#include "qt/widgets/cell_templates.h"
#include "qt/widgets/table_model.h"
#include "qt/widgets/table_widget.h"

namespace pelmarix::qt {

class TableAdapter final : public platform::TableView {
 public:
  /// `widget` isn't owned and outlives the adapter.
  TableAdapter(TableWidget& widget, const std::vector<ColumnTemplate>& columns,
               const std::vector<std::string>& cellIdentifiers);
  ~TableAdapter() override;

  void setDataSource(platform::TableViewDataSource* dataSource) { model_.setDataSource(dataSource); }
  void setDelegate(platform::TableViewDelegate* delegate) { model_.setDelegate(delegate); }

  platform::View* makeViewWithIdentifier(const std::string& identifier) override;
  void reloadData() override;
  /// Of several selected rows the one with the focus, else the first.
  std::ptrdiff_t selectedRow() const override;
  const std::vector<platform::TableColumn*>& tableColumns() const override { return model_.tableColumns(); }

 private:
  TableWidget& widget_;
  CellTemplates cells_;
  TableModel model_;
};

}  // namespace pelmarix::qt
