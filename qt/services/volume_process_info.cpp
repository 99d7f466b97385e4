#include "qt/services/volume_process_info.h"

#include <QSysInfo>
#include <QThread>
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

// In bytes. It stands in the window's title.
constexpr std::size_t longestVersion = 255;

// The text under a key; empty when it is missing, no text, or longer than versions are.
std::string text(plist::Value dictionary, std::string_view key) {
  const std::optional<plist::Value> value = dictionary.find(key);
  const std::string_view found = value ? value->string().value_or("") : "";
  return std::string(found.size() > longestVersion ? "" : found);
}

struct ToldVersion {
  std::string version;  // empty when the file doesn't tell
  std::string build;
};

ToldVersion decodeSystemVersion(std::string_view bytes) {
  const auto decoded = plist::Document::decode(bytes);
  if (!decoded) return {};
  return {text(decoded->root(), "ProductVersion"), text(decoded->root(), "ProductBuildVersion")};
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
  const auto told = files.decodeFile(systemVersionFile, decodeSystemVersion);
  if (!told || told->version.empty()) return;
  versionString_ = "Version " + told->version + (told->build.empty() ? "" : " (Build " + told->build + ")");
  version_ = versionNumbers(told->version);
}

std::size_t VolumeProcessInfo::activeProcessorCount() const {
  return static_cast<std::size_t>(std::max(QThread::idealThreadCount(), 1));
}

}  // namespace pelmarix::qt
