#include "base/fatal.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

namespace pelmarix {
namespace {

// A copy, for a core file has no constants of the program. Volatile, so that it is written although nothing
// in the program reads it.
volatile char lastReason[256];

}  // namespace

void fatalStop(std::string_view reason) noexcept {
  const std::size_t length = std::min(reason.size(), sizeof lastReason - 1);
  for (std::size_t i = 0; i < length; ++i) lastReason[i] = reason[i];
  std::abort();
}

}  // namespace pelmarix
