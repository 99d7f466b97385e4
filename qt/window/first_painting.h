// The moment from which the program can be seen.
#pragma once

#include <QObject>
#include <QTimer>
#include <QWidget>
#include <chrono>
#include <functional>

namespace pelmarix::qt {

/// Notices when a window is painted for the first time, so that work which can wait holds that up by nothing.
/// Must be made before the window is shown: some displays paint it at once.
class FirstPainting final : private QObject {
 public:
  /// `window` isn't owned. When it goes, it just isn't painted any more.
  explicit FirstPainting(QWidget& window);

  /// Calls back once, from the event loop, when all of the window has been painted. A window on another
  /// desktop may never be: then that is after `patience`. Nothing is called when this object has gone.
  void then(std::function<void()> callback, std::chrono::milliseconds patience = std::chrono::seconds(1));
  /// Calls back now and from here if that is still to come.
  void waitNoLonger();

 private:
  bool eventFilter(QObject* window, QEvent* event) override;

  std::function<void()> callback_;
  QTimer timer_;  // runs as long as the call is to come
  bool isPainted_ = false;
};

}  // namespace pelmarix::qt
