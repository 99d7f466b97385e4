// The outline of the install history.
#include <string_view>

#include "base/date.h"
#include "base/fatal.h"
#include "ui/view_controller.h"

namespace pelmarix::ui {
namespace {

/// A cell of the outline with its text, sized to it.
platform::View* cell(platform::OutlineView& outlineView, const char* identifier, const std::string& text) {
  auto* view = dynamic_cast<platform::TableCellView*>(outlineView.makeViewWithIdentifier(identifier));
  if (view == nullptr) return nullptr;
  if (platform::TextField* textField = view->textField()) {
    textField->setStringValue(text);
    textField->sizeToFit();
  }
  return view;
}

platform::View* groupCell(platform::OutlineView& outlineView, std::string_view column, const History& group) {
  if (column == "NameColumn") return cell(outlineView, "NameCell", group.name);
  if (column == "DateColumn") return cell(outlineView, "DateCell", "");
  if (column == "VersionColumn") return cell(outlineView, "VersionCell", "");
  return nullptr;
}

platform::View* itemCell(platform::OutlineView& outlineView, std::string_view column,
                         const HistoryItem& item) {
  if (column == "DateColumn") return cell(outlineView, "DateCell", description(item.installDate));
  if (column == "VersionColumn") return cell(outlineView, "VersionCell", item.version);
  // A tab sets configuration data apart inside the column of names.
  if (item.type >= history_type::configurationData)
    return cell(outlineView, "NameItemCell", "\t" + item.name);
  return cell(outlineView, "NameItemCell", item.name);
}

template <typename List>
platform::Object* elementAt(const List& list, std::ptrdiff_t index) {
  if (index < 0 || static_cast<std::size_t>(index) >= list.size()) fatalStop("no such row");
  return list[static_cast<std::size_t>(index)].get();
}

}  // namespace

std::ptrdiff_t ViewController::outlineViewNumberOfChildrenOfItem(platform::OutlineView& /*outlineView*/,
                                                                 platform::Object* item) {
  if (const auto* group = dynamic_cast<const History*>(item)) return std::ssize(group->children);
  return std::ssize(histories);
}

platform::Object* ViewController::outlineViewChildOfItem(platform::OutlineView& /*outlineView*/,
                                                         std::ptrdiff_t index, platform::Object* item) {
  if (const auto* group = dynamic_cast<const History*>(item)) return elementAt(group->children, index);
  return elementAt(histories, index);
}

bool ViewController::outlineViewIsItemExpandable(platform::OutlineView& /*outlineView*/,
                                                 platform::Object* item) {
  const auto* group = dynamic_cast<const History*>(item);
  return group != nullptr && !group->children.empty();
}

platform::View* ViewController::outlineViewViewForTableColumnItem(platform::OutlineView& outlineView,
                                                                  const platform::TableColumn* column,
                                                                  platform::Object* item) {
  const std::string_view identifier = column != nullptr ? column->identifier() : std::string_view();
  if (const auto* entry = dynamic_cast<const HistoryItem*>(item))
    return itemCell(outlineView, identifier, *entry);
  if (const auto* group = dynamic_cast<const History*>(item))
    return groupCell(outlineView, identifier, *group);
  return nullptr;
}

void ViewController::doubleClickedItem(platform::Object* sender) {
  auto& outlineView = required(dynamic_cast<platform::OutlineView*>(sender), "the sender is not the outline");
  if (auto* group = dynamic_cast<History*>(outlineView.itemAtRow(outlineView.clickedRow()))) {
    if (outlineView.isItemExpanded(group))
      outlineView.collapseItem(group);
    else
      outlineView.expandItem(group);
  }
  reloadOutline();
}

void ViewController::reloadOutline() {
  required(bsvOutlineView, "bsvOutlineView is not connected").reloadItemReloadChildren(nullptr, true);
}

}  // namespace pelmarix::ui
