// The one way in which the program stops on a condition that it takes as impossible.
#pragma once

#include <string_view>

namespace pelmarix {

/// Ends the process by abort, without unwinding and without a message; `reason` is for the debugger and the
/// core file, which has its first 255 bytes. For broken wiring and the conditions named as fatal only, never
/// for outside input that is handled.
[[noreturn]] void fatalStop(std::string_view reason) noexcept;

/// What `pointer` points to. Null (an unconnected outlet, a service that was never installed) stops the
/// program with `reason`.
template <typename T>
T& required(T* pointer, std::string_view reason) noexcept {
  if (pointer == nullptr) fatalStop(reason);
  return *pointer;
}

}  // namespace pelmarix
