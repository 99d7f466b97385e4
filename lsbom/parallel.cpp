#include "lsbom/parallel.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

namespace pelmarix::lsbom {
namespace {

// The work here is bound by memory: more threads than this gain nothing.
constexpr std::size_t mostThreads = 4;

}  // namespace

void inParallel(std::size_t count, std::size_t atOnce,
                const std::function<void(std::size_t, std::size_t)>& work) {
  const std::size_t ranges = (count + atOnce - 1) / atOnce;
  std::atomic<std::size_t> next = 0;
  const auto run = [&]() noexcept {
    for (std::size_t range = next++; range < ranges; range = next++) {
      work(range * atOnce, std::min(count, (range + 1) * atOnce));
    }
  };
  std::vector<std::jthread> others;
  const std::size_t threads =
      std::min({ranges, mostThreads, std::size_t{std::thread::hardware_concurrency()}});
  try {
    while (others.size() + 1 < threads) others.emplace_back(run);
  } catch (const std::system_error&) {
    // Where the system gives no more threads, those there are do all the work.
  }
  run();
}

}  // namespace pelmarix::lsbom
