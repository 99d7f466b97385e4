// Tables and outlines: views that ask a data source for their rows and a delegate for the cells of them.
//
// Cells are made from the templates that the interface file gives the view. A made cell belongs to the view
// and is valid until the view makes another of the same identifier.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "platform/controls.h"
#include "platform/object.h"

namespace pelmarix::platform {

class TextField {
 public:
  virtual ~TextField() = default;
  virtual void setStringValue(const std::string& text) = 0;
  virtual void sizeToFit() = 0;
};

/// A cell with at most one text field.
class TableCellView : public View {
 public:
  explicit TableCellView(TextField* textFieldOfCell) : textField_(textFieldOfCell) {}
  /// Null when the template has none.
  TextField* textField() const { return textField_; }

 private:
  TextField* textField_;
};

class TableColumn : public Object {
 public:
  explicit TableColumn(std::string identifierOfColumn) : identifier_(std::move(identifierOfColumn)) {}
  const std::string& identifier() const { return identifier_; }

 private:
  std::string identifier_;
};

/// What tables and outlines have in common.
class CellMaker {
 public:
  virtual ~CellMaker() = default;
  /// Null when no template has the identifier.
  virtual View* makeViewWithIdentifier(const std::string& identifier) = 0;
};

class TableView : public Object, public CellMaker {
 public:
  /// Asks the data source anew for everything. The selected row stays selected as a row number, where it
  /// still exists.
  virtual void reloadData() = 0;
  /// -1 when no row is selected.
  virtual std::ptrdiff_t selectedRow() const = 0;
  /// Selects that row alone and brings it into view; nothing where there is no such row.
  virtual void selectRow(std::ptrdiff_t row) = 0;
  /// In the interface file's order; the view owns them.
  virtual const std::vector<TableColumn*>& tableColumns() const = 0;
};

class TableViewDataSource {
 public:
  virtual ~TableViewDataSource() = default;
  virtual std::ptrdiff_t numberOfRowsInTableView(TableView& tableView) = 0;
  /// Null when there is nothing.
  virtual Object* tableViewObjectValueForTableColumnRow(TableView& tableView, const TableColumn* column,
                                                        std::ptrdiff_t row) = 0;
};

class TableViewDelegate {
 public:
  virtual ~TableViewDelegate() = default;
  /// Null when there is no view.
  virtual View* tableViewViewForTableColumnRow(TableView& tableView, const TableColumn* column,
                                               std::ptrdiff_t row) = 0;
};

/// Items are the data source's objects themselves, compared by identity and alive as long as the view shows
/// them; a null item is the root.
class OutlineView : public Object, public CellMaker {
 public:
  /// With a null item, the only one that it is called with, everything is asked anew. As long as the
  /// expandable items and the number of children of each are the same, what is expanded and what is selected
  /// stays so; otherwise nothing is.
  virtual void reloadItemReloadChildren(Object* item, bool reloadChildren) = 0;
  /// The item of the row that was clicked last, null when the click hit none. Valid while the click's action
  /// runs.
  virtual Object* itemAtClickedRow() const = 0;
  virtual bool isItemExpanded(Object* item) = 0;
  virtual void expandItem(Object* item) = 0;
  virtual void collapseItem(Object* item) = 0;
  /// Null when none is selected.
  virtual Object* selectedItem() const = 0;
  /// Expands the item, selects its child alone and brings it into view; nothing where there is no such child.
  virtual void selectChildOfItem(std::ptrdiff_t index, Object* item) = 0;
};

class OutlineViewDataSource {
 public:
  virtual ~OutlineViewDataSource() = default;
  virtual std::ptrdiff_t outlineViewNumberOfChildrenOfItem(OutlineView& outlineView, Object* item) = 0;
  /// Never null; an index out of range stops the program.
  virtual Object* outlineViewChildOfItem(OutlineView& outlineView, std::ptrdiff_t index, Object* item) = 0;
  virtual bool outlineViewIsItemExpandable(OutlineView& outlineView, Object* item) = 0;
};

class OutlineViewDelegate {
 public:
  virtual ~OutlineViewDelegate() = default;
  /// Null when there is no view.
  virtual View* outlineViewViewForTableColumnItem(OutlineView& outlineView, const TableColumn* column,
                                                  Object* item) = 0;
  /// What the item is, in words; empty when there is nothing to say.
  virtual std::string outlineViewToolTipForItem(OutlineView& outlineView, Object* item) = 0;
  /// What a screen reader says behind the name of the item's row: the rest of it.
  virtual std::string outlineViewAccessibilityDescriptionForItem(OutlineView& outlineView, Object* item) = 0;
};

}  // namespace pelmarix::platform
