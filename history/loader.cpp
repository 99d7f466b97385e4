#include "history/loader.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "history/install_history_record.h"
#include "platform/alert.h"
#include "platform/file_manager.h"
#include "platform/text.h"

namespace pelmarix {
namespace {

// A new kind of security data is one line here, a new system release one line in the list below it.
constexpr auto securityDataNames = std::to_array<std::string_view>({
    "Gatekeeper Configuration Data",
    "MRTConfigData",
    "MRT Configuration Data",
    "XProtectPlistConfigData",
    "Incompatible Kernel Extension Configuration Data",
    "TCC Configuration Data",
});

// Parts of names: "OS X El Capitan U" takes both "Update" and "Upgrade", and the blank behind "macOS High
// Sierra " keeps out what only begins with that name. "macOS 10.14" takes whatever "macOS 10.14.1" would.
constexpr auto systemReleaseMarkers = std::to_array<std::string_view>({
    "OS X El Capitan U",
    "macOS Sierra U",
    "macOS 10.13",
    "macOS High Sierra ",
    "macOS Mojave",
    "macOS 10.14",
    "macOS 10.14.1",
    "macOS 10.15",
    "Catalina",
});

// One of history_type, or nothing for an entry that isn't kept. The first class that takes the entry
// decides.
std::optional<std::int64_t> classify(const theReceipts& entry) {
  // Composed once, the name is compared byte for byte: all the texts it is compared with are plain ASCII.
  const std::string composedName = platform::composed(entry.displayName);
  const auto nameEquals = [&](std::string_view name) { return composedName == name; };
  const auto nameContains = [&](std::string_view part) {
    return composedName.find(part) != std::string::npos;
  };
  const auto contentTypeEquals = [&](std::string_view contentType) {
    return entry.contentType && platform::textEquals(*entry.contentType, contentType);
  };

  if (std::any_of(securityDataNames.begin(), securityDataNames.end(), nameEquals))
    return history_type::securityData;
  if (nameContains("Security Update")) return history_type::securityUpdate;
  if (std::any_of(systemReleaseMarkers.begin(), systemReleaseMarkers.end(), nameContains))
    return history_type::systemInstall;
  if (contentTypeEquals("critical-update")) return history_type::criticalUpdate;
  if (contentTypeEquals("config-data")) return history_type::configurationData;
  return std::nullopt;
}

std::vector<std::shared_ptr<History>> groupInstallHistory(std::vector<theReceipts> entries) {
  std::vector<std::shared_ptr<History>> groups;
  // Shown only where no system install begins another: what came before the first one is left out.
  auto current = std::make_shared<History>(nameWithoutSystemInstall);
  for (theReceipts& entry : entries) {
    const std::optional<std::int64_t> type = classify(entry);
    if (!type) continue;
    if (*type == history_type::systemInstall) {
      current = std::make_shared<History>(entry.displayName + " " + entry.displayVersion);
      groups.push_back(current);
    }
    current->children.push_back(std::make_shared<HistoryItem>(
        std::move(entry.displayName), std::move(entry.displayVersion), entry.date, *type));
  }
  if (groups.empty() && !entries.empty()) groups.push_back(std::move(current));
  return groups;
}

}  // namespace

std::vector<std::shared_ptr<History>> readInstallHistory() {
  auto groups = platform::FileManager::defaultManager().decodeFile(
      installHistoryPath, [](std::string_view bytes) -> std::optional<std::vector<std::shared_ptr<History>>> {
        auto entries = decodeInstallHistory(bytes);
        if (!entries) return std::nullopt;
        return groupInstallHistory(*std::move(entries));
      });
  if (groups && *groups) return **std::move(groups);
  platform::showErrorAlert(platform::lastActionErrorMessage, "Couldn't read install history.");
  return {};
}

}  // namespace pelmarix
