// The main window as the interface file describes it, and its wiring.
#pragma once

#include <QPointer>
#include <memory>

#include "app/app_delegate.h"
#include "posix/volume.h"
#include "qt/widgets/check_box_adapter.h"
#include "qt/widgets/outline_adapter.h"
#include "qt/widgets/table_adapter.h"
#include "qt/widgets/text_adapter.h"
#include "qt/window/application_adapter.h"
#include "qt/window/bill_of_materials_sheet.h"
#include "qt/window/file_search_sheet.h"
#include "qt/window/main_window.h"
#include "qt/window/volume_opener.h"
#include "ui/timeline_controller.h"
#include "ui/view_controller.h"

namespace Ui {
class MainWindow;
}

namespace pelmarix::qt {

class MainInterface final {
 public:
  /// Creates the window with its controller and connects outlets, actions, data sources, the segue to the
  /// sheet, and the Help menu's items to `delegate`. `volume` is what is shown. Both outlive the interface.
  MainInterface(AppDelegate& delegate, const posix::Volume& volume);
  ~MainInterface();
  MainInterface(const MainInterface&) = delete;
  MainInterface& operator=(const MainInterface&) = delete;

  /// Lets the controller load and then appear, on a window that is seen from in between.
  void show();

  MainWindow& window() { return window_; }
  QMenu& helpMenu();
  void tellSaved(const std::string& path);

 private:
  void connectOutlets();
  void connectControls();
  void connectMenus(AppDelegate& delegate);
  // On macOS there is one volume, the machine's own.
  void connectVolumes();
  void connectTimeline();
  void tellTimelineOfReceipt();
  // Where there is something to show, and room for it beside lists and report.
  void showOrHideTimeline();
  void fillTimeline();
  void savePicture();
  // Where a list stayed empty: why, and what to do.
  void fillEmptyPlaces();
  // Lets Find, Copy and Select All work on what has the focus.
  void connectFocus();
  // Those that can do nothing with what has the focus are disabled.
  void updateEditActions();
  // What the action throws ends it and nothing else; memory that runs out is told by an alert.
  template <typename Sender, typename Signal, typename Action>
  void on(Sender* sender, Signal signal, Action action);
  // A panel that is open already comes to the front.
  void save();
  void exportLists();
  // The segue to the sheet.
  void showBillOfMaterials();
  // Over the sheet.
  void tellWhenVolumeIsGone();
  void findFile();
  // The segue from a file that was found to the sheet.
  void showFoundFile();
  void changeFontSize(int steps);

  const posix::Volume& volume_;
  MainWindow window_;
  std::unique_ptr<Ui::MainWindow> ui_;
  ui::ViewController controller_;
  ui::TimelineController timeline_;
  std::unique_ptr<OutlineAdapter> outline_;
  std::unique_ptr<TableAdapter> table_;
  std::unique_ptr<TextAdapter> report_;
  std::unique_ptr<CheckBoxAdapter> skip_;
  std::unique_ptr<CheckBoxAdapter> newestLast_;
  // Containers that the controller has outlets for and doesn't use.
  platform::View historyPane_;
  platform::View receiptsPane_;
  platform::ScrollView reportScroller_;
  platform::ClipView reportClip_;
  QPointer<BillOfMaterialsSheet> sheet_;
  QPointer<FileSearchSheet> search_;
  std::unique_ptr<VolumeOpener> volumeOpener_;
  // The receiver of every signal. The first to go: a window tells of lost focus and the like as it ends.
  QObject connections_;
};

}  // namespace pelmarix::qt
