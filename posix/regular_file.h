// Files that are read. Those of a volume are untrusted: a FIFO or a device in the place of a file must not
// block the program, nor a file with a hole of a terabyte take its memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <system_error>
#include <utility>

#include "base/result.h"
#include "posix/file_descriptor.h"

namespace pelmarix::posix {

/// An open file that is neither a folder nor a FIFO nor a device.
class RegularFile {
 public:
  /// Opens the file for reading without waiting for anybody. What is no regular file is refused.
  static Result<RegularFile, std::error_code> open(const std::string& path);

  /// In bytes, when it was opened; it may have become longer or shorter since.
  std::uintmax_t size() const { return size_; }

  /// Reads on from where the last call ended: `size` bytes, or fewer where the file ends.
  Result<std::size_t, std::error_code> read(char* bytes, std::size_t size);

  /// Reads on to the end. Files of more than maximumSize bytes are refused.
  Result<std::string, std::error_code> readToEnd();

  /// 256 MiB: a property list of the system has less than a hundredth of it.
  static constexpr std::size_t maximumSize = std::size_t{256} << 20U;

 private:
  RegularFile(FileDescriptor file, std::uintmax_t size) : file_(std::move(file)), size_(size) {}

  FileDescriptor file_;
  std::uintmax_t size_;
};

}  // namespace pelmarix::posix
