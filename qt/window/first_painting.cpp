#include "qt/window/first_painting.h"

#include <QEvent>
#include <utility>

namespace pelmarix::qt {

FirstPainting::FirstPainting(QWidget& window) {
  timer_.setSingleShot(true);
  timer_.callOnTimeout([this] { callback_(); });
  window.installEventFilter(this);
}

void FirstPainting::then(std::function<void()> callback, std::chrono::milliseconds patience) {
  callback_ = std::move(callback);
  timer_.start(isPainted_ ? std::chrono::milliseconds(0) : patience);
}

void FirstPainting::waitNoLonger() {
  if (!timer_.isActive()) return;
  timer_.stop();
  callback_();
}

bool FirstPainting::eventFilter(QObject* window, QEvent* event) {
  if (event->type() == QEvent::Paint) {
    window->removeEventFilter(this);
    isPainted_ = true;
    // What the window holds is painted before the event loop goes on.
    if (timer_.isActive()) timer_.start(std::chrono::milliseconds(0));
  }
  return false;
}

}  // namespace pelmarix::qt
