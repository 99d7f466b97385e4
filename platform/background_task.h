// Child processes that run while the program goes on.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelmarix::platform {

/// One child process, launched once, whose output is taken as it comes. Destroying a task whose child still
/// runs ends the child. Main thread only, whose event loop calls the handlers; none is called once the task
/// is gone.
class BackgroundTask {
 public:
  static std::unique_ptr<BackgroundTask> make();

  virtual ~BackgroundTask() = default;

  /// Starts a program as Task does; what it writes to standard error is lost. `takeOutput` gets what it
  /// prints, piece by piece in order. Then, when it has ended, `end` is called once with its exit status, as
  /// Task has it; there is none when the program couldn't be started or its output not be read. Both may
  /// destroy the task.
  virtual void launch(const std::string& path, const std::vector<std::string>& arguments,
                      std::function<void(std::string_view)> takeOutput,
                      std::function<void(std::optional<int>)> end) = 0;
};

}  // namespace pelmarix::platform
