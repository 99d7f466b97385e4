#include "posix/companion.h"

#include <gmock/gmock.h>
#include <stdlib.h>

#include <string>

#include "tests/support/temporary_folder.h"

namespace pelmarix::posix {
namespace {

/// What the program beside this one received, having taken this program's place. This one had the
/// volume `inherited` in its environment.
std::string receivedByCompanion(const std::string& volume, const char* inherited = nullptr) {
  const test::TemporaryFolder folder;
  const std::string printed = folder.addFile("printed");
  const std::string failure = test::inChild([&]() -> std::string {
    if (inherited != nullptr)
      setenv("PELMARIX_VOLUME", inherited, 1);
    else
      unsetenv("PELMARIX_VOLUME");
    if (dup2(open(printed.c_str(), O_WRONLY), STDOUT_FILENO) < 0) return "can't write";
    return becomeCompanion("print_received", volume).message();
  });
  EXPECT_EQ(failure, "");
  return test::contentsOf(printed);
}

TEST(Companion, TakesTheProgramsPlaceWithTheVolumeInItsEnvironment) {
  const std::string received = receivedByCompanion("/mnt/mac");
  EXPECT_THAT(received, testing::StartsWith("argument [/"));
  EXPECT_THAT(received, testing::HasSubstr("/print_received]\nworking folder"));
  EXPECT_THAT(received, testing::HasSubstr("environment [PELMARIX_VOLUME=/mnt/mac]\n"));
}

TEST(Companion, GetsTheVolumeInPlaceOfAnInheritedOne) {
  const std::string received = receivedByCompanion("/mnt/mac", "/mnt/other");
  EXPECT_THAT(received, testing::HasSubstr("environment [PELMARIX_VOLUME=/mnt/mac]\n"));
  EXPECT_THAT(received, testing::Not(testing::HasSubstr("/mnt/other")));
}

TEST(Companion, LeavesTheEnvironmentAsItIsWithoutAVolume) {
  EXPECT_THAT(receivedByCompanion(""), testing::Not(testing::HasSubstr("PELMARIX_VOLUME")));
  EXPECT_THAT(receivedByCompanion("", "/mnt/other"),
              testing::HasSubstr("environment [PELMARIX_VOLUME=/mnt/other]\n"));
}

TEST(Companion, ThatIsMissingIsTold) {
  EXPECT_EQ(becomeCompanion("no program has this name", ""), std::errc::no_such_file_or_directory);
}

TEST(Terminal, IsKnownByStandardError) {
  const auto isTerminal = [](const char* device) {
    return test::inChild([&]() -> std::string {
      if (dup2(open(device, O_RDWR | O_NOCTTY), STDERR_FILENO) < 0) return "can't open";
      return isStartedFromTerminal() ? "terminal" : "none";
    });
  };
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_TRUE(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0);
  EXPECT_EQ(isTerminal(ptsname(terminal)), "terminal");
  EXPECT_EQ(isTerminal("/dev/null"), "none");
  close(terminal);
}

}  // namespace
}  // namespace pelmarix::posix
