#include "qt/file_manager.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <new>

#include "qt/file_descriptor.h"
#include "qt/folder_walk.h"

namespace pelmarix::qt {
namespace {

// Reads until the end, whatever size the file had before: it may be written to meanwhile.
bool readToEnd(int descriptor, std::size_t expectedSize, std::string& contents) {
  // One byte more than expected, so that one call both reads the file and finds its end.
  contents.resize(expectedSize + 1);
  std::size_t size = 0;
  for (;;) {
    const ssize_t count = readSome(descriptor, contents.data() + size, contents.size() - size);
    if (count < 0) return false;
    size += static_cast<std::size_t>(count);
    if (count == 0 || size == expectedSize) break;
    if (size > maximumFileSize) return false;
    if (size == contents.size()) contents.resize(2 * size);
  }
  contents.resize(size);
  return true;
}

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = writeSome(descriptor, bytes.data(), bytes.size());
    if (count < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

}  // namespace

std::unique_ptr<DirectoryEnumerator> PosixFileManager::enumeratorAtPath(const std::string& path) {
  return FolderWalk::open(volume_.resolve(path));
}

bool PosixFileManager::readFile(const std::string& path, std::string& contents) {
  contents.clear();
  // O_NONBLOCK: opening a FIFO or a device would wait for whoever is at its other end.
  const FileDescriptor file = openFile(AT_FDCWD, volume_.resolve(path), O_RDONLY | O_NONBLOCK | O_NOCTTY);
  struct stat status = {};
  if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  const auto size = static_cast<std::uintmax_t>(status.st_size);
  if (size > maximumFileSize) return false;
  try {
    if (readToEnd(file.get(), static_cast<std::size_t>(size), contents)) return true;
  } catch (const std::bad_alloc&) {
  }
  contents.clear();
  return false;
}

std::optional<std::string> PosixFileManager::writeFile(const std::string& path,
                                                       const std::vector<std::string_view>& parts) {
  FileDescriptor file = openFile(AT_FDCWD, path, O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_NOCTTY, 0666);
  if (!file) return systemErrorText(errno);
  struct stat status = {};
  if (fstat(file.get(), &status) != 0) return systemErrorText(errno);
  // The same words as for a FIFO that nobody reads from, which can't be opened at all.
  if (S_ISFIFO(status.st_mode)) return systemErrorText(ENXIO);
  for (const std::string_view part : parts)
    if (!writeAll(file.get(), part)) return systemErrorText(errno);
  if (!file.close()) return systemErrorText(errno);
  return std::nullopt;
}

}  // namespace pelmarix::qt
