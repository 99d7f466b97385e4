#include "posix/file_descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <string>
#include <string_view>

namespace pelmarix::posix {
namespace {

// macOS refuses to read or write more at once.
constexpr std::size_t mostAtOnce = INT_MAX;

template <typename Call>
auto uninterrupted(const Call& call) {
  for (;;) {
    const auto result = call();
    if (result >= 0 || errno != EINTR) return result;
  }
}

Result<std::size_t, std::error_code> countOrError(ssize_t count) {
  if (count < 0) return lastSystemError();
  return static_cast<std::size_t>(count);
}

Result<FileDescriptor, std::error_code> openShortPath(int folder, const char* path, int flags, mode_t mode) {
  const int descriptor = uninterrupted([&] { return ::openat(folder, path, flags | O_CLOEXEC, mode); });
  if (descriptor < 0) return lastSystemError();
  return FileDescriptor(descriptor);
}

// One call takes fewer than PATH_MAX bytes; what is deeper is reached in several steps. The path is
// terminated by NUL.
Result<FileDescriptor, std::error_code> openLongPath(int folder, std::string_view path, int flags,
                                                     mode_t mode) {
  FileDescriptor reached;
  while (path.size() >= PATH_MAX) {
    const std::size_t slash = path.rfind('/', PATH_MAX - 2);
    if (slash == std::string_view::npos || slash == 0) break;
    auto step = openShortPath(folder, std::string(path.substr(0, slash)).c_str(), O_RDONLY | O_DIRECTORY, 0);
    if (!step) return step;
    path.remove_prefix(std::min(path.find_first_not_of('/', slash), path.size()));
    if (path.empty()) return step;
    reached = *std::move(step);
    folder = reached.get();
  }
  return openShortPath(folder, path.data(), flags, mode);
}

}  // namespace

FileDescriptor::~FileDescriptor() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

Result<void, std::error_code> FileDescriptor::close() {
  if (descriptor_ < 0) return {};
  // An interrupted close has closed all the same; a second one could hit a descriptor opened meanwhile.
  if (::close(release()) != 0 && errno != EINTR) return lastSystemError();
  return {};
}

std::error_code lastSystemError() { return {errno, std::system_category()}; }

Result<FileDescriptor, std::error_code> openFile(int folder, const char* path, int flags, mode_t mode) {
  auto file = openShortPath(folder, path, flags, mode);
  if (file || file.error() != std::errc::filename_too_long) return file;
  return openLongPath(folder, path, flags, mode);
}

Result<std::size_t, std::error_code> readSome(const FileDescriptor& file, char* bytes, std::size_t size) {
  return countOrError(uninterrupted([&] { return ::read(file.get(), bytes, std::min(size, mostAtOnce)); }));
}

Result<std::size_t, std::error_code> writeSome(const FileDescriptor& file, const char* bytes,
                                               std::size_t size) {
  return countOrError(uninterrupted([&] { return ::write(file.get(), bytes, std::min(size, mostAtOnce)); }));
}

Result<void, std::error_code> emptyFile(const FileDescriptor& file) {
  if (uninterrupted([&] { return ::ftruncate(file.get(), 0); }) != 0) return lastSystemError();
  return {};
}

}  // namespace pelmarix::posix
