// Numbers that look random and are the same on every run and every machine, which the standard distributions
// don't promise.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

namespace pelmarix::sample {

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}

  /// 0 to `bound` - 1. `bound` is at least 1; the slight bias of the remainder doesn't matter here.
  std::size_t below(std::size_t bound) { return static_cast<std::size_t>(engine_() % bound); }

  /// 0 up to but not including 1, in steps of 2^-53.
  double fraction() { return static_cast<double>(engine_() >> 11) * 0x1p-53; }

 private:
  std::mt19937_64 engine_;
};

}  // namespace pelmarix::sample
