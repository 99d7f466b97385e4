// Blocks that any thread hands to the main thread.
#pragma once

#include <QObject>
#include <functional>
#include <memory>

namespace pelmarix::qt {

/// Runs one block after the other, each from the event loop of the thread that made the queue. A block that
/// shows something modal has an event loop running within it; the next block waits until it has returned all
/// the same.
class MainQueue final : private QObject {
 public:
  MainQueue();
  /// Blocks that wait are dropped.
  ~MainQueue() override;

  /// To be called from any thread, also when the queue is gone; then the block is dropped.
  std::function<void(std::function<void()>)> dispatcher() const;

  /// No block begins while this lives. For what is modal and must not be disturbed. Main thread only.
  class Pause {
   public:
    explicit Pause(MainQueue& queue) : queue_(queue) { ++queue_.pauses_; }
    ~Pause() { queue_.goOn(); }
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;

   private:
    MainQueue& queue_;
  };

 private:
  /// What the threads share; it outlives the queue as long as somebody may dispatch.
  struct Waiting;

  void customEvent(QEvent* event) override;
  void goOn();

  std::shared_ptr<Waiting> waiting_;
  /// A running block counts as a pause.
  int pauses_ = 0;
};

}  // namespace pelmarix::qt
