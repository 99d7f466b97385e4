// Counts what a program takes from the heap. Linking heap_meter.cpp replaces operator new and delete.
#pragma once

#include <cstddef>

namespace pelmarix {

/// Measures from its construction on. One at a time.
class HeapMeter {
 public:
  HeapMeter();
  /// The most bytes that were held at any moment, above what was held at the start.
  std::size_t peak() const;

 private:
  std::size_t start_;
};

}  // namespace pelmarix
