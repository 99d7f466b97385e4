#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>

#include "posix/file_descriptor.h"
#include "posix/posix_file_manager.h"
#include "tests/support/temporary_folder.h"

namespace pelmarix::posix {
namespace {

using test::contentsOf;
using test::TemporaryFolder;

/// "written", or the system's description of the failure.
std::string outcome(const std::string& path, const std::vector<std::string_view>& parts) {
  const auto written = PosixFileManager(Volume("/nowhere")).writeFile(path, parts);
  return written ? "written" : written.error().message();
}

TEST(WritingAFile, WritesThePartsOneAfterTheOther) {
  const TemporaryFolder folder;
  EXPECT_EQ(outcome(folder / "report.txt", {"\n\nreport\n", "", "Checked\n"}), "written");
  EXPECT_EQ(contentsOf(folder / "report.txt"), "\n\nreport\nChecked\n");
}

#ifndef __APPLE__  // whose own file system takes no names that aren't UTF-8
TEST(WritingAFile, TakesThePathAsItStandsNotBelowTheVolume) {
  const TemporaryFolder folder;
  EXPECT_EQ(outcome(folder / "caf\xE9 1.txt", {"x"}), "written");
  EXPECT_EQ(contentsOf(folder / "caf\xE9 1.txt"), "x");
}
#endif

TEST(WritingAFile, ReplacesWhatALongerFileHeldInPlace) {
  const TemporaryFolder folder;
  const std::string file = folder.addFile("report.txt", std::string(10'000, 'x'));
  const std::string otherName = folder / "other name";
  std::filesystem::create_hard_link(file, otherName);
  EXPECT_EQ(outcome(file, {"new"}), "written");
  EXPECT_EQ(contentsOf(otherName), "new");
}

TEST(WritingAFile, WritesWhereALinkLeads) {
  const TemporaryFolder folder;
  folder.addFile("real", "old");
  EXPECT_EQ(outcome(folder.addLink("link", "real"), {"new"}), "written");
  EXPECT_EQ(contentsOf(folder / "real"), "new");
}

TEST(WritingAFile, OfNothingLeavesAnEmptyFile) {
  const TemporaryFolder folder;
  EXPECT_EQ(outcome(folder.addFile("report.txt", "old"), {}), "written");
  EXPECT_EQ(contentsOf(folder / "report.txt"), "");
}

TEST(WritingAFile, ClosesADescriptorThatHasTheStandardInputsPlace) {
  const std::string outcome = test::inChild([]() -> std::string {
    close(STDIN_FILENO);
    FileDescriptor file(open("/dev/null", O_WRONLY));
    if (file.get() != STDIN_FILENO) return "elsewhere";
    if (!file.close()) return "failed";
    return fcntl(STDIN_FILENO, F_GETFD) < 0 ? "closed" : "open";
  });
  EXPECT_EQ(outcome, "closed");
}

TEST(WritingAFile, HasNothingLeftToCloseOnceItIsClosed) {
  FileDescriptor file(open("/dev/null", O_WRONLY));
  EXPECT_TRUE(file.close());
  EXPECT_TRUE(file.close());
}

TEST(WritingAFile, LetsTheUsersFileModeMaskSayWhoMayReadAndWriteIt) {
  const auto mode = [](mode_t mask) {
    const TemporaryFolder folder;
    return test::inChild([&] {
      umask(mask);
      outcome(folder / "report.txt", {"x"});
      struct stat status = {};
      stat((folder / "report.txt").c_str(), &status);
      return std::to_string(status.st_mode & 0777U);
    });
  };
  EXPECT_EQ(mode(027), std::to_string(0640));
  EXPECT_EQ(mode(0), std::to_string(0666));
}

#ifdef __linux__
TEST(WritingAFile, FailsOnAFullDevice) { EXPECT_EQ(outcome("/dev/full", {"x"}), "No space left on device"); }
#endif

TEST(WritingAFile, FailsWhenItStopsHalfWayAndSucceedsAgainWithLess) {
  const TemporaryFolder folder;
  const std::string file = folder / "report.txt";
  const std::string outcomes = test::inChild([&]() -> std::string {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit little = {1000, 1000};
    if (setrlimit(RLIMIT_FSIZE, &little) != 0) return "no limit set";
    const std::string tooLarge = outcome(file, {std::string(600, 'a'), std::string(600, 'b')});
    const std::string left = contentsOf(file);
    return tooLarge + ", left " + std::to_string(left.size()) + ", then " + outcome(file, {"small"});
  });
  EXPECT_EQ(outcomes, "File too large, left 1000, then written");
  EXPECT_EQ(contentsOf(file), "small");
}

TEST(WritingAFile, FailsInAFolderOrOnAFileThatMayNotBeWritten) {
  const TemporaryFolder folder;
  chmod(folder.path().c_str(), 0555);
  const std::string inFolder = test::withoutPrivileges([&] { return outcome(folder / "report.txt", {"x"}); });
  chmod(folder.path().c_str(), 0755);
  EXPECT_EQ(inFolder, "Permission denied");
  const std::string file = folder.addFile("protected.txt", "old");
  chmod(file.c_str(), 0444);
  EXPECT_EQ(test::withoutPrivileges([&] { return outcome(file, {"x"}); }), "Permission denied");
  EXPECT_EQ(contentsOf(file), "old");
}

TEST(WritingAFile, FailsWhereAFolderIs) {
  const TemporaryFolder folder;
  EXPECT_EQ(outcome(folder.path(), {"x"}), "Is a directory");
}

TEST(WritingAFile, FailsWhereNoFolderIs) {
  const TemporaryFolder folder;
  EXPECT_EQ(outcome(folder / "missing/report.txt", {"x"}), "No such file or directory");
  EXPECT_EQ(outcome(folder.addFile("file") + "/report.txt", {"x"}), "Not a directory");
  EXPECT_EQ(outcome(folder / std::string(300, 'n'), {"x"}), "File name too long");
}

TEST(WritingAFile, RefusesAFifoWhetherSomeoneReadsItOrNot) {
  const TemporaryFolder folder;
  const std::string fifo = folder.addFifo("fifo");
  EXPECT_EQ(outcome(fifo, {"x"}), "No such device or address");
  const int reader = open(fifo.c_str(), O_RDONLY | O_NONBLOCK);
  EXPECT_EQ(outcome(fifo, {"x"}), "No such device or address");
  close(reader);
}

}  // namespace
}  // namespace pelmarix::posix
