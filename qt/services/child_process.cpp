#include "qt/services/child_process.h"

#include <QTimer>
#include <array>
#include <chrono>
#include <thread>

#include "platform/task.h"

namespace pelmarix::qt {

void ChildProcess::launch(const std::string& path, const std::vector<std::string>& arguments,
                          std::function<void(std::string_view)> takeOutput,
                          std::function<void(std::optional<int>)> end) {
  takeOutput_ = std::move(takeOutput);
  end_ = std::move(end);
  try {
    pipe_.emplace();
    task_.setLaunchPath(path);
    task_.setArguments(arguments);
    task_.setStandardOutput(*pipe_);
    task_.discardStandardError();
    task_.launch();
  } catch (const platform::TaskLaunchError&) {
    return endWithoutStatus();
  }
  readable_.emplace(pipe_->readEnd(), QSocketNotifier::Read);
  connect(&*readable_, &QSocketNotifier::activated, this, [this] { readOutput(); });
}

void ChildProcess::readOutput() {
  std::array<char, std::size_t{64} << 10U> bytes;  // what a pipe holds
  const auto count = pipe_->readAvailableData(bytes.data(), bytes.size());
  if (count && *count > 0) {
    const auto takeOutput = takeOutput_;  // which may destroy this
    return takeOutput({bytes.data(), *count});
  }
  readable_->setEnabled(false);
  if (!count) return endWithoutStatus();
  using namespace std::chrono_literals;
  // One that is just ending has the processor for that, instead of a timer's whole millisecond.
  if (task_.isRunning()) std::this_thread::sleep_for(100us);
  awaitEnd();
}

void ChildProcess::awaitEnd() {
  using namespace std::chrono_literals;
  // A child that has closed its output may go on for long. The program doesn't wait for it.
  if (task_.isRunning()) return QTimer::singleShot(1ms, this, [this] { awaitEnd(); });
  task_.waitUntilExit();
  const auto end = std::move(end_);
  end(task_.terminationStatus());
}

void ChildProcess::endWithoutStatus() {
  QTimer::singleShot(0, this, [this] {
    const auto end = std::move(end_);
    end(std::nullopt);
  });
}

}  // namespace pelmarix::qt
