// Open descriptors: ownership, and the calls that a signal may interrupt.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <system_error>
#include <utility>

#include "base/result.h"

namespace pelmarix::posix {

/// Owns one descriptor; negative for none.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    FileDescriptor taken(std::move(other));
    std::swap(descriptor_, taken.descriptor_);
    return *this;
  }
  ~FileDescriptor();

  int get() const { return descriptor_; }
  int release() { return std::exchange(descriptor_, -1); }

  /// Fails when something that was written before is lost. Closed it is in any case.
  Result<void, std::error_code> close();

 private:
  int descriptor_ = -1;
};

/// What errno says just now.
std::error_code lastSystemError();

/// openat(2), never inherited by a child process. `path` is relative to `folder` (AT_FDCWD for the working
/// folder) or absolute, and may be longer than the system lets a path be.
Result<FileDescriptor, std::error_code> openFile(int folder, const char* path, int flags, mode_t mode = 0);

/// read(2) and write(2), repeated when a signal interrupts them: how many bytes were moved, 0 at the end of
/// what is read.
Result<std::size_t, std::error_code> readSome(const FileDescriptor& file, char* bytes, std::size_t size);
Result<std::size_t, std::error_code> writeSome(const FileDescriptor& file, const char* bytes,
                                               std::size_t size);

/// ftruncate(2) to nothing, likewise.
Result<void, std::error_code> emptyFile(const FileDescriptor& file);

}  // namespace pelmarix::posix
