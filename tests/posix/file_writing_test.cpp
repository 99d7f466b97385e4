#include <gmock/gmock.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>

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

/// Runs `body` in a child process that sees a file system of its own at `folder`.
std::string withFileSystem(const std::string& folder, unsigned long flags, const char* options,
                           const std::function<std::string()>& body) {
  return test::inChild([&]() -> std::string {
    const unsigned user = geteuid();
    const unsigned group = getegid();
    // Only the superuser may mount; others are the superuser of a name space of their own.
    if (unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWUSER | CLONE_NEWNS) != 0) return "no name space";
    if (user != 0) {
      std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
      std::ofstream("/proc/self/setgroups") << "deny";
      std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
    }
    if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return "no private mounts";
    if (mount("tmpfs", folder.c_str(), "tmpfs", flags, options) != 0) return "no file system";
    return body();
  });
}

TEST(WritingAFile, WritesThePartsOneAfterTheOther) {
  const TemporaryFolder folder;
  EXPECT_EQ(outcome(folder / "report.txt", {"\n\nreport\n", "", "Checked\n"}), "written");
  EXPECT_EQ(contentsOf(folder / "report.txt"), "\n\nreport\nChecked\n");
}

TEST(WritingAFile, TakesThePathAsItStandsNotBelowTheVolume) {
  const TemporaryFolder folder;
  EXPECT_EQ(outcome(folder / "caf\xE9 1.txt", {"x"}), "written");
  EXPECT_EQ(contentsOf(folder / "caf\xE9 1.txt"), "x");
}

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

TEST(WritingAFile, ObeysTheUsersFileModeMask) {
  const TemporaryFolder folder;
  const std::string mode = test::inChild([&] {
    umask(027);
    outcome(folder / "report.txt", {"x"});
    struct stat status = {};
    stat((folder / "report.txt").c_str(), &status);
    return std::to_string(status.st_mode & 0777U);
  });
  EXPECT_EQ(mode, std::to_string(0640));
}

TEST(WritingAFile, FailsOnAFullDevice) { EXPECT_EQ(outcome("/dev/full", {"x"}), "No space left on device"); }

TEST(WritingAFile, FailsWhenTheDiskIsFullBeforeTheEnd) {
  const TemporaryFolder folder;
  const std::string report(100'000, 'x');
  const std::string failure = withFileSystem(folder.path(), 0, "size=64k", [&] {
    return outcome(folder / "report.txt", {report}) + ", then " + outcome(folder / "report.txt", {"small"});
  });
  EXPECT_EQ(failure, "No space left on device, then written");
}

TEST(WritingAFile, FailsWhenItStopsHalfWay) {
  const TemporaryFolder folder;
  const std::string failure = test::inChild([&]() -> std::string {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit little = {1000, 1000};
    if (setrlimit(RLIMIT_FSIZE, &little) != 0) return "no limit set";
    return outcome(folder / "report.txt", {std::string(600, 'a'), std::string(600, 'b')});
  });
  EXPECT_EQ(failure, "File too large");
  EXPECT_EQ(contentsOf(folder / "report.txt"), std::string(600, 'a') + std::string(400, 'b'));
}

TEST(WritingAFile, FailsOnAReadOnlyFileSystem) {
  const TemporaryFolder folder;
  const std::string failure = withFileSystem(folder.path(), MS_RDONLY, nullptr,
                                             [&] { return outcome(folder / "report.txt", {"x"}); });
  EXPECT_EQ(failure, "Read-only file system");
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
