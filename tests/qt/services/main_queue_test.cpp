#include "qt/services/main_queue.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace pelmarix::qt {
namespace {

void runEvents() {
  // One block runs for each turn at most.
  for (int turn = 0; turn < 100; ++turn) QCoreApplication::processEvents();
}

TEST(MainQueue, RunsBlocksInOrderAfterWhatRunsNow) {
  const MainQueue queue;
  std::string order;
  queue.dispatcher()([&] { order += "b"; });
  queue.dispatcher()([&] { order += "c"; });
  order += "a";
  runEvents();
  EXPECT_EQ(order, "abc");
}

TEST(MainQueue, RunsABlockOfAnotherThreadOnTheMainThread) {
  const MainQueue queue;
  std::thread::id ranOn;
  std::thread([&, dispatch = queue.dispatcher()] {
    dispatch([&] { ranOn = std::this_thread::get_id(); });
  }).join();
  runEvents();
  EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST(MainQueue, RunsABlockThatABlockDispatches) {
  const MainQueue queue;
  std::string order;
  queue.dispatcher()([&] {
    queue.dispatcher()([&] { order += "b"; });
    order += "a";
  });
  runEvents();
  EXPECT_EQ(order, "ab");
}

TEST(MainQueue, LetsABlockFinishItsModalLoopBeforeTheNextBegins) {
  const MainQueue queue;
  std::string order;
  queue.dispatcher()([&] {
    order += "begin ";
    runEvents();  // what an alert's own event loop does
    order += "end ";
  });
  queue.dispatcher()([&] { order += "next "; });
  queue.dispatcher()([&] { order += "last"; });
  runEvents();
  EXPECT_EQ(order, "begin end next last");
}

TEST(MainQueue, BeginsNoBlockDuringAPause) {
  MainQueue queue;
  std::string order;
  {
    const MainQueue::Pause outer(queue);
    {
      const MainQueue::Pause inner(queue);
      queue.dispatcher()([&] { order += "a"; });
      runEvents();
    }
    queue.dispatcher()([&] { order += "b"; });
    runEvents();
    EXPECT_EQ(order, "");
  }
  EXPECT_EQ(order, "");
  runEvents();
  EXPECT_EQ(order, "ab");
}

TEST(MainQueue, DropsBlocksWhenItGoesAndAfterwards) {
  const auto held = std::make_shared<int>(1);
  bool hasRun = false;
  std::function<void(std::function<void()>)> dispatch;
  {
    const MainQueue queue;
    dispatch = queue.dispatcher();
    dispatch([held, &hasRun] { hasRun = true; });
  }
  EXPECT_EQ(held.use_count(), 1);
  dispatch([held, &hasRun] { hasRun = true; });
  EXPECT_EQ(held.use_count(), 1);
  runEvents();
  EXPECT_FALSE(hasRun);
}

TEST(MainQueue, ReleasesABlockOnceItHasRun) {
  const MainQueue queue;
  const auto held = std::make_shared<int>(1);
  queue.dispatcher()([held] {});
  runEvents();
  EXPECT_EQ(held.use_count(), 1);
}

TEST(MainQueue, TakesBlocksOfManyThreadsWhileItGoes) {
  std::atomic<int> ran = 0;
  std::vector<std::thread> threads;
  {
    const MainQueue queue;
    for (int thread = 0; thread < 4; ++thread)
      threads.emplace_back([&ran, dispatch = queue.dispatcher()] {
        for (int block = 0; block < 1000; ++block) dispatch([&ran] { ++ran; });
      });
    while (ran == 0) QCoreApplication::processEvents();
  }
  for (auto& thread : threads) thread.join();
  const int before = ran;
  runEvents();
  EXPECT_EQ(ran, before);
}

}  // namespace
}  // namespace pelmarix::qt
