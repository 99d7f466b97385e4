#include "posix/volume.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace pelmarix::posix {
namespace {

// What lies between the colons. None where there is nothing but colons.
std::vector<std::string> split(std::string_view folders) {
  std::vector<std::string> parts;
  while (!folders.empty()) {
    const std::string_view part = folders.substr(0, folders.find(':'));
    if (!part.empty()) parts.emplace_back(part);
    folders.remove_prefix(std::min(part.size() + 1, folders.size()));
  }
  return parts;
}

std::string rootOf(std::string folder) {
  if (folder.front() != '/') {
    // A working folder that was removed has no path; then the relative one is left to fail by itself.
    std::error_code error;
    const auto workingFolder = std::filesystem::current_path(error);
    if (!error) folder = workingFolder.native() + "/" + folder;
  }
  while (folder.ends_with('/')) folder.pop_back();
  return folder;
}

}  // namespace

Volume::Volume(const std::string& folders) : isNamed_(!folders.empty()) {
  if (!isNamed_) return;
  roots_ = split(folders);
  std::error_code unknown;
  if (roots_.empty() || std::filesystem::is_directory(folders, unknown)) roots_ = {folders};
  std::transform(roots_.begin(), roots_.end(), roots_.begin(), rootOf);
}

Volume Volume::fromEnvironment() {
#ifdef __APPLE__
  return Volume();
#else
  const char* folders = std::getenv("PELMARIX_VOLUME");
  return folders == nullptr ? Volume() : Volume(folders);
#endif
}

std::string Volume::resolve(const std::string& macPath) const {
  if (roots_.size() > 1) {  // else nothing is to be chosen, and the file system isn't asked
    for (const std::string& root : roots_) {
      std::error_code unknown;
      if (std::string path = root + macPath; std::filesystem::exists(path, unknown)) return path;
    }
  }
  return roots_.front() + macPath;
}

}  // namespace pelmarix::posix
