#include "posix/posix_file_manager.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

#include "posix/file_contents.h"
#include "posix/file_descriptor.h"
#include "posix/folder_walk.h"

namespace pelmarix::posix {
namespace {

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = writeSome(descriptor, bytes.data(), bytes.size());
    if (count < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

}  // namespace

std::unique_ptr<platform::DirectoryEnumerator> PosixFileManager::enumeratorAtPath(const std::string& path) {
  return FolderWalk::open(volume_.resolve(path));
}

bool PosixFileManager::readFile(const std::string& path, std::string& contents) {
  const FileDescriptor file = openFile(AT_FDCWD, volume_.resolve(path).c_str(), openForReading);
  if (file) return readRemainder(file.get(), contents);
  contents.clear();
  return false;
}

std::optional<std::string> PosixFileManager::writeFile(const std::string& path,
                                                       const std::vector<std::string_view>& parts) {
  FileDescriptor file =
      openFile(AT_FDCWD, path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_NOCTTY, 0666);
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

}  // namespace pelmarix::posix
