#include "base/fatal.h"

#include <cstddef>
#include <cstdlib>

namespace pelmarix {
namespace {

// Volatile, so that they are written although nothing in the program reads them.
const char* volatile reasonText = nullptr;
volatile std::size_t reasonLength = 0;

}  // namespace

void fatalStop(std::string_view reason) noexcept {
  reasonText = reason.data();
  reasonLength = reason.size();
  std::abort();
}

}  // namespace pelmarix
