#include <cstddef>
#include <cstdint>

#include "fuzz/plist_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (bytes.starts_with("bplist0")) pelmarix::plist::check(bytes);
  return 0;
}
