// The two readers of the system's files on real files: the install history and the receipts.
#include <gmock/gmock.h>
#ifdef __linux__
#include <malloc.h>
#endif
#include <sys/resource.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "history/loader.h"
#include "posix/posix_file_manager.h"
#include "receipts/bom.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/test_services.h"

namespace pelmarix::posix {
namespace {

using test::errorAlert;
using test::ShownAlert;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

const ShownAlert receiptAlert = errorAlert(platform::lastActionErrorMessage, "Couldn't read BoM PLists.");
const ShownAlert historyAlert =
    errorAlert(platform::lastActionErrorMessage, "Couldn't read install history.");

/// A Mac's volume and the services that the readers use.
class Reading : public testing::Test {
 protected:
  Reading() { services.services.fileManager = &files; }

  test::TemporaryFolder volume;
  PosixFileManager files{Volume(volume.path())};
  test::TestServices services;
};

class ReceiptScan : public Reading {
 protected:
  ReceiptScan() { volume.addFolder("System/Library/Receipts"); }

  std::string folder() const { return volume / "System/Library/Receipts/"; }
  static std::string receipt(const std::string& identifier, const std::string& date = "2019-03-01") {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
           "<key>InstallDate</key><date>" +
           date + "T10:00:00Z</date><key>PackageIdentifier</key><string>" + identifier +
           "</string><key>PackageVersion</key><string>1</string></dict></plist>\n";
  }
  std::string add(const std::string& name, const std::string& contents) const {
    return volume.addFile("System/Library/Receipts/" + name, contents);
  }
  /// The names of the receipts found, in their order.
  static std::vector<std::string> scan() {
    BoM receipts;
    receipts.readBoMPLists();
    std::vector<std::string> names;
    for (const auto& item : receipts.children) names.push_back(item->name);
    return names;
  }
  static std::vector<std::string> scannedPaths() {
    BoM receipts;
    receipts.readBoMPLists();
    std::vector<std::string> paths;
    for (const auto& item : receipts.children) paths.push_back(item->path);
    return paths;
  }
};

TEST_F(ReceiptScan, OfAnEmptyFolderOrNoneFindsNothingAndSaysNothing) {
  EXPECT_THAT(scan(), IsEmpty());
  std::filesystem::remove(folder());
  EXPECT_THAT(scan(), IsEmpty());
  volume.addFile("System/Library/Receipts", "a file where the folder should be");
  EXPECT_THAT(scan(), IsEmpty());
  EXPECT_THAT(services.alerts, IsEmpty());
}

TEST_F(ReceiptScan, OfAFolderThatMayNotBeReadFindsNothingAndSaysNothing) {
  add("a.plist", receipt("a"));
  chmod(volume.path().c_str(), 0755);
  chmod(folder().c_str(), 0311);
  const std::string found = test::withoutPrivileges([&] {
    const std::string receipts = std::to_string(scan().size());
    return receipts + " receipts, " + std::to_string(services.alerts.size()) + " alerts";
  });
  chmod(folder().c_str(), 0755);
  EXPECT_EQ(found, "0 receipts, 0 alerts");
  EXPECT_THAT(scan(), ElementsAre("a"));
}

TEST_F(ReceiptScan, ListsTheNewestFirst) {
  add("a.plist", receipt("a", "2019-03-01"));
  add("b.plist", receipt("b", "2020-05-02"));
  EXPECT_THAT(scan(), ElementsAre("b", "a"));
}

TEST_F(ReceiptScan, KeepsTheFileSystemsOrderAmongEqualDates) {
  for (const std::string name : {"p", "q", "r", "s", "t", "u"}) add(name + ".plist", receipt(name));
  std::vector<std::string> order;
  const auto enumerator = files.enumeratorAtPath(receiptsFolder);
  while (const auto entry = enumerator->nextObject()) order.emplace_back(entry->substr(0, 1));
  EXPECT_EQ(scan(), order);
}

TEST_F(ReceiptScan, FindsReceiptsInSubfoldersAndHiddenOnes) {
  add("sub/c.plist", receipt("c"));
  add("sub/deep/er/d.plist", receipt("d"));
  add(".hidden.plist", receipt("hidden"));
  add(".folder/e.plist", receipt("e"));
  EXPECT_THAT(scannedPaths(),
              UnorderedElementsAre("/System/Library/Receipts/sub/c", "/System/Library/Receipts/sub/deep/er/d",
                                   "/System/Library/Receipts/.hidden", "/System/Library/Receipts/.folder/e"));
  EXPECT_THAT(services.alerts, IsEmpty());
}

TEST_F(ReceiptScan, TakesFilesWithExactlyTheExtension) {
  for (const std::string name : {"d.PLIST", "d.Plist", "e.plist.bak", "plist", "fplist", "g.bom", "h.plist "})
    add(name, receipt(name));
  EXPECT_THAT(scan(), IsEmpty());
  EXPECT_THAT(services.alerts, IsEmpty());
}

TEST_F(ReceiptScan, TakesAFileWhoseNameIsTheExtensionAlone) {
  add(".plist", receipt("nameless"));
  EXPECT_THAT(scannedPaths(), ElementsAre("/System/Library/Receipts/"));
}

TEST_F(ReceiptScan, KeepsThePathBeforeTheLastExtension) {
  add("com.example.pkg.1.2.plist", receipt("a"));
  EXPECT_THAT(scannedPaths(), ElementsAre("/System/Library/Receipts/com.example.pkg.1.2"));
}

#ifndef __APPLE__  // whose own file system takes no such names
TEST_F(ReceiptScan, KeepsTheBytesOfNamesThatAreNotUtf8) {
  add("caf\xE9.plist", receipt("a"));
  EXPECT_THAT(scannedPaths(), ElementsAre("/System/Library/Receipts/caf\xE9"));
  EXPECT_THAT(services.alerts, IsEmpty());
}
#endif

TEST_F(ReceiptScan, PassesOverInSilenceWhatIsNoReceipt) {
  add("text.plist", "not a property list");
  add("empty.plist", "");
  add("array.plist", "<plist><array/></plist>");
  add("undated.plist", "<plist><dict><key>PackageIdentifier</key><string>a</string></dict></plist>");
  add("textual.plist",
      "<plist><dict><key>PackageIdentifier</key><string>a</string><key>InstallDate</key>"
      "<string>2019-03-01T10:00:00Z</string></dict></plist>");
  add("good.plist", receipt("good"));
  EXPECT_THAT(scan(), ElementsAre("good"));
  EXPECT_THAT(services.alerts, IsEmpty());
}

TEST_F(ReceiptScan, ListsReceiptsOfTheSamePackageEach) {
  add("a.plist", receipt("same"));
  add("b.plist", receipt("same"));
  EXPECT_THAT(scan(), ElementsAre("same", "same"));
}

TEST_F(ReceiptScan, AlertsOnceForAFolderNamedLikeAReceiptAndLooksIntoIt) {
  add("f.plist/inside.plist", receipt("inside"));
  add("other.plist", receipt("other"));
  EXPECT_THAT(scan(), UnorderedElementsAre("inside", "other"));
  EXPECT_THAT(services.alerts, ElementsAre(receiptAlert));
}

TEST_F(ReceiptScan, AlertsForEachFifoDeviceOrDanglingLinkAndGoesOn) {
  volume.addFifo("System/Library/Receipts/fifo.plist");
  volume.addLink("System/Library/Receipts/device.plist", "/dev/zero");
  volume.addLink("System/Library/Receipts/dangling.plist", "nowhere");
  add("good.plist", receipt("good"));
  EXPECT_THAT(scan(), ElementsAre("good"));
  EXPECT_THAT(services.alerts, ElementsAre(receiptAlert, receiptAlert, receiptAlert));
}

TEST_F(ReceiptScan, AlertsForAReceiptThatMayNotBeReadAndGoesOn) {
  chmod(add("closed.plist", receipt("closed")).c_str(), 0);
  add("open.plist", receipt("open"));
  chmod(volume.path().c_str(), 0755);
  const std::string found = test::withoutPrivileges([&] {
    std::string names;
    for (const auto& name : scan()) names += name + " ";
    return names + std::to_string(services.alerts.size());
  });
  EXPECT_EQ(found, "open 1");
}

TEST_F(ReceiptScan, AlertsForAReceiptThatVanishedMeanwhile) {
  // Whatever is walked first, its alert is up when the user removes everything.
  volume.addFifo("System/Library/Receipts/a.plist");
  volume.addFifo("System/Library/Receipts/b.plist");
  services.answer = [&](const ShownAlert&) {
    std::filesystem::remove_all(folder());
    return platform::alertFirstButtonReturn;
  };
  EXPECT_THAT(scan(), IsEmpty());
  EXPECT_THAT(services.alerts, ElementsAre(receiptAlert, receiptAlert));
}

TEST_F(ReceiptScan, FollowsLinksToFilesAndNotToFolders) {
  volume.addFile("elsewhere/x.plist", receipt("elsewhere"));
  volume.addLink("System/Library/Receipts/link.plist", "../../../elsewhere/x.plist");
  volume.addLink("System/Library/Receipts/folder", "../../../elsewhere");
  volume.addLink("System/Library/Receipts/loop", ".");
  volume.addLink("System/Library/Receipts/folder.plist", "../../../elsewhere");
  EXPECT_THAT(scannedPaths(), ElementsAre("/System/Library/Receipts/link"));
  EXPECT_THAT(services.alerts, ElementsAre(receiptAlert));
}

TEST_F(ReceiptScan, AlertsForAReceiptWithAHoleOfATerabyte) {
  std::filesystem::resize_file(add("huge.plist", ""), std::uintmax_t{1} << 40U);
  add("good.plist", receipt("good"));
  EXPECT_THAT(scan(), ElementsAre("good"));
  EXPECT_THAT(services.alerts, ElementsAre(receiptAlert));
}

// A sanitizer's allocator ends the process where the real one throws.
#if defined(__linux__) && !defined(PELMARIX_SANITIZED)

/// Runs `body` in a child process with so little memory beside what that has already.
std::string withMemory(std::size_t size, const std::function<std::string()>& body) {
  return test::inChild([&]() -> std::string {
    malloc_trim(0);  // what other tests left is not to be had
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    const std::size_t all = pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) + size;
    const rlimit limit = {all, all};
    return setrlimit(RLIMIT_AS, &limit) == 0 ? body() : "no limit set";
  });
}

TEST_F(ReceiptScan, AlertsForAReceiptThatThereIsNoMemoryToDecodeAndGoesOn) {
  // A few kilobytes on disk: the table of eight million objects is a hole.
  constexpr std::uintmax_t objects = std::uintmax_t{8} << 20U;
  const std::string file = add("holes.plist", "bplist00\x09");
  std::filesystem::resize_file(file, 9 + objects);
  std::string trailer(32, '\0');
  trailer[6] = 1;
  trailer[7] = 4;
  trailer[13] = static_cast<char>(objects >> 16U);
  trailer[31] = 9;
  std::ofstream(file, std::ios::binary | std::ios::app) << trailer;
  add("good.plist", receipt("good"));
  const std::string found = withMemory(std::size_t{64} << 20U, [&] {
    std::string names;
    for (const auto& name : scan()) names += name + " ";
    return names + std::to_string(services.alerts.size());
  });
  EXPECT_EQ(found, "good 1");
}

#endif

class HistoryLoader : public Reading {
 protected:
  void write(const std::string& contents) const {
    volume.addFile("Library/Receipts/InstallHistory.plist", contents);
  }
  static std::string entry(const std::string& name, const std::string& version) {
    return "<dict><key>date</key><date>2018-09-24T10:00:00Z</date><key>displayName</key><string>" + name +
           "</string><key>displayVersion</key><string>" + version + "</string></dict>";
  }
  static std::vector<std::string> groups() {
    std::vector<std::string> names;
    for (const auto& group : readInstallHistory()) names.push_back(group->name);
    return names;
  }
};

TEST_F(HistoryLoader, GroupsTheEntriesOfTheFile) {
  write("<plist><array>" + entry("macOS Mojave", "10.14") + entry("MRTConfigData", "1.35") +
        entry("macOS 10.14.1", "10.14.1") + "</array></plist>");
  EXPECT_THAT(groups(), ElementsAre("macOS Mojave 10.14", "macOS 10.14.1 10.14.1"));
  EXPECT_THAT(services.alerts, IsEmpty());
}

TEST_F(HistoryLoader, SaysNothingOfAnEmptyList) {
  write("<plist><array/></plist>");
  EXPECT_THAT(groups(), IsEmpty());
  EXPECT_THAT(services.alerts, IsEmpty());
}

TEST_F(HistoryLoader, AlertsOnceWhenTheFileIsMissing) {
  EXPECT_THAT(groups(), IsEmpty());
  EXPECT_THAT(services.alerts, ElementsAre(historyAlert));
}

TEST_F(HistoryLoader, AlertsOnceWhenItIsAFolderAFifoOrADanglingLink) {
  volume.addFolder("Library/Receipts/InstallHistory.plist");
  EXPECT_THAT(groups(), IsEmpty());
  std::filesystem::remove(volume / "Library/Receipts/InstallHistory.plist");
  volume.addFifo("Library/Receipts/InstallHistory.plist");
  EXPECT_THAT(groups(), IsEmpty());
  std::filesystem::remove(volume / "Library/Receipts/InstallHistory.plist");
  volume.addLink("Library/Receipts/InstallHistory.plist", "nowhere");
  EXPECT_THAT(groups(), IsEmpty());
  EXPECT_THAT(services.alerts, ElementsAre(historyAlert, historyAlert, historyAlert));
}

TEST_F(HistoryLoader, ReadsAFileThatALinkLeadsTo) {
  volume.addFile("elsewhere", "<plist><array>" + entry("macOS Mojave", "10.14") + "</array></plist>");
  volume.addFolder("Library/Receipts");
  volume.addLink("Library/Receipts/InstallHistory.plist", "../../elsewhere");
  EXPECT_THAT(groups(), ElementsAre("macOS Mojave 10.14"));
}

TEST_F(HistoryLoader, AlertsOnceWhenTheFileMayNotBeRead) {
  write("<plist><array/></plist>");
  chmod(volume.path().c_str(), 0755);
  chmod((volume / "Library/Receipts/InstallHistory.plist").c_str(), 0);
  const std::string found = test::withoutPrivileges([&] {
    const std::string read = std::to_string(groups().size());
    return read + " groups, " + std::to_string(services.alerts.size()) + " alerts";
  });
  EXPECT_EQ(found, "0 groups, 1 alerts");
}

#if defined(__linux__) && !defined(PELMARIX_SANITIZED)

TEST_F(HistoryLoader, ReadsAllOrAlertsOnceHoweverLittleMemoryThereIs) {
  std::string entries;
  for (int i = 0; i < 20000; ++i) entries += entry("macOS Mojave of a long name", "10.14.1.18B75.100.1");
  write("<plist><array>" + entries + "</array></plist>");
  std::vector<std::string> outcomes;
  for (std::size_t size = 0; outcomes.empty() || outcomes.back() != "20000 groups, 0 alerts";
       size += 1U << 20U)
    outcomes.push_back(withMemory(size, [&] {
      const std::string read = std::to_string(groups().size());
      return read + " groups, " + std::to_string(services.alerts.size()) + " alerts";
    }));
  outcomes.pop_back();
  EXPECT_GE(outcomes.size(), 4U);
  EXPECT_THAT(outcomes, testing::Each("0 groups, 1 alerts"));
}

#endif

TEST_F(HistoryLoader, AlertsOnceWhenOneEntryOfTheFileIsNoEntry) {
  write("<plist><array>" + entry("macOS Mojave", "10.14") + "<dict/></array></plist>");
  EXPECT_THAT(groups(), IsEmpty());
  EXPECT_THAT(services.alerts, ElementsAre(historyAlert));
}

}  // namespace
}  // namespace pelmarix::posix
