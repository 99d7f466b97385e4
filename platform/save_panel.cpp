#include "platform/save_panel.h"

#include <utility>

#include "platform/alert.h"
#include "platform/file_manager.h"
#include "platform/services.h"

namespace pelmarix::platform {

void saveThroughPanel(const std::vector<std::string>& types, std::vector<SharedText> parts) {
  const std::shared_ptr<SavePanel> panel = SavePanel::make();
  panel->setCanCreateDirectories(true);
  panel->setAllowedFileTypes(types);
  // The panel holds the handler, so the handler must not hold the panel.
  panel->beginWithCompletionHandler([parts = std::move(parts), &chosen = *panel](int response) {
    if (response != modalResponseOK) return;
    std::vector<std::string_view> texts;
    for (const SharedText& part : parts) texts.emplace_back(*part);
    writeToChosenFile(chosen, texts);
  });
}

void writeToChosenFile(const SavePanel& panel, const std::vector<std::string_view>& parts) {
  const std::optional<std::string> path = panel.path();
  if (!path) return;
  const auto written = FileManager::defaultManager().writeFile(*path, parts);
  if (written)
    tellSaved(*path);
  else
    showErrorAlert(lastActionErrorMessage, written.error().message());
}

}  // namespace pelmarix::platform
