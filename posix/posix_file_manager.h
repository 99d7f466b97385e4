// The file system of the machine.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/file_manager.h"
#include "posix/volume.h"

namespace pelmarix::posix {

/// Reads below a volume files of up to maximumFileSize bytes, writes where the user chose.
class PosixFileManager final : public platform::FileManager {
 public:
  explicit PosixFileManager(Volume volume) : volume_(std::move(volume)) {}

  std::unique_ptr<platform::DirectoryEnumerator> enumeratorAtPath(const std::string& path) override;
  bool readFile(const std::string& path, std::string& contents) override;

  /// A FIFO is refused, for it could block the program for good.
  std::optional<std::string> writeFile(const std::string& path,
                                       const std::vector<std::string_view>& parts) override;

 private:
  Volume volume_;
};

}  // namespace pelmarix::posix
