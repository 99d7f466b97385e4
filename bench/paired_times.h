// Two ways to do the same are timed alternately, so that whatever else the machine does meets both alike.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace pelmarix::bench {

/// The times of one of the two.
class Times {
 public:
  /// Does the work once.
  template <typename Work>
  void take(const Work& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    seconds_.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
  }

  /// In seconds. There must have been a time.
  double median() const {
    std::vector<double> sorted = seconds_;
    std::sort(sorted.begin(), sorted.end());
    return sorted[sorted.size() / 2];
  }

 private:
  std::vector<double> seconds_;
};

}  // namespace pelmarix::bench
