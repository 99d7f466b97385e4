// The file system of the machine.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/file_manager.h"
#include "qt/volume.h"

namespace pelmarix::qt {

/// No file of more than 1 GiB is read: a property list of the system has less than a thousandth of it, and a
/// file with a hole of a terabyte must not take the memory.
inline constexpr std::size_t maximumFileSize = std::size_t{1} << 30U;

/// Reads below a volume, writes where the user chose.
class PosixFileManager final : public FileManager {
 public:
  explicit PosixFileManager(Volume volume) : volume_(std::move(volume)) {}

  std::unique_ptr<DirectoryEnumerator> enumeratorAtPath(const std::string& path) override;
  bool readFile(const std::string& path, std::string& contents) override;

  /// A FIFO is refused, for it could block the program for good.
  std::optional<std::string> writeFile(const std::string& path,
                                       const std::vector<std::string_view>& parts) override;

 private:
  Volume volume_;
};

}  // namespace pelmarix::qt
