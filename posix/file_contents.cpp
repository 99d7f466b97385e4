#include "posix/file_contents.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <new>

#include "posix/file_descriptor.h"

namespace pelmarix::posix {
namespace {

// Reads until the end, whatever size the file had before: it may be written to meanwhile.
bool readToEnd(int descriptor, std::size_t expectedSize, std::string& contents, std::size_t size) {
  // One byte more than expected, so that one call both reads the file and finds its end.
  contents.resize(std::max(size, expectedSize) + 1);
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

bool readRegularFile(int descriptor, std::string& contents, std::size_t size) {
  struct stat status = {};
  if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return false;
  const auto expectedSize = static_cast<std::uintmax_t>(status.st_size);
  if (expectedSize > maximumFileSize) return false;
  try {
    return readToEnd(descriptor, static_cast<std::size_t>(expectedSize), contents, size);
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace

const int openForReading = O_RDONLY | O_NONBLOCK | O_NOCTTY;

bool readRemainder(int descriptor, std::string& contents, std::size_t size) {
  contents.resize(size);
  const bool isRead = readRegularFile(descriptor, contents, size);
  if (!isRead) contents.clear();
  return isRead;
}

}  // namespace pelmarix::posix
