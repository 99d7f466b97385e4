#include "ui/view_controller.h"

#include <algorithm>
#include <new>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/date.h"
#include "base/fatal.h"
#include "history/loader.h"
#include "platform/alert.h"
#include "platform/application.h"
#include "platform/process_info.h"
#include "platform/save_panel.h"
#include "platform/services.h"
#include "platform/user_defaults.h"
#include "ui/bom_over_view_controller.h"

namespace pelmarix::ui {
namespace {

using platform::Object;
using platform::OutlineView;
using platform::TableColumn;
using platform::TableView;
using platform::View;

// Every report that is shown, and hence every file that is saved, starts with it.
constexpr std::string_view reportLead = "\n\n";

constexpr const char* fontSizeKey = "fontSize";
// In points. The user's steps stay within the bounds; a stored size above them holds until the next step.
constexpr double defaultFontSize = 12.0;
constexpr double minimumFontSize = 4.0;
constexpr double maximumFontSize = 24.0;
constexpr double fontSizeStep = 1.0;

// An outlet that the interface file left out stops the program.
template <typename Outlet>
Outlet& connected(Outlet* outlet) {
  return required(outlet, "an outlet is not connected");
}

// Null where there is no such element.
template <typename Element>
Element* elementAt(const std::vector<std::shared_ptr<Element>>& list, std::ptrdiff_t index) {
  if (index < 0 || index >= std::ssize(list)) return nullptr;
  return list[static_cast<std::size_t>(index)].get();
}

// Null where the view has no such cell.
platform::TableCellView* cellWithText(platform::CellMaker& view, const char* identifier,
                                      const std::string& text) {
  auto* cell = dynamic_cast<platform::TableCellView*>(view.makeViewWithIdentifier(identifier));
  if (cell != nullptr && cell->textField() != nullptr) cell->textField()->setStringValue(text);
  return cell;
}

View* outlineCell(OutlineView& outlineView, const char* identifier, const std::string& text) {
  auto* cell = cellWithText(outlineView, identifier, text);
  if (cell != nullptr && cell->textField() != nullptr) cell->textField()->sizeToFit();
  return cell;
}

View* groupCell(OutlineView& outlineView, std::string_view column, const History& group) {
  if (column == "NameColumn") return outlineCell(outlineView, "NameCell", group.name);
  if (column == "DateColumn") return outlineCell(outlineView, "DateCell", "");
  if (column == "VersionColumn") return outlineCell(outlineView, "VersionCell", "");
  return nullptr;
}

View* itemCell(OutlineView& outlineView, std::string_view column, const HistoryItem& item) {
  if (column == "DateColumn") return outlineCell(outlineView, "DateCell", description(item.installDate));
  if (column == "VersionColumn") return outlineCell(outlineView, "VersionCell", item.version);
  // A tab sets configuration data apart inside the column of names.
  if (item.type >= history_type::configurationData)
    return outlineCell(outlineView, "NameItemCell", "\t" + item.name);
  return outlineCell(outlineView, "NameItemCell", item.name);
}

}  // namespace

// Start and end.

void ViewController::viewDidLoad() {
  platform::ViewController::viewDidLoad();
  const double stored = platform::UserDefaults::standardUserDefaults().doubleForKey(fontSizeKey);
  theFontSize = stored < minimumFontSize ? defaultFontSize : stored;
  connected(skipCheckbox).setState(platform::stateOn);
  connected(newestLastCheckbox).setState(platform::stateOff);
  histories = readInstallHistory();
  rebuildLines();
  showReport();
  boms.readBoMPLists();
  connected(BoMTable).reloadData();
}

void ViewController::viewDidAppear() {
  if (window() != nullptr) window()->setDelegate(this);
  const std::string version = platform::ProcessInfo::processInfo().operatingSystemVersionString();
  if (window() != nullptr) window()->setTitle("Pelmarix \u2013 currently running macOS " + version);
  reloadOutline();
}

bool ViewController::windowShouldClose(platform::Window& sender) {
  platform::Application::sharedApplication().terminate(&sender);
  return true;
}

// The report.

void ViewController::rebuildLines() {
  const bool skip = connected(skipCheckbox).state() == platform::stateOn;
  lines.clear();
  for (const auto& group : histories)
    for (std::string& line : group->reportLines(skip)) lines.push_back(std::move(line));
}

void ViewController::showReport() {
  const auto& newestLast = connected(newestLastCheckbox);
  std::string reportText;
  const auto append = [&reportText](const std::string& line) { reportText += line; };
  if (newestLast.state() == platform::stateOff)
    std::for_each(lines.rbegin(), lines.rend(), append);
  else
    std::for_each(lines.begin(), lines.end(), append);
  setOutputText(std::move(reportText));
}

void ViewController::setOutputText(std::string reportText) {
  reportText.insert(0, reportLead);
  showInOutputText(platform::shareText(std::move(reportText)));
}

void ViewController::showInOutputText(const platform::SharedText& text) {
  if (platform::TextStorage* storage = connected(outputText).textStorage())
    storage->setAttributedString({text, platform::Color::text, platform::SystemFont{theFontSize}});
}

void ViewController::skipNonCheckbox(Object* /*sender*/) {
  rebuildLines();
  showReport();
  reloadOutline();
}

void ViewController::newestNonCheckbox(Object* /*sender*/) {
  showReport();
  reloadOutline();
  // The receipts follow the check box because each click changes it once; they are reversed, never sorted
  // anew.
  std::reverse(boms.children.begin(), boms.children.end());
  connected(BoMTable).reloadData();
}

void ViewController::incFontSize(Object* /*sender*/) {
  setFontSize(std::min(theFontSize + fontSizeStep, maximumFontSize));
}

void ViewController::decFontSize(Object* /*sender*/) {
  setFontSize(std::max(theFontSize - fontSizeStep, minimumFontSize));
}

void ViewController::setFontSize(double pointSize) {
  theFontSize = pointSize;
  platform::UserDefaults::standardUserDefaults().setDoubleForKey(theFontSize, fontSizeKey);
  showInOutputText(connected(outputText).string());
}

void ViewController::saveButton(Object* /*sender*/) {
  std::string stamp = "Checked by Pelmarix at: " + description(platform::currentDate()) + "\n";
  platform::saveThroughPanel({"text", "txt"},
                             {connected(outputText).string(), platform::shareText(std::move(stamp))});
}

void ViewController::exportLists(Object* /*sender*/) {
  const std::shared_ptr<platform::SavePanel> panel = platform::SavePanel::make();
  panel->setTitle(exportTitle);
  panel->setCanCreateDirectories(true);
  panel->setAllowedFileTypes({"csv"});
  panel->setContents({"Install history", "Receipts"});
  panel->beginWithCompletionHandler([this, &chosen = *panel](int response) {
    if (response != platform::modalResponseOK) return;
    try {
      const bool isHistory = chosen.chosenContent() == 0;
      platform::writeToChosenFile(chosen, {isHistory ? csvText(histories) : boms.csvText()});
    } catch (const std::bad_alloc&) {
      platform::showErrorAlert(platform::lastActionErrorMessage,
                               std::make_error_code(std::errc::not_enough_memory).message());
    }
  });
}

// The outline of the history.

void ViewController::reloadOutline() { connected(bsvOutlineView).reloadItemReloadChildren(nullptr, true); }

void ViewController::doubleClickedItem(Object* sender) {
  auto& outlineView = required(dynamic_cast<OutlineView*>(sender), "the sender is not the outline");
  if (auto* group = dynamic_cast<History*>(outlineView.itemAtClickedRow())) {
    if (outlineView.isItemExpanded(group))
      outlineView.collapseItem(group);
    else
      outlineView.expandItem(group);
  }
  reloadOutline();
}

std::ptrdiff_t ViewController::outlineViewNumberOfChildrenOfItem(OutlineView& /*outlineView*/, Object* item) {
  if (const auto* group = dynamic_cast<const History*>(item)) return std::ssize(group->children);
  return std::ssize(histories);
}

Object* ViewController::outlineViewChildOfItem(OutlineView& /*outlineView*/, std::ptrdiff_t index,
                                               Object* item) {
  if (const auto* group = dynamic_cast<const History*>(item))
    return &required(elementAt(group->children, index), "no such entry");
  return &required(elementAt(histories, index), "no such group");
}

bool ViewController::outlineViewIsItemExpandable(OutlineView& /*outlineView*/, Object* item) {
  const auto* group = dynamic_cast<const History*>(item);
  return group != nullptr && !group->children.empty();
}

View* ViewController::outlineViewViewForTableColumnItem(OutlineView& outlineView, const TableColumn* column,
                                                        Object* item) {
  const std::string_view identifier = column != nullptr ? column->identifier() : std::string_view();
  if (const auto* entry = dynamic_cast<const HistoryItem*>(item))
    return itemCell(outlineView, identifier, *entry);
  if (const auto* group = dynamic_cast<const History*>(item))
    return groupCell(outlineView, identifier, *group);
  return nullptr;
}

std::string ViewController::outlineViewToolTipForItem(OutlineView& /*outlineView*/, Object* item) {
  if (const auto* entry = dynamic_cast<const HistoryItem*>(item)) return kindAndVersion(*entry);
  const auto* group = dynamic_cast<const History*>(item);
  if (group == nullptr) return {};
  std::string text;
  if (!group->children.empty())
    text = group->children.size() == 1 ? "1 entry" : std::to_string(group->children.size()) + " entries";
  if (group->name != nameWithoutSystemInstall) return text;
  return text + (text.empty() ? "No" : ", no") + " system install was recognised";
}

std::string ViewController::outlineViewAccessibilityDescriptionForItem(OutlineView& outlineView,
                                                                       Object* item) {
  std::string text = outlineViewToolTipForItem(outlineView, item);
  if (const auto* entry = dynamic_cast<const HistoryItem*>(item))
    text += ", " + description(entry->installDate);
  return text;
}

// The table of receipts, and the way from one of them to its bill of materials.

std::ptrdiff_t ViewController::numberOfRowsInTableView(TableView& /*tableView*/) {
  return std::ssize(boms.children);
}

Object* ViewController::tableViewObjectValueForTableColumnRow(TableView& /*tableView*/,
                                                              const TableColumn* /*column*/,
                                                              std::ptrdiff_t row) {
  return elementAt(boms.children, row);
}

View* ViewController::tableViewViewForTableColumnRow(TableView& tableView, const TableColumn* column,
                                                     std::ptrdiff_t row) {
  const BoMItem* const item = elementAt(boms.children, row);
  if (item == nullptr || column == nullptr) return nullptr;
  // The columns are known by their places, whatever they are called.
  const std::vector<TableColumn*>& columns = tableView.tableColumns();
  if (!columns.empty() && column == columns[0])
    return cellWithText(tableView, "DateCell", description(item->installDate));
  if (columns.size() > 1 && column == columns[1]) return cellWithText(tableView, "NameCell", item->name);
  return nullptr;
}

void ViewController::prepareForSegue(platform::Segue& segue, Object* /*sender*/) {
  const std::ptrdiff_t row = connected(BoMTable).selectedRow();
  if (row < 0 || boms.children.empty()) return;
  const BoMItem& item = required(elementAt(boms.children, row), "no such receipt");
  platform::SharedText listing = platform::shareText(item.listBoM());
  auto* sheet = dynamic_cast<BoMoverViewController*>(&segue.destinationController());
  required(sheet, "the segue leads to another controller").setRepresentedObject(std::move(listing));
}

}  // namespace pelmarix::ui
