// Folders that look like a Mac's volumes to Pelmarix.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "base/result.h"

namespace pelmarix::sample {

struct Sizes {
  std::size_t entries = 400;  ///< of the install history
  std::size_t receipts = 300;
  std::size_t largeBomPaths = 1200;  ///< paths in the largest bom

  static constexpr Sizes large() {
    return {.entries = 100'000, .receipts = 10'000, .largeBomPaths = 400'000};
  }
};

/// Makes the volume in `folder`, which is created where it is missing; a sample made there earlier is
/// replaced. The files are the same bytes each time. A folder that holds anything else is left as it is. The
/// error is a message that says why the volume couldn't be made.
Result<void, std::string> makeVolume(const std::filesystem::path& folder, const Sizes& sizes);

/// Likewise the two volumes that a Mac has since macOS Catalina, in `folder`: "Macintosh HD" with the system,
/// its version and receipts, and "Macintosh HD - Data" with the install history.
Result<void, std::string> makeTwoVolumes(const std::filesystem::path& folder, const Sizes& sizes);

}  // namespace pelmarix::sample
