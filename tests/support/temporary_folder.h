// A folder of its own for one test, and bodies of tests that run in a child process.
#pragma once

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace pelmarix::test {

/// Removed with everything in it at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "pelmarix-test-XXXXXX").native();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::string& path() const { return path_; }
  std::string operator/(std::string_view relative) const { return path_ + "/" + std::string(relative); }

  std::string addFolder(std::string_view relative) const {
    std::filesystem::create_directories(*this / relative);
    return *this / relative;
  }
  /// Makes the folders above it too.
  std::string addFile(std::string_view relative, std::string_view contents = "") const {
    const std::filesystem::path file = *this / relative;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << contents;
    return file.native();
  }
  std::string addLink(std::string_view relative, const std::string& target) const {
    std::filesystem::create_symlink(target, *this / relative);
    return *this / relative;
  }
  std::string addFifo(std::string_view relative) const {
    if (mkfifo((*this / relative).c_str(), 0666) != 0) throw std::runtime_error("no FIFO");
    return *this / relative;
  }

 private:
  std::string path_;
};

inline std::string contentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Runs `body` in a child process, which may give up rights and change limits, and returns its result.
inline std::string inChild(const std::function<std::string()>& body) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  const pid_t child = fork();
  if (child == 0) {
    std::string result;
    try {
      result = body();
    } catch (const std::exception& failure) {
      result = std::string("exception: ") + failure.what();
    }
    const auto written = write(ends[1], result.data(), result.size());
    _exit(written == static_cast<ssize_t>(result.size()) ? 0 : 1);
  }
  close(ends[1]);
  std::string result;
  char bytes[4096];
  for (ssize_t count; (count = read(ends[0], bytes, sizeof bytes)) > 0;)
    result.append(bytes, static_cast<std::size_t>(count));
  close(ends[0]);
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || status != 0) return "the child process failed";
  return result;
}

/// Runs `body` as a user who owns nothing and has no rights beyond everybody's; permissions mean nothing to
/// the superuser.
inline std::string withoutPrivileges(const std::function<std::string()>& body) {
  return inChild([&]() -> std::string {
    constexpr unsigned nobody = 65534;
    if (geteuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0)) return "can't give up rights";
    return body();
  });
}

}  // namespace pelmarix::test
