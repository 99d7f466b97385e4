#include "posix/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace pelmarix::posix {

Result<RegularFile, std::error_code> RegularFile::open(const std::string& path) {
  auto file = openFile(AT_FDCWD, path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY);
  if (!file) return file.error();
  struct stat status = {};
  if (fstat(file->get(), &status) != 0) return lastSystemError();
  if (S_ISDIR(status.st_mode)) return std::make_error_code(std::errc::is_a_directory);
  if (!S_ISREG(status.st_mode)) return std::make_error_code(std::errc::invalid_argument);
  return RegularFile(*std::move(file), static_cast<std::uintmax_t>(status.st_size));
}

Result<std::size_t, std::error_code> RegularFile::read(char* bytes, std::size_t size) {
  std::size_t total = 0;
  while (total < size) {
    const auto count = readSome(file_, bytes + total, size - total);
    if (!count) return count;
    if (*count == 0) break;
    total += *count;
  }
  return total;
}

Result<std::string, std::error_code> RegularFile::readToEnd() {
  if (size_ > maximumSize) return std::make_error_code(std::errc::file_too_large);
  // One byte more than expected, so that one call both reads the file and finds its end.
  std::string contents(static_cast<std::size_t>(size_) + 1, '\0');
  std::size_t total = 0;
  for (;;) {
    const auto count = readSome(file_, contents.data() + total, contents.size() - total);
    if (!count) return count.error();
    total += *count;
    if (*count == 0 || total == size_) break;
    if (total > maximumSize) return std::make_error_code(std::errc::file_too_large);
    if (total == contents.size()) contents.resize(2 * total);
  }
  contents.resize(total);
  return contents;
}

}  // namespace pelmarix::posix
