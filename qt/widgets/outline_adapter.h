// The platform's outline over a Qt widget.
#pragma once

#include <QPersistentModelIndex>
#include <functional>
#include <vector>

#include "platform/table_view.h"
#include "qt/widgets/cell_templates.h"
#include "qt/widgets/outline_model.h"
#include "qt/widgets/outline_widget.h"

namespace pelmarix::qt {

class OutlineAdapter final : public platform::OutlineView {
 public:
  /// `widget` isn't owned and outlives the adapter.
  OutlineAdapter(OutlineWidget& widget, const std::vector<ColumnTemplate>& columns,
                 const std::vector<std::string>& cellIdentifiers);
  ~OutlineAdapter() override;

  void setDataSource(platform::OutlineViewDataSource* dataSource);
  void setDelegate(platform::OutlineViewDelegate* delegate);
  /// Called for each double click, while clickedRow() tells where.
  void setDoubleAction(std::function<void()> action) { doubleAction_ = std::move(action); }

  /// Opens the last of the outermost items and brings it to the top of the view.
  void revealLastGroup();

  platform::View* makeViewWithIdentifier(const std::string& identifier) override;
  /// Always reloads the whole outline, the one reload that the program asks for. What was expanded, selected
  /// and at the top of the view is so afterwards, as far as it is still there.
  void reloadItemReloadChildren(platform::Object* item, bool reloadChildren) override;
  std::ptrdiff_t clickedRow() const override;
  platform::Object* itemAtRow(std::ptrdiff_t row) override;
  bool isItemExpanded(platform::Object* item) override;
  void expandItem(platform::Object* item) override;
  void collapseItem(platform::Object* item) override;

 private:
  /// The rows that `parent` shows below itself, those of its expanded children included.
  std::ptrdiff_t shownRowsBelow(const QModelIndex& parent) const;
  void resetKeepingPlace();
  /// The names of groups, which have no date and no version, take the whole row.
  void spanGroups();

  OutlineWidget& widget_;
  CellTemplates cells_;
  OutlineModel model_;
  QPersistentModelIndex clicked_;
  std::function<void()> doubleAction_;
};

}  // namespace pelmarix::qt
