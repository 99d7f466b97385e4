// Child processes that run while the program goes on.
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "platform/background_task.h"
#include "posix/posix_task.h"

namespace pelmarix::qt {

/// A child as posix/ starts and ends it. The event loop of the thread that made it tells of its output.
class ChildProcess final : public platform::BackgroundTask, private QObject {
 public:
  /// `companionFolder` has the programs that come with this one.
  explicit ChildProcess(std::string companionFolder) : task_(std::move(companionFolder)) {}

  void launch(const std::string& path, const std::vector<std::string>& arguments,
              std::function<void(std::string_view)> takeOutput,
              std::function<void(std::optional<int>)> end) override;

 private:
  void readOutput();
  void awaitEnd();
  void endWithoutStatus();

  std::optional<posix::PosixPipe> pipe_;
  std::optional<QSocketNotifier> readable_;
  posix::PosixTask task_;
  std::function<void(std::string_view)> takeOutput_;
  std::function<void(std::optional<int>)> end_;
};

}  // namespace pelmarix::qt
