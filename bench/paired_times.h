// Times of two ways to do the same, taken in turn, so that whatever else the machine does meets both alike.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace pelmarix::bench {

/// How long the work takes once, in seconds.
template <typename Work>
double secondsFor(const Work& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// Must not be empty.
inline double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace pelmarix::bench
