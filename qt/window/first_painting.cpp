#include "qt/window/first_painting.h"

#include <QEvent>
#include <QTimer>
#include <utility>

namespace pelmarix::qt {

FirstPainting::FirstPainting(QWidget& window, std::function<void()> work, std::chrono::milliseconds timeout)
    : work_(std::move(work)), timeout_(timeout) {
  window.installEventFilter(this);
}

void FirstPainting::waitNoLonger() {
  if (const auto work = std::exchange(work_, nullptr)) work();
}

bool FirstPainting::eventFilter(QObject* window, QEvent* event) {
  if (event->type() == QEvent::Show) QTimer::singleShot(timeout_, this, [this] { waitNoLonger(); });
  if (event->type() == QEvent::Paint) {
    window->removeEventFilter(this);
    // What the window holds is painted before the event loop goes on.
    QMetaObject::invokeMethod(
        this, [this] { waitNoLonger(); }, Qt::QueuedConnection);
  }
  return false;
}

}  // namespace pelmarix::qt
