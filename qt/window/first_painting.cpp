#include "qt/window/first_painting.h"

#include <QEvent>
#include <utility>

namespace pelmarix::qt {

FirstPainting::FirstPainting(QWidget& window, std::function<void()> work) : work_(std::move(work)) {
  window.installEventFilter(this);
}

void FirstPainting::waitNoLonger() {
  if (const auto work = std::exchange(work_, nullptr)) work();
}

bool FirstPainting::eventFilter(QObject* window, QEvent* event) {
  if (event->type() == QEvent::Paint) {
    window->removeEventFilter(this);
    // What the window holds is painted before the event loop goes on.
    QMetaObject::invokeMethod(
        this, [this] { waitNoLonger(); }, Qt::QueuedConnection);
  }
  return false;
}

}  // namespace pelmarix::qt
