#include "posix/file_descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <string_view>
#include <system_error>

namespace pelmarix::posix {
namespace {

template <typename Call>
auto uninterrupted(const Call& call) {
  for (;;) {
    const auto result = call();
    if (result >= 0 || errno != EINTR) return result;
  }
}

}  // namespace

bool FileDescriptor::close() {
  if (descriptor_ < 0) return true;
  // An interrupted close has closed all the same; a second one could hit a descriptor opened meanwhile.
  return ::close(release()) == 0 || errno == EINTR;
}

FileDescriptor openFile(int folder, const char* path, int flags, mode_t mode) {
  const auto open = [mode](int base, const char* name, int with) {
    return FileDescriptor(uninterrupted([&] { return ::openat(base, name, with | O_CLOEXEC, mode); }));
  };
  FileDescriptor file = open(folder, path, flags);
  if (file || errno != ENAMETOOLONG) return file;

  // One call takes fewer than PATH_MAX bytes; what is deeper is reached in several steps.
  std::string_view rest = path;
  FileDescriptor step;
  while (rest.size() >= PATH_MAX) {
    const std::size_t slash = rest.rfind('/', PATH_MAX - 2);
    if (slash == std::string_view::npos || slash == 0) break;
    step =
        open(step ? step.get() : folder, std::string(rest.substr(0, slash)).c_str(), O_RDONLY | O_DIRECTORY);
    if (!step) return step;
    rest.remove_prefix(std::min(rest.find_first_not_of('/', slash), rest.size()));
    if (rest.empty()) return step;
  }
  return open(step ? step.get() : folder, rest.data(), flags);
}

ssize_t readSome(int descriptor, char* bytes, std::size_t size) {
  return uninterrupted([&] { return ::read(descriptor, bytes, size); });
}

ssize_t writeSome(int descriptor, const char* bytes, std::size_t size) {
  return uninterrupted([&] { return ::write(descriptor, bytes, size); });
}

std::string systemErrorText(int errorNumber) { return std::system_category().message(errorNumber); }

}  // namespace pelmarix::posix
