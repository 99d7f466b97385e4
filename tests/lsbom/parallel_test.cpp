#include "lsbom/parallel.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace pelmarix::lsbom {
namespace {

TEST(InParallel, CallsEveryIndexOnce) {
  std::vector<int> calls(1000);
  inParallel(calls.size(), [&calls](std::size_t index) { ++calls[index]; });
  EXPECT_EQ(calls, std::vector<int>(1000, 1));
}

TEST(InParallel, CallsNothingForNothing) {
  inParallel(0, [](std::size_t) { FAIL(); });
}

TEST(InParallel, KeepsASingleCallOnItsOwnThread) {
  std::thread::id thread;
  inParallel(1, [&thread](std::size_t) { thread = std::this_thread::get_id(); });
  EXPECT_EQ(thread, std::this_thread::get_id());
}

}  // namespace
}  // namespace pelmarix::lsbom
