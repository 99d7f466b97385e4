#include "posix/volume.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace pelmarix::posix {

Volume::Volume(const std::string& root) : isNamed_(!root.empty()), root_(root) {
  if (!isNamed_) return;
  if (root_.front() != '/') {
    // A working folder that was removed has no path; then the relative one is left to fail by itself.
    std::error_code error;
    const auto workingFolder = std::filesystem::current_path(error);
    if (!error) root_ = workingFolder.native() + "/" + root_;
  }
  while (root_.ends_with('/')) root_.pop_back();
}

Volume Volume::fromEnvironment() {
#ifdef __APPLE__
  return Volume();
#else
  const char* root = std::getenv("PELMARIX_VOLUME");
  return root == nullptr ? Volume() : Volume(root);
#endif
}

}  // namespace pelmarix::posix
