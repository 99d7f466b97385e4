// Child processes.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "base/result.h"

namespace pelmarix::platform {

/// Thrown by Task::launch when the program can't be started (missing, not executable, no process to be had).
class TaskLaunchError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A pipe from a child process: what the child writes until it closes its end.
class Pipe {
 public:
  /// Throws TaskLaunchError when there is none to be had.
  static std::unique_ptr<Pipe> make();

  virtual ~Pipe() = default;
  /// Blocks until the child has closed its end; every byte in order. Empty when no child was started.
  virtual Result<std::string, std::error_code> readDataToEndOfFile() = 0;
};

/// One child process, launched once. Destroying a task whose child still runs ends the child.
class Task {
 public:
  static std::unique_ptr<Task> make();

  virtual ~Task() = default;
  /// The program's path, used as it stands: no shell and no search path.
  virtual void setLaunchPath(const std::string& path) = 0;
  /// Each string is one argument, whatever it holds. The program's own name is not among them.
  virtual void setArguments(const std::vector<std::string>& arguments) = 0;
  /// `pipe` must be of the same toolkit and outlive the launch. Standard input, standard error, environment
  /// and working folder are the program's own; the child gets no other descriptor.
  virtual void setStandardOutput(Pipe& pipe) = 0;
  /// Starts the child. Throws TaskLaunchError.
  virtual void launch() = 0;
  virtual void waitUntilExit() = 0;
  /// After waitUntilExit: the exit status, 0 for success; for a child that a signal ended, that signal's
  /// number. Never 0 when the status couldn't be had.
  virtual int terminationStatus() const = 0;
};

}  // namespace pelmarix::platform
