#include "qt/services/volume_process_info.h"

#include <QSysInfo>
#include <algorithm>
#include <charconv>
#include <optional>

#include "plist/document.h"
#include "qt/services/text_conversion.h"

namespace pelmarix::qt {
namespace {

constexpr const char* systemVersionFile = "/System/Library/CoreServices/SystemVersion.plist";

int number(std::string_view digits) {
  int result = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, result);
  return error == std::errc() && stop == end && result >= 0 ? result : 0;
}

// The text under a key; empty when it is missing or no text.
std::string text(plist::Value dictionary, std::string_view key) {
  const std::optional<plist::Value> value = dictionary.find(key);
  return std::string(value ? value->string().value_or("") : "");
}

}  // namespace

platform::OperatingSystemVersion versionNumbers(std::string_view version) {
  platform::OperatingSystemVersion numbers;
  for (int* part : {&numbers.majorVersion, &numbers.minorVersion, &numbers.patchVersion}) {
    const std::string_view digits = version.substr(0, version.find('.'));
    *part = number(digits);
    version.remove_prefix(std::min(digits.size() + 1, version.size()));
  }
  return numbers;
}

VolumeProcessInfo::VolumeProcessInfo(platform::FileManager& files, const posix::Volume& volume) {
  if (!volume.isNamed()) {
    versionString_ = toUtf8(QSysInfo::prettyProductName());
    version_ = versionNumbers(toUtf8(QSysInfo::productVersion()));
  }
  const auto contents = files.readFile(systemVersionFile);
  if (!contents) return;
  const auto decoded = plist::Document::decode(*contents);
  if (!decoded) return;
  const std::string version = text(decoded->root(), "ProductVersion");
  if (version.empty()) return;
  const std::string build = text(decoded->root(), "ProductBuildVersion");
  versionString_ = "Version " + version + (build.empty() ? "" : " (Build " + build + ")");
  version_ = versionNumbers(version);
}

}  // namespace pelmarix::qt
