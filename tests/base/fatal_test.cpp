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
/// Made anew for each use, so that no variable of the test holds it.
std::string reasonOfThisProcess() { return "the reason of " + std::to_string(getpid()); }

/// Tells on standard error whether the reason is where a core file has it. The memory is read as a file: the
/// sanitizers don't let a program look between its variables.
void tellWhereReasonIs(int /*signal*/) {
  std::string variables(static_cast<std::size_t>(&_end - &__data_start), '\0');
  const int memory = open("/proc/self/mem", O_RDONLY | O_CLOEXEC);
  const ssize_t count =
      pread(memory, variables.data(), variables.size(), reinterpret_cast<off_t>(&__data_start));
  const bool isFound = count > 0 && variables.find(reasonOfThisProcess()) != std::string::npos;
  dprintf(STDERR_FILENO, isFound ? "found" : "lost");
}

TEST(FatalStop, LeavesItsReasonInTheVariablesOfTheProgram) {
  EXPECT_EXIT(
      {
        std::signal(SIGABRT, tellWhereReasonIs);
        fatalStop(reasonOfThisProcess());
      },
      testing::KilledBySignal(SIGABRT), "^found$");
}
#endif

}  // namespace
}  // namespace pelmarix::test
