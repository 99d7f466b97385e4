#include "qt/services/main_queue.h"

#include <QCoreApplication>
#include <QEvent>
#include <deque>
#include <mutex>
#include <utility>

namespace pelmarix::qt {

struct MainQueue::Waiting {
  std::mutex mutex;
  std::deque<std::function<void()>> blocks;
  /// Null when the queue is gone.
  QObject* queue = nullptr;

  void dispatch(std::function<void()> block) {
    const std::lock_guard lock(mutex);
    if (queue == nullptr) return;
    blocks.push_back(std::move(block));
    QCoreApplication::postEvent(queue, new QEvent(QEvent::User));
  }

  /// Null when none waits.
  std::function<void()> next() {
    const std::lock_guard lock(mutex);
    if (blocks.empty()) return nullptr;
    std::function<void()> block = std::move(blocks.front());
    blocks.pop_front();
    return block;
  }
};

MainQueue::MainQueue() : waiting_(std::make_shared<Waiting>()) { waiting_->queue = this; }

MainQueue::~MainQueue() {
  std::deque<std::function<void()>> dropped;
  const std::lock_guard lock(waiting_->mutex);
  waiting_->queue = nullptr;
  // Released after the lock: what a block holds may dispatch when it goes.
  dropped.swap(waiting_->blocks);
}

std::function<void(std::function<void()>)> MainQueue::dispatcher() const {
  return [waiting = waiting_](std::function<void()> block) { waiting->dispatch(std::move(block)); };
}

void MainQueue::customEvent(QEvent* /*event*/) {
  // Whoever pauses the queue wakes it at the end.
  if (pauses_ != 0) return;
  if (const auto block = waiting_->next()) {
    const Pause pause(*this);
    block();
  }
}

void MainQueue::goOn() {
  if (--pauses_ == 0) QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

}  // namespace pelmarix::qt
