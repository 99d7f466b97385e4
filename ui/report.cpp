// The report: its text, its size, its options, and saving it.
#include <algorithm>
#include <numeric>

#include "base/fatal.h"
#include "platform/alert.h"
#include "platform/file_manager.h"
#include "platform/save_panel.h"
#include "platform/services.h"
#include "ui/font_size.h"
#include "ui/view_controller.h"

namespace pelmarix::ui {
namespace {

// Every report that is shown, and hence every file that is saved, starts with it.
constexpr std::string_view reportLead = "\n\n";

int stateOf(const platform::Button* button) {
  return required(button, "a check box is not connected").state();
}

}  // namespace

void ViewController::rebuildLines(bool skipConfigData) {
  lines.clear();
  for (const auto& history : histories) {
    std::vector<std::string> linesOfGroup = history->reportLines(skipConfigData);
    std::move(linesOfGroup.begin(), linesOfGroup.end(), std::back_inserter(lines));
  }
}

std::string ViewController::joinedLines(LineOrder order) const {
  const std::size_t size = std::transform_reduce(lines.begin(), lines.end(), reportLead.size(), std::plus<>(),
                                                 [](const std::string& line) { return line.size(); });
  std::string joined;
  // With room for the lead, so that a large report is not moved to another place for it.
  joined.reserve(size);
  if (order == LineOrder::firstToLast) {
    for (const std::string& line : lines) joined += line;
  } else {
    std::for_each(lines.rbegin(), lines.rend(), [&](const std::string& line) { joined += line; });
  }
  return joined;
}

ViewController::LineOrder ViewController::chosenOrder() const {
  return stateOf(newestLastCheckbox) == platform::stateOff ? LineOrder::lastToFirst : LineOrder::firstToLast;
}

void ViewController::setOutputText(std::string reportText) {
  reportText.insert(0, reportLead);
  showInReportView(platform::shareText(std::move(reportText)));
}

void ViewController::showInReportView(const platform::SharedText& text) {
  if (platform::TextStorage* storage = required(outputText, "outputText is not connected").textStorage())
    storage->setAttributedString({text, platform::Color::text, platform::SystemFont{theFontSize}});
}

void ViewController::setFontSize(double pointSize) {
  theFontSize = pointSize;
  platform::UserDefaults::standardUserDefaults().setDoubleForKey(theFontSize, fontSizeKey);
  showInReportView(required(outputText, "outputText is not connected").string());
}

void ViewController::incFontSize(platform::Object* /*sender*/) {
  setFontSize(std::min(theFontSize + fontSizeStep, maximumFontSize));
}

void ViewController::decFontSize(platform::Object* /*sender*/) {
  setFontSize(std::max(theFontSize - fontSizeStep, minimumFontSize));
}

void ViewController::skipNonCheckbox(platform::Object* /*sender*/) {
  rebuildLines(stateOf(skipCheckbox) == platform::stateOn);
  setOutputText(joinedLines(chosenOrder()));
  reloadOutline();
}

void ViewController::newestNonCheckbox(platform::Object* /*sender*/) {
  setOutputText(joinedLines(chosenOrder()));
  reloadOutline();
  // The receipts follow the check box because each click changes it once; their order is turned, never
  // computed.
  std::reverse(boms.children.begin(), boms.children.end());
  required(BoMTable, "BoMTable is not connected").reloadData();
}

void ViewController::saveButton(platform::Object* /*sender*/) {
  const std::string stamp = "Checked by Pelmarix at: " + description(platform::currentDate()) + "\n";
  const platform::SharedText report = required(outputText, "outputText is not connected").string();

  const std::shared_ptr<platform::SavePanel> panel = platform::SavePanel::make();
  panel->setCanCreateDirectories(true);
  panel->setAllowedFileTypes({"text", "txt"});
  // The panel holds the handler, so the handler must not hold the panel.
  panel->beginWithCompletionHandler([report, stamp, &chosen = *panel](int response) {
    if (response != platform::modalResponseOK) return;
    const std::optional<std::string> path = chosen.path();
    if (!path) return;
    const auto written = platform::FileManager::defaultManager().writeFile(*path, {*report, stamp});
    if (!written) platform::showErrorAlert(platform::lastActionErrorMessage, written.error().message());
  });
}

}  // namespace pelmarix::ui
