#include "base/fatal.h"

#include <gtest/gtest.h>

#include <csignal>
#include <string>

#ifdef __linux__
#include <fcntl.h>
#include <unistd.h>

// The limits of the program's variables, by the linker.
extern "C" char __data_start;
extern "C" char _end;
#endif

namespace pelmarix::test {
namespace {

TEST(FatalStop, EndsTheProcessByAbort) {
  EXPECT_EXIT(fatalStop("a reason"), testing::KilledBySignal(SIGABRT), "^$");
  EXPECT_EXIT(fatalStop(std::string(1'000'000, 'x')), testing::KilledBySignal(SIGABRT), "^$");
}

TEST(FatalStop, ComesOfANullPointerThatIsRequired) {
  const int* nothing = nullptr;
  const int something = 5;
  EXPECT_EQ(&required(&something, "a reason"), &something);
  EXPECT_EXIT(required(nothing, "a reason"), testing::KilledBySignal(SIGABRT), "^$");
}

#ifdef __linux__
// Made before the signal, whose handler may not ask for memory. Both hold their text outside of the
// variables.
std::string sought;
std::string variables;

/// Tells on standard error whether what is sought is where a core file has it. The memory is read as a file:
/// the sanitizers don't let a program look between its variables.
void tellWhetherItIsKept(int /*signal*/) {
  const int memory = open("/proc/self/mem", O_RDONLY | O_CLOEXEC);
  const ssize_t count =
      pread(memory, variables.data(), variables.size(), reinterpret_cast<off_t>(&__data_start));
  const bool isFound = count > 0 && variables.find(sought) != std::string::npos;
  if (write(STDERR_FILENO, isFound ? "found" : "lost!", 5) != 5) _exit(1);
}

[[noreturn]] void stopFor(const std::string& reason, const std::string& kept) {
  sought = kept + '\0';
  variables.resize(static_cast<std::size_t>(&_end - &__data_start));
  std::signal(SIGABRT, tellWhetherItIsKept);
  fatalStop(reason);
}

TEST(FatalStop, LeavesItsReasonInTheVariablesOfTheProgram) {
  const std::string reason = "the reason of the process " + std::to_string(getpid());
  EXPECT_EXIT(stopFor(reason, reason), testing::KilledBySignal(SIGABRT), "^found$");
}

TEST(FatalStop, LeavesTheBeginningOfALongReason) {
  const std::string most = std::to_string(getpid()) + std::string(255 - std::to_string(getpid()).size(), 'x');
  EXPECT_EXIT(stopFor(most, most), testing::KilledBySignal(SIGABRT), "^found$");
  EXPECT_EXIT(stopFor(most + "more", most), testing::KilledBySignal(SIGABRT), "^found$");
}
#endif

}  // namespace
}  // namespace pelmarix::test
