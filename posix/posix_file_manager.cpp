#include "posix/posix_file_manager.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "posix/file_descriptor.h"
#include "posix/folder_walk.h"
#include "posix/regular_file.h"

namespace pelmarix::posix {
namespace {

Result<void, std::error_code> writeAll(const FileDescriptor& file, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = writeSome(file, bytes.data(), bytes.size());
    if (!count) return count.error();
    bytes.remove_prefix(*count);
  }
  return {};
}

}  // namespace

std::unique_ptr<platform::DirectoryEnumerator> PosixFileManager::enumeratorAtPath(const std::string& path) {
  return FolderWalk::open(volume_.resolve(path));
}

Result<std::string, std::error_code> PosixFileManager::readFile(const std::string& path) {
  auto file = RegularFile::open(volume_.resolve(path));
  if (!file) return file.error();
  return file->readToEnd();
}

Result<void, std::error_code> PosixFileManager::writeFile(const std::string& path,
                                                          const std::vector<std::string_view>& parts) {
  auto file = openFile(AT_FDCWD, path.c_str(), O_WRONLY | O_CREAT | O_NONBLOCK | O_NOCTTY, 0666);
  if (!file) return file.error();
  struct stat status = {};
  if (fstat(file->get(), &status) != 0) return lastSystemError();
  // The same words as for a FIFO that nobody reads from, which can't be opened at all.
  if (S_ISFIFO(status.st_mode)) return std::make_error_code(std::errc::no_such_device_or_address);
  // Not when it is opened: what can't be written keeps what it holds.
  if (S_ISREG(status.st_mode))
    if (const auto emptied = emptyFile(*file); !emptied) return emptied;
  for (const std::string_view part : parts)
    if (const auto written = writeAll(*file, part); !written) return written;
  return file->close();
}

}  // namespace pelmarix::posix
