// The file system of the machine.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/file_manager.h"
#include "posix/volume.h"

namespace pelmarix::posix {

/// Reads below a volume files of up to RegularFile::maximumSize bytes, writes where the user chose.
class PosixFileManager final : public platform::FileManager {
 public:
  explicit PosixFileManager(Volume volume) : volume_(std::move(volume)) {}

  std::unique_ptr<platform::DirectoryEnumerator> enumeratorAtPath(const std::string& path) override;
  Result<std::string, std::error_code> readFile(const std::string& path) override;

  /// A FIFO is refused, for it could block the program for good.
  Result<void, std::error_code> writeFile(const std::string& path,
                                          const std::vector<std::string_view>& parts) override;

 private:
  Volume volume_;
};

}  // namespace pelmarix::posix
