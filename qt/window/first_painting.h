// The moment from which the main window can be seen.
#pragma once

#include <QWidget>
#include <chrono>
#include <functional>

namespace pelmarix::qt {

/// Holds work back until a window has been painted for the first time. Without it the update check holds the
/// painting up by 4 ms of 56, on a busy machine by 49 ms of 159, and a quick server's offer comes up before
/// the window.
class FirstPainting final : private QObject {
 public:
  /// Calls `work` once, from the event loop, when all of `window` has been painted; at the latest when it has
  /// been shown for as long as `timeout`, for a window on another desktop may never be painted. The window
  /// isn't owned, and isn't shown yet: some displays paint it as soon as it is.
  FirstPainting(QWidget& window, std::function<void()> work,
                std::chrono::milliseconds timeout = std::chrono::seconds(1));

  /// Does the work now if it is still to come: a window may be closed before it is painted.
  void waitNoLonger();

 private:
  bool eventFilter(QObject* window, QEvent* event) override;

  std::function<void()> work_;
  const std::chrono::milliseconds timeout_;
};

}  // namespace pelmarix::qt
