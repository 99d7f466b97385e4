#include "ui/view_controller.h"

#include "base/fatal.h"
#include "history/loader.h"
#include "platform/application.h"
#include "platform/process_info.h"
#include "platform/user_defaults.h"
#include "ui/font_size.h"

namespace pelmarix::ui {

void ViewController::viewDidLoad() {
  platform::ViewController::viewDidLoad();
  theFontSize = storedFontSize();
  required(skipCheckbox, "skipCheckbox is not connected").setState(platform::stateOn);
  required(newestLastCheckbox, "newestLastCheckbox is not connected").setState(platform::stateOff);
  histories = readInstallHistory();
  rebuildLines(true);
  setOutputText(joinedLines(LineOrder::lastToFirst));
  boms.readBoMPLists();
  required(BoMTable, "BoMTable is not connected").reloadData();
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

}  // namespace pelmarix::ui
