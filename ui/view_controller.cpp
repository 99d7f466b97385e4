#include "ui/view_controller.h"

#include "history/loader.h"
#include "platform/application.h"
#include "platform/fatal.h"
#include "platform/process_info.h"
#include "platform/user_defaults.h"
#include "ui/font_size.h"

namespace pelmarix::ui {

void ViewController::viewDidLoad() {
  pelmarix::ViewController::viewDidLoad();
  theFontSize = storedFontSize();
  required(skipCheckbox, "skipCheckbox is not connected").setState(stateOn);
  required(newestLastCheckbox, "newestLastCheckbox is not connected").setState(stateOff);
  histories = readInstallHistory();
  rebuildLines(true);
  setOutputText(joinedLines(LineOrder::lastToFirst));
  boms.readBoMPLists();
  required(BoMTable, "BoMTable is not connected").reloadData();
}

void ViewController::viewDidAppear() {
  if (window() != nullptr) window()->setDelegate(this);
  const std::string version = ProcessInfo::processInfo().operatingSystemVersionString();
  if (window() != nullptr) window()->setTitle("Pelmarix \u2013 currently running macOS " + version);
  reloadOutline();
}

bool ViewController::windowShouldClose(Window& sender) {
  Application::sharedApplication().terminate(&sender);
  return true;
}

}  // namespace pelmarix::ui
