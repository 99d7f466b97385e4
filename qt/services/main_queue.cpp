#include "qt/services/main_queue.h"

#include <QScopeGuard>
#include <utility>

namespace pelmarix::qt {

void MainQueue::dispatch(std::function<void()> block) {
  QMetaObject::invokeMethod(
      this,
      [this, block = std::move(block)]() mutable {
        waiting_.push_back(std::move(block));
        runNext();
      },
      Qt::QueuedConnection);
}

void MainQueue::runAlone(const std::function<void()>& work) {
  ++runningAlone_;
  const auto goOn = qScopeGuard([this] {
    --runningAlone_;
    QMetaObject::invokeMethod(
        this, [this] { runNext(); }, Qt::QueuedConnection);
  });
  work();
}

void MainQueue::runNext() {
  if (runningAlone_ != 0 || waiting_.empty()) return;
  const std::function<void()> block = std::move(waiting_.front());
  waiting_.pop_front();
  runAlone(block);
}

}  // namespace pelmarix::qt
