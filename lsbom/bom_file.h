// The file that a bill of materials lies in.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/result.h"

namespace pelmarix::lsbom {

/// The bytes of a regular file: all of them, or the first few where those say that it is no bom.
class BomFile {
 public:
  /// Never waits for anybody. Fails with what the system says, also for what is no regular file or a longer
  /// one than RegularFile::maximumSize.
  static Result<BomFile, std::error_code> read(const std::string& path);

  std::string_view bytes() const { return {bytes_.get(), size_}; }

 private:
  BomFile(std::unique_ptr<char[]> bytes, std::size_t size) : bytes_(std::move(bytes)), size_(size) {}

  std::unique_ptr<char[]> bytes_;
  std::size_t size_;
};

}  // namespace pelmarix::lsbom
