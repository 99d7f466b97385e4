#include "base/fatal.h"

#include <cstdlib>

namespace pelmarix {

void fatalStop(std::string_view reason) noexcept {
  // Kept where a debugger finds it.
  [[maybe_unused]] static volatile const char* lastReason = nullptr;
  lastReason = reason.data();
  std::abort();
}

}  // namespace pelmarix
