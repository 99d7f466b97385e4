// Calls of the system that fail when a test wants it. Linking fault_injection.cpp puts them in front of the C
// library's, for this program and for the C++ library.
#pragma once

#include <map>
#include <string_view>

namespace pelmarix::test {

/// In place of an error: no more than one byte is read or written.
inline constexpr int oneByteOnly = -1;

/// While it lives, one call fails once. One at a time.
///
/// What fails has happened as far as the system lets it: a descriptor that can't be closed is closed, and a
/// child that isn't there is one that somebody else has waited for.
class FaultInjection {
 public:
  /// The call of this name fails with the error when it is made for the `place`th time; never when that is 0.
  FaultInjection(std::string_view call, int place, int error);
  ~FaultInjection();
  FaultInjection(const FaultInjection&) = delete;
  FaultInjection& operator=(const FaultInjection&) = delete;

  /// How often each was called.
  const std::map<std::string_view, int>& calls() const { return calls_; }
  /// False when the call wasn't made so often.
  bool hasFailed() const { return calls_.contains(call_) && calls_.at(call_) >= place_; }

  /// For the calls themselves: the error with which this one fails; 0 for none.
  static int errorOf(std::string_view call);

 private:
  std::string_view call_;
  int place_;
  int error_;
  std::map<std::string_view, int> calls_;
};

}  // namespace pelmarix::test
