#include "qt/services/volume_process_info.h"

#include <QSysInfo>
#include <charconv>
#include <optional>

#include "plist/document.h"
#include "qt/services/text_conversion.h"

namespace pelmarix::qt {
namespace {

constexpr const char* systemVersionFile = "/System/Library/CoreServices/SystemVersion.plist";

int number(std::string_view digits) {
  int result = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), result);
  const bool isWhole = error == std::errc() && end == digits.data() + digits.size();
  return isWhole && result >= 0 ? result : 0;
}

/// The text under a key; empty when it is missing or no text.
std::string text(plist::Value dictionary, std::string_view key) {
  const std::optional<plist::Value> value = dictionary.find(key);
  return std::string(value ? value->string().value_or("") : "");
}

}  // namespace

platform::OperatingSystemVersion versionNumbers(std::string_view version) {
  platform::OperatingSystemVersion numbers;
  for (int* part : {&numbers.majorVersion, &numbers.minorVersion, &numbers.patchVersion}) {
    const std::size_t length = version.substr(0, version.find('.')).size();
    *part = number(version.substr(0, length));
    version.remove_prefix(length == version.size() ? length : length + 1);
  }
  return numbers;
}

VolumeProcessInfo::VolumeProcessInfo(platform::FileManager& files) {
  if (const auto contents = files.readFile(systemVersionFile)) {
    if (const auto decoded = plist::Document::decode(*contents)) {
      const std::string version = text(decoded->root(), "ProductVersion");
      const std::string build = text(decoded->root(), "ProductBuildVersion");
      if (!version.empty()) {
        versionString_ = "Version " + version + (build.empty() ? "" : " (Build " + build + ")");
        version_ = versionNumbers(version);
        return;
      }
    }
  }
  versionString_ = toUtf8(QSysInfo::prettyProductName());
  version_ = versionNumbers(toUtf8(QSysInfo::productVersion()));
}

}  // namespace pelmarix::qt
