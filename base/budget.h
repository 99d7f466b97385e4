// What untrusted input may cost.
#pragma once

#include <cstddef>

namespace pelmarix {

/// So many bytes of memory, or what counts as such.
class Budget {
 public:
  explicit Budget(std::size_t bytes) : left_(bytes) {}

  /// Takes something off; false when it isn't there.
  bool spend(std::size_t cost) {
    if (cost > left_) return false;
    left_ -= cost;
    return true;
  }
  std::size_t left() const { return left_; }

 private:
  std::size_t left_;
};

/// Looking through a dictionary takes time, for which each of its keys counts as so many bytes.
inline constexpr std::size_t costOfKey = 16;

}  // namespace pelmarix
