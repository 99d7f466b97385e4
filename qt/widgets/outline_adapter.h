// The platform's outline over a Qt widget.
#pragma once

#include <QPersistentModelIndex>
#include <functional>
#include <string>
#include <vector>

#include "platform/table_view.h"
#include "qt/widgets/columns.h"
#include "qt/widgets/outline_model.h"
#include "qt/widgets/outline_widget.h"

namespace pelmarix::qt {

class OutlineAdapter final : public platform::OutlineView {
 public:
  /// `widget`, `dataSource` and `delegate` aren't owned and outlive the adapter.
  OutlineAdapter(OutlineWidget& widget, const std::vector<ColumnDescription>& columns,
                 platform::OutlineViewDataSource& dataSource, platform::OutlineViewDelegate& delegate);

  /// Called for each double click, while itemAtClickedRow() tells where.
  void setDoubleAction(std::function<void()> action) { doubleAction_ = std::move(action); }

  /// Opens the last of the groups and brings it to the top of the view.
  void revealLastGroup();

  platform::View* makeViewWithIdentifier(const std::string& identifier) override;
  void reloadItemReloadChildren(platform::Object* item, bool reloadChildren) override;
  platform::Object* itemAtClickedRow() const override { return model_.itemAt(clicked_); }
  /// Of items, only groups expand.
  bool isItemExpanded(platform::Object* item) override;
  void expandItem(platform::Object* item) override;
  void collapseItem(platform::Object* item) override;
  /// Of several selected items the one with the focus, else one of them.
  platform::Object* selectedItem() const override;
  void selectChildOfItem(std::ptrdiff_t index, platform::Object* item) override;

 private:
  OutlineWidget& widget_;
  Columns columns_;
  OutlineModel model_;
  QPersistentModelIndex clicked_;
  std::function<void()> doubleAction_;
};

}  // namespace pelmarix::qt
