#include "posix/volume.h"

#include <unistd.h>

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

// What hinders somebody who wants to look into the folder; empty for nothing.
std::string hindranceOf(const std::string& folder) {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::file_status status = fs::status(folder, error);
  if (status.type() == fs::file_type::not_found) {
    const bool isAddress = folder.find("://") != std::string::npos;
    return isAddress ? " is an address. Only a folder of this machine can be opened." : " doesn't exist.";
  }
  if (!error && !fs::is_directory(status))
    return " is a file. If it is the image of a disk, mount it and open the folder where it is mounted.";
  if (!error) static_cast<void>(fs::status(folder + "/.", error));  // what is in it must be there, too
  return error ? " can't be opened: " + error.message() + "." : "";
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

Result<std::string, VolumeError> Volume::valueForFolders(const std::vector<std::string>& folders) {
  std::string value;
  for (const std::string& folder : folders) {
    if (const std::string hindrance = hindranceOf(folder); !hindrance.empty())
      return VolumeError{(folder.empty() ? "The empty path" : folder) + hindrance};
    if (folders.size() > 1 && folder.find(':') != std::string::npos)
      return VolumeError{folder + " has a colon in its path. It can only be opened alone."};
    value += (value.empty() ? "" : ":") + folder;
  }
  return value;
}

std::vector<std::string> Volume::folders() const {
  std::vector<std::string> folders = roots_;
  std::replace(folders.begin(), folders.end(), std::string(), std::string("/"));
  return folders;
}

std::string Volume::hindranceTo(const std::string& macPath) const {
  for (const std::string& root : folders())
    if (const std::string hindrance = hindranceOf(root); !hindrance.empty()) return root + hindrance;
  const std::size_t slash = macPath.rfind('/');
  const std::string folder = resolve(macPath.substr(0, slash));
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(folder, error);
  if (status.type() == std::filesystem::file_type::not_found ||
      (!error && !std::filesystem::is_directory(status)))
    return "There is no folder " + folder + ".";
  if (const std::string hindrance = hindranceOf(folder); !hindrance.empty()) return folder + hindrance;
  const std::string file = macPath.substr(slash + 1);
  if (!file.empty() && !std::filesystem::exists(resolve(macPath), error) && !error)
    return "There is no " + file + " in " + folder + ".";
  return {};
}

std::string Volume::resolve(const std::string& macPath) const {
  if (roots_.size() > 1) {  // else nothing is to be chosen, and the file system isn't asked
    for (const std::string& root : roots_)
      if (std::string path = root + macPath; access(path.c_str(), F_OK) == 0) return path;
  }
  return roots_.front() + macPath;
}

}  // namespace pelmarix::posix
