#include "qt/services/main_queue.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace pelmarix::qt {
namespace {

void runEvents() {
  // Each call runs one block at most.
  for (int call = 0; call < 100; ++call) QCoreApplication::processEvents();
}

TEST(MainQueue, RunsBlocksInOrderAfterWhatRunsNow) {
  MainQueue queue;
  std::string order;
  queue.dispatch([&] { order += "b"; });
  queue.dispatch([&] { order += "c"; });
  order += "a";
  runEvents();
  EXPECT_EQ(order, "abc");
}

TEST(MainQueue, RunsABlockOfAnotherThreadOnTheMainThread) {
  MainQueue queue;
  std::thread::id ranOn;
  std::thread([&] { queue.dispatch([&] { ranOn = std::this_thread::get_id(); }); }).join();
  runEvents();
  EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST(MainQueue, RunsABlockThatABlockDispatches) {
  MainQueue queue;
  std::string order;
  queue.dispatch([&] {
    queue.dispatch([&] { order += "b"; });
    order += "a";
  });
  runEvents();
  EXPECT_EQ(order, "ab");
}

TEST(MainQueue, LetsABlockFinishItsModalLoopBeforeTheNextBegins) {
  MainQueue queue;
  std::string order;
  queue.dispatch([&] {
    order += "begin ";
    runEvents();  // what an alert's own event loop does
    order += "end ";
  });
  queue.dispatch([&] { order += "next "; });
  queue.dispatch([&] { order += "last"; });
  runEvents();
  EXPECT_EQ(order, "begin end next last");
}

TEST(MainQueue, BeginsNoBlockWhileSomethingRunsAlone) {
  MainQueue queue;
  std::string order;
  queue.runAlone([&] {
    queue.runAlone([&] {
      queue.dispatch([&] { order += "a"; });
      runEvents();
    });
    queue.dispatch([&] { order += "b"; });
    runEvents();
    EXPECT_EQ(order, "");
  });
  EXPECT_EQ(order, "");
  runEvents();
  EXPECT_EQ(order, "ab");
}

TEST(MainQueue, GoesOnAfterWhatRanAloneHasThrown) {
  MainQueue queue;
  bool hasRun = false;
  const auto work = [&] {
    queue.dispatch([&] { hasRun = true; });
    throw std::runtime_error("thrown");
  };
  EXPECT_THROW(queue.runAlone(work), std::runtime_error);
  runEvents();
  EXPECT_TRUE(hasRun);
}

TEST(MainQueue, DropsBlocksWhenItGoes) {
  const auto held = std::make_shared<int>(1);
  bool hasRun = false;
  {
    MainQueue queue;
    queue.dispatch([held, &hasRun] { hasRun = true; });
    queue.runAlone([&] {
      queue.dispatch([held, &hasRun] { hasRun = true; });
      runEvents();
    });
  }
  EXPECT_EQ(held.use_count(), 1);
  runEvents();
  EXPECT_FALSE(hasRun);
}

TEST(MainQueue, ReleasesABlockOnceItHasRun) {
  MainQueue queue;
  const auto held = std::make_shared<int>(1);
  queue.dispatch([held] {});
  runEvents();
  EXPECT_EQ(held.use_count(), 1);
}

TEST(MainQueue, RunsTheBlocksOfManyThreads) {
  MainQueue queue;
  std::atomic<int> ran = 0;
  std::vector<std::thread> threads(4);
  for (std::thread& thread : threads)
    thread = std::thread([&] {
      for (int block = 0; block < 1000; ++block) queue.dispatch([&ran] { ++ran; });
    });
  while (ran != 4000) QCoreApplication::processEvents();
  for (auto& thread : threads) thread.join();
}

}  // namespace
}  // namespace pelmarix::qt
