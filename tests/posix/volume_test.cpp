#include "posix/volume.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include "posix/posix_file_manager.h"
#include "tests/support/temporary_folder.h"

namespace pelmarix::posix {
namespace {

TEST(Volume, IsTheMachinesOwnRootWhenNoneIsNamed) {
  unsetenv("PELMARIX_VOLUME");
  EXPECT_EQ(Volume::fromEnvironment().resolve("/Library/Receipts"), "/Library/Receipts");
  EXPECT_EQ(Volume().resolve("/System"), "/System");
  EXPECT_EQ(Volume("/").resolve("/System"), "/System");
  EXPECT_EQ(Volume("//").resolve("/System"), "/System");
}

TEST(Volume, IsTheMachinesOwnRootWhenTheVariableIsEmpty) {
  setenv("PELMARIX_VOLUME", "", 1);
  EXPECT_EQ(Volume::fromEnvironment().resolve("/Library"), "/Library");
  unsetenv("PELMARIX_VOLUME");
}

#ifndef __APPLE__
TEST(Volume, IsTheFolderThatTheVariableNames) {
  setenv("PELMARIX_VOLUME", "/mnt/mac", 1);
  EXPECT_EQ(Volume::fromEnvironment().resolve("/Library/Receipts/InstallHistory.plist"),
            "/mnt/mac/Library/Receipts/InstallHistory.plist");
  unsetenv("PELMARIX_VOLUME");
}
#endif

TEST(Volume, IsNamedByAnyTextButTheEmptyOne) {
  EXPECT_TRUE(Volume("/mnt/mac").isNamed());
  EXPECT_TRUE(Volume("/").isNamed());
  EXPECT_FALSE(Volume("").isNamed());
  EXPECT_FALSE(Volume().isNamed());
}

TEST(Volume, LosesTheSlashesAtItsEndOnly) {
  EXPECT_EQ(Volume("/mnt//a mac///").resolve("/System/"), "/mnt//a mac/System/");
}

TEST(Volume, NamedByARelativePathStaysWhereItWasWhenTheWorkingFolderChanges) {
  const test::TemporaryFolder folder;
  const std::string resolved = test::inChild([&]() -> std::string {
    if (chdir(folder.path().c_str()) != 0) return "can't change the working folder";
    const Volume volume("mac/");
    if (chdir("/") != 0) return "can't change the working folder";
    return volume.resolve("/Library");
  });
  EXPECT_EQ(resolved, std::filesystem::canonical(folder.path()).native() + "/mac/Library");
}

TEST(Volume, NamedRelativeToAFolderThatIsGoneFailsByItself) {
  const test::TemporaryFolder folder;
  const std::string resolved = test::inChild([&]() -> std::string {
    const std::string gone = folder.addFolder("gone");
    if (chdir(gone.c_str()) != 0 || rmdir(gone.c_str()) != 0) return "can't remove the working folder";
    const Volume volume("mac");
    const bool isRead = static_cast<bool>(PosixFileManager(volume).readFile("/Library"));
    return volume.resolve("/Library") + (isRead ? " read" : " not read");
  });
  EXPECT_EQ(resolved, "mac/Library not read");
}

TEST(Volume, KeepsBytesThatAreNotUtf8) {
  EXPECT_EQ(Volume("/mnt/\xFF").resolve("/a\xFE"), "/mnt/\xFF/a\xFE");
}

}  // namespace
}  // namespace pelmarix::posix
