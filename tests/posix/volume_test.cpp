#include "posix/volume.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>
#include <vector>

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

class VolumeOfTwoFolders : public testing::Test {
 protected:
  test::TemporaryFolder folder;
  const std::string system = folder.addFolder("system");
  const std::string data = folder.addFolder("data");
  const Volume volume{system + ":" + data};
};

TEST_F(VolumeOfTwoFolders, HasAPathInTheFirstFolderThatHasIt) {
  folder.addFile("data/Library/Receipts/InstallHistory.plist", "data");
  folder.addFile("system/System/Library/Version.plist", "system");
  folder.addFile("system/both", "system");
  folder.addFile("data/both", "data");
  EXPECT_EQ(volume.resolve("/Library/Receipts/InstallHistory.plist"),
            data + "/Library/Receipts/InstallHistory.plist");
  EXPECT_EQ(volume.resolve("/System/Library/Version.plist"), system + "/System/Library/Version.plist");
  EXPECT_EQ(volume.resolve("/both"), system + "/both");
  EXPECT_EQ(Volume(data + ":" + system).resolve("/both"), data + "/both");
}

TEST_F(VolumeOfTwoFolders, HasWhatNeitherHasInTheFirst) {
  EXPECT_EQ(volume.resolve("/Library"), system + "/Library");
}

TEST_F(VolumeOfTwoFolders, FindsWhatCameAfterItWasMade) {
  folder.addFile("data/later", "");
  EXPECT_EQ(volume.resolve("/later"), data + "/later");
}

TEST_F(VolumeOfTwoFolders, LeavesOutWhatIsEmptyBetweenColons) {
  folder.addFile("data/file", "");
  EXPECT_EQ(Volume("::" + system + "/::" + data + "//:").resolve("/file"), data + "/file");
  EXPECT_EQ(Volume(data + ":").resolve("/file"), data + "/file");
}

TEST_F(VolumeOfTwoFolders, MayHaveOneThatIsGone) {
  folder.addFile("data/file", "");
  EXPECT_EQ(Volume(folder / "gone" + ":" + data).resolve("/file"), data + "/file");
}

TEST_F(VolumeOfTwoFolders, MayBeBelowTheWorkingFolder) {
  folder.addFile("data/file", "");
  const std::string resolved = test::inChild([&]() -> std::string {
    if (chdir(folder.path().c_str()) != 0) return "can't change the working folder";
    const Volume relative("system:data");
    if (chdir("/") != 0) return "can't change the working folder";
    return relative.resolve("/file");
  });
  EXPECT_EQ(resolved, std::filesystem::canonical(folder.path()).native() + "/data/file");
}

TEST(Volume, IsTheOneFolderThatHasAColonInItsName) {
  const test::TemporaryFolder folder;
  const std::string name = folder.addFolder("a:b");
  folder.addFile("a/file", "");
  EXPECT_EQ(Volume(name).resolve("/file"), name + "/file");
}

TEST(Volume, OfColonsAloneIsNotTheMachinesOwnRoot) {
  const test::TemporaryFolder folder;
  const std::string resolved = test::inChild([&]() -> std::string {
    return chdir(folder.path().c_str()) == 0 ? Volume("::").resolve("/Library")
                                             : "can't change the working folder";
  });
  EXPECT_EQ(resolved, std::filesystem::canonical(folder.path()).native() + "/::/Library");
}

// The value for folders that can be opened, else the sentence.
std::string valueFor(const std::vector<std::string>& folders) {
  const auto value = Volume::valueForFolders(folders);
  return value ? *value : value.error().sentence;
}

TEST_F(VolumeOfTwoFolders, IsNamedByTheirPathsWithAColonBetween) {
  EXPECT_EQ(valueFor({system}), system);
  EXPECT_EQ(valueFor({system, data}), system + ":" + data);
}

TEST_F(VolumeOfTwoFolders, IsNotWhatOnlyOneOfThemIs) {
  const std::string file = folder.addFile("disk.dmg");
  EXPECT_EQ(valueFor({system, folder / "gone"}), folder / "gone" + " doesn't exist.");
  EXPECT_EQ(valueFor({"", system}), "The empty path doesn't exist.");
  EXPECT_EQ(valueFor({file, data}),
            file +
                " is a file. If it is the image of a disk, mount it and open the folder "
                "where it is mounted.");
  EXPECT_EQ(valueFor({"file://" + system}),
            "file://" + system + " is an address. Only a folder of this machine can be opened.");
}

TEST_F(VolumeOfTwoFolders, IsNoFolderWithoutRights) {
  const std::string closed = folder.addFolder("closed");
  std::filesystem::permissions(closed, std::filesystem::perms::none);
  std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
  EXPECT_EQ(test::withoutPrivileges([&] { return valueFor({closed}); }),
            closed + " can't be opened: Permission denied.");
}

TEST_F(VolumeOfTwoFolders, HasNoColonInItsPathsButTheOneBetween) {
  const std::string odd = folder.addFolder("a:b");
  EXPECT_EQ(valueFor({odd}), odd);
  EXPECT_EQ(valueFor({system, odd}), odd + " has a colon in its path. It can only be opened alone.");
}

TEST_F(VolumeOfTwoFolders, MayHaveBlanksLineEndsAndBytesThatAreNotUtf8InTheirPaths) {
  const std::string blank = folder.addFolder("Macintosh HD");
  const std::string odd = folder.addFolder("line\nend \xFF");
  folder.addFile("line\nend \xFF/file");
  EXPECT_EQ(Volume(valueFor({blank, odd})).resolve("/file"), odd + "/file");
}

TEST_F(VolumeOfTwoFolders, HasNothingThatHindersSomebodyWhereTheFileIs) {
  folder.addFile("data/Library/Receipts/history");
  EXPECT_EQ(volume.hindranceTo("/Library/Receipts/history"), "");
  EXPECT_EQ(volume.hindranceTo("/Library/Receipts/"), "");
}

TEST_F(VolumeOfTwoFolders, TellsWhichFileOrFolderIsMissing) {
  folder.addFile("data/Library/file");
  EXPECT_EQ(volume.hindranceTo("/Library/history"), "There is no history in " + data + "/Library.");
  EXPECT_EQ(volume.hindranceTo("/Gone/history"), "There is no folder " + system + "/Gone.");
  EXPECT_EQ(volume.hindranceTo("/Library/file/history"), "There is no folder " + data + "/Library/file.");
  EXPECT_EQ(Volume(system + ":" + data + "/gone").hindranceTo("/Library/history"),
            data + "/gone doesn't exist.");
}

TEST_F(VolumeOfTwoFolders, TellsWhichFolderIsClosed) {
  const std::string closed = folder.addFolder("data/Library");
  std::filesystem::permissions(closed, std::filesystem::perms::none);
  std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
  EXPECT_EQ(test::withoutPrivileges([&] { return volume.hindranceTo("/Library/history"); }),
            closed + " can't be opened: Permission denied.");
}

TEST(Volume, NamesItsFolders) {
  EXPECT_EQ(Volume("/mnt/system:/mnt/data/").folders(),
            (std::vector<std::string>{"/mnt/system", "/mnt/data"}));
  EXPECT_EQ(Volume().folders(), std::vector<std::string>{"/"});
}

TEST(Volume, KeepsBytesThatAreNotUtf8) {
  EXPECT_EQ(Volume("/mnt/\xFF").resolve("/a\xFE"), "/mnt/\xFF/a\xFE");
}

}  // namespace
}  // namespace pelmarix::posix
