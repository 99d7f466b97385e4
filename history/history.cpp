#include "history/history.h"

#include "base/csv.h"

namespace pelmarix {

std::string_view history_type::name(std::int64_t type) {
  switch (type) {
    case systemInstall:
      return "system install or upgrade";
    case securityUpdate:
      return "security update";
    case securityData:
      return "security data";
    case criticalUpdate:
      return "critical update";
    case configurationData:
      return "configuration data";
    default:
      return {};
  }
}

std::string kindAndVersion(const HistoryItem& item) {
  std::string text(history_type::name(item.type));
  if (!item.version.empty()) text += ", " + item.version;
  return text;
}

namespace {

std::string reportLine(const HistoryItem& item) {
  return item.name + ": " + item.version + " " + description(item.installDate) + "\n";
}

}  // namespace

std::vector<std::string> History::reportLines(bool skipConfigData) const {
  std::vector<std::string> lines;
  lines.reserve(children.size());
  for (const auto& item : children) {
    const bool isSkipped = skipConfigData && item->type == history_type::configurationData;
    lines.push_back(isSkipped ? std::string() : reportLine(*item));
  }
  return lines;
}

std::string csvText(const std::vector<std::shared_ptr<History>>& groups) {
  std::string text;
  appendCsvRecord(text, {"Group", "Kind", "Name", "Version", "Date"});
  for (const auto& group : groups)
    for (const auto& item : group->children)
      appendCsvRecord(text, {group->name, history_type::name(item->type), item->name, item->version,
                             description(item->installDate)});
  return text;
}

}  // namespace pelmarix
