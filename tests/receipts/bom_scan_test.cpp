#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "receipts/bom.h"
#include "tests/support/binary_receipt.h"
#include "tests/support/memory_file_manager.h"
#include "tests/support/property_list_text.h"
#include "tests/support/test_services.h"

namespace pelmarix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string folder = "/System/Library/Receipts/";
const test::ShownAlert unreadableReceipt =
    test::errorAlert("An error occurred in your last action:", "Couldn't read BoM PLists.");

class Scan : public testing::Test {
 protected:
  Scan() { services.services.fileManager = &fileManager; }

  void addFile(const std::string& name, const std::string& contents) {
    fileManager.folders[folder].push_back(name);
    fileManager.files[folder + name] = contents;
  }
  void addReceipt(const std::string& name, const std::string& identifier, const std::string& date) {
    addFile(name, test::receipt(identifier, date));
  }

  std::vector<std::string> scannedNames() {
    bom.readBoMPLists();
    std::vector<std::string> names;
    for (const auto& item : bom.children) names.push_back(item->name);
    return names;
  }

  test::TestServices services;
  test::MemoryFileManager fileManager;
  BoM bom;
};

TEST_F(Scan, OfNoFolderFindsNothingSilently) {
  EXPECT_THAT(scannedNames(), IsEmpty());
  EXPECT_THAT(services.alerts, IsEmpty());
}

TEST_F(Scan, OfAnEmptyFolderFindsNothingSilently) {
  fileManager.folders[folder];
  EXPECT_THAT(scannedNames(), IsEmpty());
  EXPECT_THAT(services.alerts, IsEmpty());
}

TEST_F(Scan, PutsTheNewestFirst) {
  addReceipt("a.plist", "a", "2019-03-01T00:00:00Z");
  addReceipt("b.plist", "b", "2020-05-02T00:00:00Z");
  EXPECT_THAT(scannedNames(), ElementsAre("b", "a"));
}

TEST_F(Scan, KeepsTheFileSystemsOrderBetweenEqualDates) {
  addReceipt("z.plist", "z", "2019-03-01T00:00:00Z");
  addReceipt("new.plist", "new", "2020-03-01T00:00:00Z");
  addReceipt("a.plist", "a", "2019-03-01T00:00:00Z");
  addReceipt("m.plist", "m", "2019-03-01T00:00:00Z");
  EXPECT_THAT(scannedNames(), ElementsAre("new", "z", "a", "m"));
}

TEST_F(Scan, KeepsThatOrderHoweverManyAndHoweverLargeTheReceiptsAre) {
  std::vector<std::string> expected;
  for (int i = 0; i < 1000; ++i) {
    std::string name = "receipt " + std::to_string(i * 7919 % 1000);
    const std::string large = i % 300 == 0 ? std::string(200000, ' ') : "";
    addFile(name + ".plist", test::receipt(name, "2019-03-01T00:00:00Z") + large);
    if (i % 10 == 0) addFile(name + " broken.plist", "<dict>" + large);
    expected.push_back(std::move(name));
  }
  EXPECT_EQ(scannedNames(), expected);
  EXPECT_EQ(bom.children[1]->path, folder + expected[1]);
}

TEST_F(Scan, SortsDatesOfAllTimes) {
  const std::vector<double> newestFirst = {std::numeric_limits<double>::max(),
                                           6e8,
                                           2.5,
                                           2.25,
                                           1,
                                           std::numeric_limits<double>::denorm_min(),
                                           0,
                                           -std::numeric_limits<double>::denorm_min(),
                                           -0.5,
                                           -1,
                                           -63113904000.0,
                                           std::numeric_limits<double>::lowest()};
  std::vector<std::string> expected;
  for (std::size_t i = 0; i < newestFirst.size(); ++i) expected.push_back("date " + std::to_string(i));
  for (std::size_t i = 0; i < newestFirst.size(); ++i) {
    const std::size_t next = (i * 5 + 3) % newestFirst.size();
    addFile(expected[next] + ".plist", test::binaryReceipt(expected[next], newestFirst[next]));
  }
  EXPECT_EQ(scannedNames(), expected);
}

TEST_F(Scan, TakesMinusZeroForTheDateThatZeroIs) {
  addFile("1.plist", test::binaryReceipt("first", -0.0));
  addFile("2.plist", test::binaryReceipt("second", 0.0));
  addFile("3.plist", test::binaryReceipt("third", -0.0));
  EXPECT_THAT(scannedNames(), ElementsAre("first", "second", "third"));
}

TEST_F(Scan, SortsLikeAStableSortByDate) {
  std::mt19937 random(20191007);
  std::vector<std::pair<double, std::string>> receipts;
  for (int i = 0; i < 3000; ++i) {
    // About ten of each date, on both sides of the reference date.
    receipts.emplace_back((static_cast<int>(random() % 300) - 100) * 12345.675, "r" + std::to_string(i));
    addFile(receipts.back().second + ".plist",
            test::binaryReceipt(receipts.back().second, receipts.back().first));
  }
  std::stable_sort(receipts.begin(), receipts.end(),
                   [](const auto& a, const auto& b) { return a.first > b.first; });
  std::vector<std::string> expected;
  expected.reserve(receipts.size());
  for (const auto& receipt : receipts) expected.push_back(receipt.second);
  EXPECT_EQ(scannedNames(), expected);
}

TEST_F(Scan, TakesNameDateAndPathFromTheReceiptAndItsPlace) {
  addReceipt("g.plist", "com.example.pkg.g", "2019-03-26T10:11:12Z");
  bom.readBoMPLists();
  ASSERT_EQ(bom.children.size(), 1u);
  const BoMItem& item = *bom.children[0];
  EXPECT_EQ(item.name, "com.example.pkg.g");
  EXPECT_EQ(item.installDate, Date{575287872});
  EXPECT_EQ(item.path, "/System/Library/Receipts/g");
  EXPECT_EQ(item.theBomCmd, "/usr/bin/lsbom");
  EXPECT_THAT(item.theBomParams, ElementsAre("-f", "-p", "fsT"));
  EXPECT_EQ(item.theBomExtension, ".bom");
}

TEST_F(Scan, FindsReceiptsInSubFolders) {
  fileManager.folders[folder].push_back("sub");
  addReceipt("sub/c.plist", "c", "2019-03-26T10:11:12Z");
  bom.readBoMPLists();
  ASSERT_EQ(bom.children.size(), 1u);
  EXPECT_EQ(bom.children[0]->path, "/System/Library/Receipts/sub/c");
}

TEST_F(Scan, LooksAtTheExtensionExactly) {
  for (const char* name :
       {"d.PLIST", "d.Plist", "e.plist.bak", "plist", "fplist", "folder.plist/readme", ".plist.d/x"})
    addReceipt(name, name, "2019-03-26T10:11:12Z");
  EXPECT_THAT(scannedNames(), IsEmpty());
  EXPECT_THAT(fileManager.pathsRead, IsEmpty());
  EXPECT_THAT(services.alerts, IsEmpty());
}

TEST_F(Scan, TakesAFileOfWhichOnlyTheExtensionIsThere) {
  addReceipt(".plist", "hidden", "2019-03-26T10:11:12Z");
  addReceipt("sub/.plist", "hidden too", "2019-03-25T10:11:12Z");
  bom.readBoMPLists();
  ASSERT_EQ(bom.children.size(), 2u);
  EXPECT_EQ(bom.children[0]->path, "/System/Library/Receipts/");
  EXPECT_EQ(bom.children[1]->path, "/System/Library/Receipts/sub/");
}

TEST_F(Scan, KeepsTheBytesOfANameThatIsNotUtf8) {
  addReceipt("\xFF\xFE.plist", "odd", "2019-03-26T10:11:12Z");
  bom.readBoMPLists();
  ASSERT_EQ(bom.children.size(), 1u);
  EXPECT_EQ(bom.children[0]->path, "/System/Library/Receipts/\xFF\xFE");
}

TEST_F(Scan, ShowsAnAlertForEachFileThatCannotBeReadAndGoesOn) {
  fileManager.folders[folder] = {"f.plist", "gone.plist"};
  addReceipt("a.plist", "a", "2019-03-26T10:11:12Z");
  addReceipt("f.plist/inner.plist", "inner", "2019-03-25T10:11:12Z");
  EXPECT_THAT(scannedNames(), ElementsAre("a", "inner"));
  EXPECT_THAT(services.alerts, ElementsAre(unreadableReceipt, unreadableReceipt));
}

TEST_F(Scan, ShowsTheAlertBeforeItReadsOn) {
  fileManager.folders[folder] = {"f.plist"};
  addReceipt("a.plist", "a", "2019-03-26T10:11:12Z");
  services.answer = [&](const test::ShownAlert&) {
    EXPECT_THAT(fileManager.pathsRead, ElementsAre(folder + "f.plist"));
    return platform::alertFirstButtonReturn;
  };
  EXPECT_THAT(scannedNames(), ElementsAre("a"));
  EXPECT_EQ(services.alerts.size(), 1u);
}

TEST_F(Scan, PassesOverWhatIsNoReceiptSilently) {
  addFile("text.plist", "no property list");
  addFile("empty.plist", "");
  addFile("array.plist", test::propertyList("<array/>"));
  addFile("nodate.plist",
          test::propertyList("<dict>" + test::key("PackageIdentifier", test::string("a")) + "</dict>"));
  addFile("textdate.plist",
          test::propertyList("<dict>" + test::key("PackageIdentifier", test::string("a")) +
                             test::key("InstallDate", test::string("2019-03-26T10:11:12Z")) + "</dict>"));
  addReceipt("a.plist", "a", "2019-03-26T10:11:12Z");
  EXPECT_THAT(scannedNames(), ElementsAre("a"));
  EXPECT_THAT(services.alerts, IsEmpty());
}

TEST_F(Scan, KeepsTwoReceiptsOfTheSamePackage) {
  addReceipt("a.plist", "same", "2019-03-26T10:11:12Z");
  addReceipt("b.plist", "same", "2019-03-26T10:11:12Z");
  EXPECT_THAT(scannedNames(), ElementsAre("same", "same"));
}

TEST_F(Scan, ReplacesTheListItFoundBefore) {
  addReceipt("a.plist", "a", "2019-03-26T10:11:12Z");
  EXPECT_THAT(scannedNames(), ElementsAre("a"));
  fileManager.folders[folder].clear();
  addReceipt("b.plist", "b", "2019-03-26T10:11:12Z");
  EXPECT_THAT(scannedNames(), ElementsAre("b"));
}

TEST_F(Scan, DoesNotAskForTheBillOfMaterials) {
  addReceipt("a.plist", "a", "2019-03-26T10:11:12Z");
  bom.readBoMPLists();
  EXPECT_THAT(fileManager.pathsRead, ElementsAre(folder + "a.plist"));
}

TEST(BoM, StartsWithoutChildren) { EXPECT_THAT(BoM().children, IsEmpty()); }

TEST(BoMItem, IsMadeFromNameDateAndPathOnly) {
  EXPECT_FALSE(std::is_default_constructible_v<BoMItem>);
  EXPECT_TRUE((std::is_constructible_v<BoMItem, std::string, Date, std::string>));
}

TEST(ReceiptsCsv, HasARecordForEachReceiptBelowTheTitles) {
  BoM boms;
  EXPECT_EQ(boms.csvText(), "Date,Package,Path\r\n");
  boms.children = {
      std::make_shared<BoMItem>("com.example.new", Date{575287872}, "/System/Library/Receipts/a b"),
      std::make_shared<BoMItem>("com.example.old", Date{0}, "/System/Library/Receipts/in,ner/\xff")};
  EXPECT_EQ(boms.csvText(),
            "Date,Package,Path\r\n"
            "2019-03-26 10:11:12 +0000,com.example.new,/System/Library/Receipts/a b.plist\r\n"
            "2001-01-01 00:00:00 +0000,com.example.old,\"/System/Library/Receipts/in,ner/\uFFFD.plist\"\r\n");
}

}  // namespace
}  // namespace pelmarix
