// Child processes of the machine.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/task.h"
#include "posix/file_descriptor.h"

namespace pelmarix::posix {

class PosixPipe final : public platform::Pipe {
 public:
  /// Throws TaskLaunchError when there are no descriptors to be had.
  PosixPipe();

  Result<std::string, std::error_code> readDataToEndOfFile() override;

  /// What there is to read, as far as it has room; waits until there is something. No bytes at the end.
  Result<std::size_t, std::error_code> readAvailableData(char* bytes, std::size_t size) {
    return readSome(readEnd_, bytes, size);
  }

  int readEnd() const { return readEnd_.get(); }
  int writeEnd() const { return writeEnd_.get(); }
  /// Leaves the write end to the child alone, so that the child's end is the end of what is read.
  void closeWriteEnd() { writeEnd_ = FileDescriptor(); }

 private:
  FileDescriptor readEnd_;
  FileDescriptor writeEnd_;
};

/// Where the program at `path` is: there if anything is, whether it can be run or not; else the program of
/// the same file name in `companionFolder`, if there is one.
std::string locateProgram(const std::string& path, const std::string& companionFolder);

/// The child starts with no signal blocked, SIGCHLD and SIGPIPE as usual, other ignored signals ignored. Its
/// first argument, the program's own name, is the path of the program that was started.
class PosixTask final : public platform::Task {
 public:
  /// `companionFolder` has the programs that come with this one.
  explicit PosixTask(std::string companionFolder) : companionFolder_(std::move(companionFolder)) {}

  ~PosixTask() override;

  void setLaunchPath(const std::string& path) override { launchPath_ = path; }
  void setArguments(const std::vector<std::string>& arguments) override { arguments_ = arguments; }
  /// `pipe` must be a PosixPipe.
  void setStandardOutput(platform::Pipe& pipe) override;
  /// What the child writes there is lost.
  void discardStandardError() { hasStandardError_ = false; }

  /// A program that was told to ignore SIGCHLD, by whoever started it, stops doing so: the system would throw
  /// away the status of its children.
  void launch() override;
  void waitUntilExit() override;
  /// False when no child was launched, and once it has ended.
  bool isRunning() const;
  int terminationStatus() const override { return terminationStatus_; }

 private:
  std::string companionFolder_;
  std::string launchPath_;
  std::vector<std::string> arguments_;
  PosixPipe* standardOutput_ = nullptr;
  bool hasStandardError_ = true;
  std::optional<pid_t> child_;
  int terminationStatus_ = -1;
};

}  // namespace pelmarix::posix
