#include "lsbom/parallel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <vector>

namespace pelmarix::lsbom {
namespace {

TEST(InParallel, CoversEveryIndexOnce) {
  std::vector<int> calls(1000);
  inParallel(calls.size(), 7, [&calls](std::size_t begin, std::size_t end) {
    EXPECT_EQ(begin % 7, 0U);
    EXPECT_EQ(end, std::min(begin + 7, calls.size()));
    for (std::size_t index = begin; index < end; ++index) ++calls[index];
  });
  EXPECT_EQ(calls, std::vector<int>(1000, 1));
}

TEST(InParallel, CallsNothingForNothing) {
  inParallel(0, 7, [](std::size_t, std::size_t) { FAIL(); });
}

TEST(InParallel, KeepsASingleCallOnItsOwnThread) {
  std::thread::id thread;
  inParallel(7, 7, [&thread](std::size_t, std::size_t) { thread = std::this_thread::get_id(); });
  EXPECT_EQ(thread, std::this_thread::get_id());
}

}  // namespace
}  // namespace pelmarix::lsbom
