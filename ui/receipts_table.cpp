// The table of receipts, and the way from one of them to its bill of materials.
#include "base/date.h"
#include "base/fatal.h"
#include "ui/bom_over_view_controller.h"
#include "ui/view_controller.h"

namespace pelmarix::ui {
namespace {

platform::View* cell(platform::TableView& tableView, const char* identifier, const std::string& text) {
  auto* view = dynamic_cast<platform::TableCellView*>(tableView.makeViewWithIdentifier(identifier));
  if (view == nullptr) return nullptr;
  if (platform::TextField* textField = view->textField()) textField->setStringValue(text);
  return view;
}

}  // namespace

std::ptrdiff_t ViewController::numberOfRowsInTableView(platform::TableView& /*tableView*/) {
  return std::ssize(boms.children);
}

platform::Object* ViewController::tableViewObjectValueForTableColumnRow(
    platform::TableView& /*tableView*/, const platform::TableColumn* /*column*/, std::ptrdiff_t row) {
  if (row < 0 || row >= std::ssize(boms.children)) return nullptr;
  return boms.children[static_cast<std::size_t>(row)].get();
}

platform::View* ViewController::tableViewViewForTableColumnRow(platform::TableView& tableView,
                                                               const platform::TableColumn* column,
                                                               std::ptrdiff_t row) {
  if (row < 0 || row >= std::ssize(boms.children) || column == nullptr) return nullptr;
  const BoMItem& item = *boms.children[static_cast<std::size_t>(row)];
  // The columns are known by their places, whatever they are called.
  const std::vector<platform::TableColumn*>& columns = tableView.tableColumns();
  if (!columns.empty() && column == columns[0])
    return cell(tableView, "DateCell", description(item.installDate));
  if (columns.size() > 1 && column == columns[1]) return cell(tableView, "NameCell", item.name);
  return nullptr;
}

void ViewController::prepareForSegue(platform::Segue& segue, platform::Object* /*sender*/) {
  const std::ptrdiff_t row = required(BoMTable, "BoMTable is not connected").selectedRow();
  if (row < 0 || boms.children.empty()) return;
  if (row >= std::ssize(boms.children)) fatalStop("no such receipt");
  platform::SharedText listing = platform::shareText(boms.children[static_cast<std::size_t>(row)]->listBoM());
  auto* sheet = dynamic_cast<BoMoverViewController*>(&segue.destinationController());
  required(sheet, "the segue leads to another controller").setRepresentedObject(std::move(listing));
}

}  // namespace pelmarix::ui
