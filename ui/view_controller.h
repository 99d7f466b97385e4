// The main window's controller: what it holds, when it loads, and the actions of its controls.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "history/history.h"
#include "platform/controls.h"
#include "platform/table_view.h"
#include "platform/view_controller.h"
#include "platform/window.h"
#include "receipts/bom.h"

namespace pelmarix::ui {

/// Of the panel that chooses where to export.
inline constexpr const char* exportTitle = "Export";

/// Data source and delegate of the history outline and the receipts table, and the window's delegate once it
/// has appeared. The interface file connects outlets and actions; using an outlet that it left out stops the
/// program. An action's sender may be null unless said otherwise. Main thread only.
class ViewController final : public platform::ViewController,
                             public platform::WindowDelegate,
                             public platform::OutlineViewDataSource,
                             public platform::OutlineViewDelegate,
                             public platform::TableViewDataSource,
                             public platform::TableViewDelegate {
 public:
  /// Reads preferences, history and receipts and shows the report and the receipts. Failures to read are
  /// shown by modal alerts, and loading goes on with what could be read.
  void viewDidLoad() override;
  /// Becomes the window's delegate, sets its title and shows the outline.
  void viewDidAppear() override;
  /// Ends the application; always true.
  bool windowShouldClose(platform::Window& sender) override;

  /// Shows two line feeds and then the report text, in theFontSize.
  void setOutputText(std::string reportText);

  // The report's actions.
  /// Lets the user choose a file, and writes the report and a line with the time into it.
  void saveButton(platform::Object* sender);
  /// Lets the user choose a file and what to write into it as comma-separated values: history or receipts.
  void exportLists(platform::Object* sender);
  /// The skip option has changed: makes the report's lines anew and shows them.
  void skipNonCheckbox(platform::Object* sender);
  /// The newest-last option has changed: shows the report in its order, and reverses the receipts.
  void newestNonCheckbox(platform::Object* sender);
  /// One point more or less, from 4 to 24; the size is stored.
  void incFontSize(platform::Object* sender);
  void decFontSize(platform::Object* sender);

  // The outline's rows: groups, and their entries below them.
  /// Double click: expands or collapses the group that was clicked. The sender is the outline.
  void doubleClickedItem(platform::Object* sender);
  std::ptrdiff_t outlineViewNumberOfChildrenOfItem(platform::OutlineView& outlineView,
                                                   platform::Object* item) override;
  platform::Object* outlineViewChildOfItem(platform::OutlineView& outlineView, std::ptrdiff_t index,
                                           platform::Object* item) override;
  bool outlineViewIsItemExpandable(platform::OutlineView& outlineView, platform::Object* item) override;
  platform::View* outlineViewViewForTableColumnItem(platform::OutlineView& outlineView,
                                                    const platform::TableColumn* column,
                                                    platform::Object* item) override;
  std::string outlineViewToolTipForItem(platform::OutlineView& outlineView, platform::Object* item) override;
  std::string outlineViewAccessibilityDescriptionForItem(platform::OutlineView& outlineView,
                                                         platform::Object* item) override;

  // The table's rows: receipts.
  std::ptrdiff_t numberOfRowsInTableView(platform::TableView& tableView) override;
  platform::Object* tableViewObjectValueForTableColumnRow(platform::TableView& tableView,
                                                          const platform::TableColumn* column,
                                                          std::ptrdiff_t row) override;
  platform::View* tableViewViewForTableColumnRow(platform::TableView& tableView,
                                                 const platform::TableColumn* column,
                                                 std::ptrdiff_t row) override;
  /// Gives the sheet the listing of the selected receipt; nothing when no row is selected. Blocks while the
  /// lister runs; throws TaskLaunchError when it can't be started.
  void prepareForSegue(platform::Segue& segue, platform::Object* sender) override;

  std::vector<std::shared_ptr<History>> histories;
  std::vector<std::string> lines;  ///< of the report, in the loader's order
  BoM boms;
  double theFontSize = 12.0;  ///< points

  // Outlets. They are not owned.
  platform::TextView* outputText = nullptr;
  platform::OutlineView* bsvOutlineView = nullptr;
  platform::TableView* BoMTable = nullptr;
  platform::Button* skipCheckbox = nullptr;
  platform::Button* newestLastCheckbox = nullptr;
  // Not used here: they are for an interface file to connect.
  platform::ScrollView *outputScroller = nullptr, *output2Scroller = nullptr;
  platform::TextView* output2Text = nullptr;
  platform::ClipView* outputFoldClipView = nullptr;
  platform::View *bsvTopView = nullptr, *bomTopView = nullptr;

 private:
  // Fills `lines` from the groups, as the skip option says.
  void rebuildLines();
  // Shows `lines`, in the order that the newest-last option says.
  void showReport();
  void showInOutputText(const platform::SharedText& text);
  void setFontSize(double pointSize);
  void reloadOutline();
};

}  // namespace pelmarix::ui
