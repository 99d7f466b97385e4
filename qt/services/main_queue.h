// Blocks that any thread hands to the main thread.
#pragma once

#include <QObject>
#include <deque>
#include <functional>

namespace pelmarix::qt {

/// Runs one block after the other from the event loop of the thread that made the queue.
class MainQueue final : private QObject {
 public:
  /// Can be called from any thread while the queue lives. Blocks that wait when it goes are dropped.
  void dispatch(std::function<void()> block);

  /// Runs `work`, which may have an event loop of its own, and begins no block until it has ended. So are run
  /// each block and each alert: an update isn't offered over an alert. Main thread only.
  void runAlone(const std::function<void()>& work);

 private:
  void runNext();

  std::deque<std::function<void()>> waiting_;
  int runningAlone_ = 0;
};

}  // namespace pelmarix::qt
