// Open descriptors: ownership and the calls that a signal may interrupt.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>
#include <utility>

namespace pelmarix::posix {

/// Owns one descriptor; negative for none.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~FileDescriptor() { close(); }

  explicit operator bool() const { return descriptor_ >= 0; }
  int get() const { return descriptor_; }
  int release() { return std::exchange(descriptor_, -1); }

  /// False, with errno, when closing reports that something written before is lost.
  bool close();

 private:
  int descriptor_ = -1;
};

/// openat(2), never inherited by a child process. `path` is relative to `folder` (AT_FDCWD for the working
/// folder) or absolute, and may be longer than the system lets a path be. None, with errno, on failure.
FileDescriptor openFile(int folder, const char* path, int flags, mode_t mode = 0);

/// read(2) and write(2), repeated when a signal interrupts them.
ssize_t readSome(int descriptor, char* bytes, std::size_t size);
ssize_t writeSome(int descriptor, const char* bytes, std::size_t size);

/// The system's own words for an error number.
std::string systemErrorText(int errorNumber);

}  // namespace pelmarix::posix
