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
    add(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
  }
  void add(double seconds) { seconds_.push_back(seconds); }

  /// In seconds. There must have been a time. The best is the one that other programs delayed least.
  double best() const { return *std::min_element(seconds_.begin(), seconds_.end()); }
  double median() const {
    std::vector<double> sorted = seconds_;
    std::sort(sorted.begin(), sorted.end());
    return sorted[sorted.size() / 2];
  }

 private:
  std::vector<double> seconds_;
};

}  // namespace pelmarix::bench
