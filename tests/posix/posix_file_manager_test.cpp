#include "posix/posix_file_manager.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <unistd.h>

#include "posix/regular_file.h"
#include "tests/support/temporary_folder.h"

namespace pelmarix::posix {
namespace {

using test::TemporaryFolder;
using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

std::vector<std::string> entriesBelow(const std::string& path, Volume volume = {}) {
  PosixFileManager files(std::move(volume));
  const auto enumerator = files.enumeratorAtPath(path);
  std::vector<std::string> entries;
  if (enumerator == nullptr) return {"no enumerator"};
  while (const auto entry = enumerator->nextObject()) entries.emplace_back(*entry);
  return entries;
}

/// Nothing where the file can't be read.
std::optional<std::string> read(const std::string& path, Volume volume = {}) {
  const auto contents = PosixFileManager(std::move(volume)).readFile(path);
  return contents ? std::optional(*contents) : std::nullopt;
}

bool canRead(const std::string& path) { return read(path).has_value(); }

TEST(DirectoryEnumerator, YieldsFilesAndFoldersOfAllLevelsAndHiddenOnes) {
  const TemporaryFolder folder;
  folder.addFile("a.plist");
  folder.addFile(".hidden");
  folder.addFile("sub/.deep/b.plist");
  folder.addFolder("empty");
  const auto expected =
      UnorderedElementsAre("a.plist", ".hidden", "sub", "sub/.deep", "sub/.deep/b.plist", "empty");
  EXPECT_THAT(entriesBelow(folder.path()), expected);
  EXPECT_THAT(entriesBelow(folder.path() + "/"), expected);
}

TEST(DirectoryEnumerator, YieldsAFolderRightBeforeWhatIsInIt) {
  const TemporaryFolder folder;
  folder.addFile("x/1");
  folder.addFile("x/2");
  folder.addFile("y/3");
  EXPECT_THAT(entriesBelow(folder.path()),
              AnyOf(ElementsAre("x", "x/1", "x/2", "y", "y/3"), ElementsAre("x", "x/2", "x/1", "y", "y/3"),
                    ElementsAre("y", "y/3", "x", "x/1", "x/2"), ElementsAre("y", "y/3", "x", "x/2", "x/1")));
}

TEST(DirectoryEnumerator, YieldsNothingForAnEmptyFolder) {
  const TemporaryFolder folder;
  EXPECT_THAT(entriesBelow(folder.path()), IsEmpty());
}

TEST(DirectoryEnumerator, IsNoneForAFileAndForNothing) {
  const TemporaryFolder folder;
  EXPECT_THAT(entriesBelow(folder / "missing"), ElementsAre("no enumerator"));
  EXPECT_THAT(entriesBelow(folder.addFile("file")), ElementsAre("no enumerator"));
  EXPECT_THAT(entriesBelow(folder.addFifo("fifo")), ElementsAre("no enumerator")) << "without waiting";
}

TEST(DirectoryEnumerator, IsThatOfAFolderWithThousandsOfSlashesBehindIt) {
  const TemporaryFolder folder;
  folder.addFile("file");
  EXPECT_THAT(entriesBelow(folder.path() + std::string(5000, '/')), ElementsAre("file"));
}

TEST(DirectoryEnumerator, YieldsLinksAndNeverFollowsThem) {
  const TemporaryFolder folder;
  folder.addFile("real/a");
  folder.addLink("to-folder", "real");
  folder.addLink("to-file", "real/a");
  folder.addLink("to-nothing", "nowhere");
  folder.addLink("real/loop", "..");
  EXPECT_THAT(entriesBelow(folder.path()),
              UnorderedElementsAre("real", "real/a", "real/loop", "to-folder", "to-file", "to-nothing"));
}

TEST(DirectoryEnumerator, WalksAFolderThatALinkLeadsTo) {
  const TemporaryFolder folder;
  folder.addFile("real/a");
  EXPECT_THAT(entriesBelow(folder.addLink("link", "real")), ElementsAre("a"));
}

#ifndef __APPLE__  // whose own file system takes no such names
TEST(DirectoryEnumerator, KeepsTheBytesOfNamesThatAreNotUtf8) {
  const TemporaryFolder folder;
  folder.addFile("\xFF\xFE/caf\xE9.plist");
  folder.addFile("line\nbreak");
  EXPECT_THAT(entriesBelow(folder.path()),
              UnorderedElementsAre("\xFF\xFE", "\xFF\xFE/caf\xE9.plist", "line\nbreak"));
}
#endif

TEST(DirectoryEnumerator, LooksBelowTheVolume) {
  const TemporaryFolder folder;
  folder.addFile("System/Library/Receipts/a.plist");
  EXPECT_THAT(entriesBelow("/System/Library/Receipts/", Volume(folder.path())), ElementsAre("a.plist"));
}

TEST(DirectoryEnumerator, YieldsAFolderThatVanishedOrBecameALinkAndGoesOn) {
  const TemporaryFolder folder;
  folder.addFile("elsewhere/secret");
  folder.addFile("walked/a/inside");
  folder.addFile("walked/b/inside");
  const auto enumerator = PosixFileManager(Volume()).enumeratorAtPath(folder / "walked");
  const std::string first(enumerator->nextObject().value());
  const std::string second = first == "a" ? "b" : "a";
  std::filesystem::remove_all(folder / "walked/a");
  std::filesystem::remove_all(folder / "walked/b");
  folder.addLink("walked/" + first, folder / "elsewhere");
  EXPECT_EQ(enumerator->nextObject(), second);
  EXPECT_EQ(enumerator->nextObject(), std::nullopt);
  EXPECT_EQ(enumerator->nextObject(), std::nullopt);
}

TEST(DirectoryEnumerator, FollowsNoLinkInAFoldersPlaceAfterItHasLeftAnotherFolder) {
  const TemporaryFolder folder;
  folder.addFile("elsewhere/secret");
  folder.addFile("walked/a/inside");
  folder.addFile("walked/b/inside");
  const auto enumerator = PosixFileManager(Volume()).enumeratorAtPath(folder / "walked");
  const std::string first(enumerator->nextObject().value());
  EXPECT_EQ(enumerator->nextObject(), first + "/inside");
  const std::string second(enumerator->nextObject().value());
  std::filesystem::remove_all(folder / "walked/" + second);
  folder.addLink("walked/" + second, folder / "elsewhere");
  EXPECT_EQ(enumerator->nextObject(), std::nullopt);
}

TEST(DirectoryEnumerator, StaysAtItsEndWhateverAppearsInTheFolderThatWasLast) {
  const TemporaryFolder folder;
  folder.addFolder("walked/a");
  const auto enumerator = PosixFileManager(Volume()).enumeratorAtPath(folder / "walked");
  EXPECT_EQ(enumerator->nextObject(), "a");
  EXPECT_EQ(enumerator->nextObject(), std::nullopt);
  folder.addFile("walked/a/inside");
  EXPECT_EQ(enumerator->nextObject(), std::nullopt);
}

TEST(DirectoryEnumerator, GoesOnInAFolderThatIsMovedMeanwhile) {
  const TemporaryFolder folder;
  folder.addFile("walked/a/b/inside");
  const auto enumerator = PosixFileManager(Volume()).enumeratorAtPath(folder / "walked");
  EXPECT_EQ(enumerator->nextObject(), "a");
  EXPECT_EQ(enumerator->nextObject(), "a/b");
  std::filesystem::rename(folder / "walked/a", folder / "elsewhere");
  EXPECT_EQ(enumerator->nextObject(), "a/b/inside");
}

TEST(DirectoryEnumerator, PassesOverAFolderThatBecomesAFifoWithoutWaiting) {
  const TemporaryFolder folder;
  folder.addFile("walked/a/inside");
  const auto enumerator = PosixFileManager(Volume()).enumeratorAtPath(folder / "walked");
  EXPECT_EQ(enumerator->nextObject(), "a");
  std::filesystem::remove_all(folder / "walked/a");
  folder.addFifo("walked/a");
  EXPECT_EQ(enumerator->nextObject(), std::nullopt);
}

TEST(DirectoryEnumerator, YieldsAFolderThatMayNotBeOpenedAndPassesItOver) {
  const TemporaryFolder folder;
  folder.addFile("closed/inside");
  folder.addFile("open/inside");
  chmod(folder.path().c_str(), 0755);
  chmod((folder / "closed").c_str(), 0);
  const std::string seen = test::withoutPrivileges([&] {
    std::string all;
    for (const auto& entry : entriesBelow(folder.path())) all += entry + " ";
    for (const auto& entry : entriesBelow(folder / "closed")) all += entry;
    return all;
  });
  EXPECT_THAT(seen, AnyOf("closed open open/inside no enumerator", "open open/inside closed no enumerator"));
  chmod((folder / "closed").c_str(), 0755);
}

TEST(DirectoryEnumerator, IsNoneForAFolderThatMayBeReadButNotEntered) {
  const TemporaryFolder folder;
  folder.addFile("closed/inside");
  chmod(folder.path().c_str(), 0755);
  chmod((folder / "closed").c_str(), 0444);
  EXPECT_EQ(test::withoutPrivileges([&] { return entriesBelow(folder / "closed").at(0); }), "no enumerator");
  chmod((folder / "closed").c_str(), 0755);
}

TEST(DirectoryEnumerator, WalksFiveThousandLevelsWithFewDescriptors) {
  const TemporaryFolder folder;
  constexpr int levels = 5000;
  // Made and removed step by step: the whole path is longer than the system takes.
  const std::string result = test::inChild([&]() -> std::string {
    const rlimit few = {16, 16};
    if (setrlimit(RLIMIT_NOFILE, &few) != 0) return "no limit set";
    if (chdir(folder.path().c_str()) != 0) return "no folder";
    for (int level = 0; level < levels; ++level)
      if (mkdir("d", 0755) != 0 || chdir("d") != 0) return "no level";
    close(creat("x.plist", 0644));

    PosixFileManager files{Volume()};
    const auto enumerator = files.enumeratorAtPath(folder.path());
    std::string last;
    int count = 0;
    for (; const auto entry = enumerator->nextObject(); ++count) last = *entry;
    const bool isRead = canRead(folder / last);
    const bool ended = !enumerator->nextObject().has_value();

    unlink("x.plist");
    for (int level = 0; level < levels; ++level)
      if (chdir("..") != 0 || rmdir("d") != 0) return "not removed";
    return std::to_string(count) + " " + std::to_string(last.size()) + (isRead ? " read" : " not read") +
           (ended ? " ended" : " not ended");
  });
  EXPECT_EQ(result, std::to_string(levels + 1) + " " + std::to_string(2 * levels + 7) + " read ended");
}

TEST(ReadingAFile, GivesAllItsBytes) {
  const TemporaryFolder folder;
  for (const std::size_t size : {0U, 1U, 4096U, 16383U, 16384U, 16385U, 100'000U, 5'000'001U}) {
    std::string bytes(size, 'x');
    if (size > 0) bytes.back() = '\0';
    EXPECT_EQ(read(folder.addFile("file", bytes)), bytes);
  }
}

TEST(ReadingAFile, LooksBelowTheVolume) {
  const TemporaryFolder folder;
  folder.addFile("Library/Receipts/InstallHistory.plist", "history");
  EXPECT_EQ(read("/Library/Receipts/InstallHistory.plist", Volume(folder.path())), "history");
}

TEST(ReadingAFile, FollowsALinkToAFile) {
  const TemporaryFolder folder;
  folder.addFile("real", "contents");
  EXPECT_TRUE(canRead(folder.addLink("link", "real")));
}

TEST(ReadingAFile, FailsForWhatIsMissing) {
  const TemporaryFolder folder;
  EXPECT_FALSE(canRead(folder / "missing"));
  EXPECT_FALSE(canRead(folder.addFile("file") + "/below"));
  EXPECT_FALSE(canRead(folder.addLink("dangling", "nowhere")));
  EXPECT_FALSE(canRead(folder.addLink("loop", "loop")));
  EXPECT_FALSE(canRead(""));
}

TEST(ReadingAFile, FailsForAFolder) {
  const TemporaryFolder folder;
  EXPECT_FALSE(canRead(folder.addFolder("f.plist")));
  EXPECT_EQ(RegularFile::open(folder / "f.plist").error(), std::errc::is_a_directory);
  EXPECT_FALSE(canRead(folder.addLink("link", "f.plist")));
}

TEST(ReadingAFile, FailsForAFifoWithoutWaitingForAWriter) {
  const TemporaryFolder folder;
  EXPECT_FALSE(canRead(folder.addFifo("x.plist")));
}

TEST(ReadingAFile, FailsForADeviceEvenOneWithoutAnEnd) {
  EXPECT_FALSE(canRead("/dev/null"));
  EXPECT_FALSE(canRead("/dev/zero"));
  const TemporaryFolder folder;
  EXPECT_FALSE(canRead(folder.addLink("x.plist", "/dev/zero")));
}

TEST(ReadingAFile, FailsWithoutPermission) {
  const TemporaryFolder folder;
  chmod(folder.path().c_str(), 0755);
  const std::string file = folder.addFile("x.plist", "contents");
  const auto outcome = [&] { return std::string(canRead(file) ? "read" : "refused"); };
  EXPECT_EQ(test::withoutPrivileges(outcome), "read");
  chmod(file.c_str(), 0);
  EXPECT_EQ(test::withoutPrivileges(outcome), "refused");
}

TEST(ReadingAFile, FailsForOneWithAHoleOfATerabyte) {
  const TemporaryFolder folder;
  const std::string file = folder.addFile("x.plist");
  std::filesystem::resize_file(file, std::uintmax_t{1} << 40U);
  EXPECT_FALSE(canRead(file));
  std::filesystem::resize_file(file, RegularFile::maximumSize + 1);
  EXPECT_FALSE(canRead(file));
}

TEST(ReadingAFile, SucceedsForAPathOfAnyLength) {
  const TemporaryFolder folder;
  folder.addFile("x", "contents");
  for (const std::size_t length : {4094U, 4095U, 4096U, 4097U, 8191U, 8192U, 8193U}) {
    std::string path = folder.path();
    while (path.size() + 4 <= length) path += "/.";
    path += std::string(length - path.size() - 1, '/') + "x";
    ASSERT_EQ(path.size(), length);
    EXPECT_EQ(read(path), "contents") << length;
  }
}

TEST(ReadingAFile, FailsForANameThatIsTooLong) {
  const auto file = RegularFile::open("/" + std::string(5000, 'x'));
  EXPECT_EQ(file.error(), std::errc::filename_too_long);
}

TEST(ReadingAFile, FailsForALongPathThroughAFifoWithoutWaitingForAWriter) {
  const TemporaryFolder folder;
  folder.addFifo("fifo");
  std::string path = folder.path();
  while (path.size() < 4000) path += "/.";
  path += "/fifo/" + std::string(200, 'x');
  EXPECT_FALSE(canRead(path));
}

TEST(ReadingAFile, GoesOnWhereItWasUpToTheEnd) {
  const TemporaryFolder folder;
  auto file = RegularFile::open(folder.addFile("letters", "abcdefgh"));
  ASSERT_TRUE(file);
  const auto next = [&](std::size_t size) {
    std::string bytes(size, '-');
    const auto count = file->read(bytes.data(), size);
    return count ? bytes.substr(0, *count) : count.error().message();
  };
  EXPECT_EQ(next(3), "abc");
  EXPECT_EQ(next(0), "");
  EXPECT_EQ(next(9), "defgh");
  EXPECT_EQ(next(1), "");
}

TEST(ReadingAFile, SucceedsWithoutStandardInputAndKeepsItClosed) {
  const TemporaryFolder folder;
  const std::string file = folder.addFile("x.plist", "contents");
  const std::string outcome = test::inChild([&] {
    close(STDIN_FILENO);
    const std::string contents = read(file).value_or("not read");
    return contents + (fcntl(STDIN_FILENO, F_GETFD) < 0 ? ", closed" : ", open");
  });
  EXPECT_EQ(outcome, "contents, closed");
}

TEST(ReadingAFile, FailsForOneThatGrowsBeyondTheMost) {
  const TemporaryFolder folder;
  const auto grownTo = [&](std::uintmax_t size) {
    const std::string path = folder.addFile("x.plist", "contents");
    auto file = RegularFile::open(path);
    std::filesystem::resize_file(path, size);
    const auto contents = file->readToEnd();
    return contents ? std::to_string(contents->size()) : contents.error().message();
  };
  EXPECT_EQ(grownTo(RegularFile::maximumSize), std::to_string(RegularFile::maximumSize));
  EXPECT_EQ(grownTo(RegularFile::maximumSize + 1), std::make_error_code(std::errc::file_too_large).message());
}

// macOS sets a program's memory no limit, and a sanitizer's allocator ends the process where the real one
// reports.
#if !defined(__APPLE__) && !defined(PELMARIX_SANITIZED)
TEST(ReadingAFile, FailsWhenThereIsNoMemoryForIt) {
  const TemporaryFolder folder;
  const std::string file = folder.addFile("x.plist");
  std::filesystem::resize_file(file, RegularFile::maximumSize);
  const std::string outcome = test::inChild([&]() -> std::string {
    const rlimit little = {RegularFile::maximumSize / 2, RegularFile::maximumSize / 2};
    if (setrlimit(RLIMIT_AS, &little) != 0) return "no limit set";
    const auto decoded =
        PosixFileManager(Volume()).decodeFile(file, [](std::string_view bytes) { return bytes.size(); });
    return decoded ? "read" : decoded.error().message();
  });
  EXPECT_EQ(outcome, std::make_error_code(std::errc::not_enough_memory).message());
}
#endif

#ifdef __linux__
TEST(ReadingAFile, ReadsOneWhoseSizeIsNotToldToItsEnd) {
  EXPECT_THAT(read("/proc/self/status"),
              testing::Optional(testing::AllOf(testing::StartsWith("Name:"), testing::EndsWith("\n"))));
}
#endif

TEST(ReadingAFile, LeavesNoDescriptorOpen) {
  const TemporaryFolder folder;
  const std::string file = folder.addFile("a", "a");
  const std::string fifo = folder.addFifo("b");
  const auto count = [] { return entriesBelow("/dev/fd").size(); };
  const auto before = count();
  ASSERT_GT(before, 3U) << "the three standard descriptors and the enumerator's own";
  for (int round = 0; round < 10; ++round) {
    EXPECT_TRUE(canRead(file));
    EXPECT_FALSE(canRead(fifo));
    EXPECT_EQ(entriesBelow(folder.path()).size(), 2U);
  }
  EXPECT_EQ(count(), before);
}

}  // namespace
}  // namespace pelmarix::posix
