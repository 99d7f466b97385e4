#include "lsbom/listing.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sample/bom_writer.h"
#include "sample/package_contents.h"
#include "tests/lsbom/editable_bom.h"
#include "tests/lsbom/support.h"
#include "tests/support/heap_meter.h"

namespace pelmarix::lsbom {
namespace {

using sample::BomEntry;
using sample::BomKind;
using sample::writeBillOfMaterials;

const std::string package = writeBillOfMaterials({
    {.path = ".", .kind = BomKind::folder, .mode = 040755, .group = 80, .modificationTime = 86400},
    {.path = "./block",
     .kind = BomKind::device,
     .mode = 0060640,
     .group = 5,
     .modificationTime = 1,
     .checksum = 7},
    {.path = "./character", .kind = BomKind::device, .mode = 0020666, .modificationTime = 2, .checksum = 8},
    {.path = "./file",
     .mode = 0104755,
     .user = 501,
     .group = 20,
     .modificationTime = 1538021007,
     .size = 12345,
     .checksum = 99},
    {.path = "./link",
     .kind = BomKind::link,
     .mode = 0120755,
     .user = 1,
     .modificationTime = 3,
     .linkTarget = "file"},
    {.path = "./program",
     .mode = 0100755,
     .modificationTime = 4,
     .size = 70,
     .checksum = 71,
     .processors = {{0x1000007, 3, 40, 41}, {7, 3, 30, 31}}},
});

const AccountNames names{Accounts("root:*:0:\nmaria:*:501:\n"), Accounts("wheel:*:0:\nadmin:*:80:\n")};

std::string listed(const ListOptions& options) { return listingOf(package, options, names); }

TEST(Listing, HasThreeFiveOrSixFieldsWithoutOptions) {
  EXPECT_EQ(listed({}),
            ".\t40755\t0/80\n"
            "./block\t60640\t0/5\n"
            "./character\t20666\t0/0\n"
            "./file\t104755\t501/20\t12345\t99\n"
            "./link\t120755\t1/0\t4\t4152806985\tfile\n"
            "./program\t100755\t0/0\t70\t71\n");
}

TEST(Listing, ChoosesBlockDevices) {
  EXPECT_EQ(listed({.blockDevices = true, .pathsOnly = true}), "./block\n");
  const std::string ofEverybody = writeBillOfMaterials(
      {{.path = "block", .kind = BomKind::device, .mode = 0060777, .modificationTime = 1, .checksum = 7}});
  EXPECT_EQ(listingOf(ofEverybody, {.blockDevices = true, .pathsOnly = true}), "block\n");
}

TEST(Listing, ChoosesCharacterDevices) {
  EXPECT_EQ(listed({.characterDevices = true, .pathsOnly = true}), "./character\n");
}

TEST(Listing, ChoosesFolders) { EXPECT_EQ(listed({.folders = true, .pathsOnly = true}), ".\n"); }

TEST(Listing, ChoosesFiles) { EXPECT_EQ(listed({.files = true, .pathsOnly = true}), "./file\n./program\n"); }

TEST(Listing, ChoosesLinks) { EXPECT_EQ(listed({.links = true, .pathsOnly = true}), "./link\n"); }

TEST(Listing, ChoosesSeveralKindsTogether) {
  EXPECT_EQ(listed({.blockDevices = true, .folders = true, .links = true, .pathsOnly = true}),
            ".\n./block\n./link\n");
}

TEST(Listing, HasThePathsOfFilesWhoseFoldersAreNotChosen) {
  const std::string bytes = writeBillOfMaterials({{.path = "./a/b/c"}, {.path = "./a/d"}});
  EXPECT_EQ(listingOf(bytes, {.files = true, .pathsOnly = true}), "./a/b/c\n./a/d\n");
}

TEST(Listing, AddsModificationTimesToFilesOnly) {
  EXPECT_EQ(listed({.modificationTimes = true}),
            ".\t40755\t0/80\n"
            "./block\t60640\t0/5\n"
            "./character\t20666\t0/0\n"
            "./file\t104755\t501/20\t12345\t99\t1538021007\n"
            "./link\t120755\t1/0\t4\t4152806985\tfile\n"
            "./program\t100755\t0/0\t70\t71\t4\n");
}

TEST(Listing, CanLeaveModesOfFoldersAndLinksOut) {
  EXPECT_EQ(listed({.suppressModes = true}),
            ".\t\t0/80\n"
            "./block\t60640\t0/5\n"
            "./character\t20666\t0/0\n"
            "./file\t104755\t501/20\t12345\t99\n"
            "./link\t\t1/0\t4\t4152806985\tfile\n"
            "./program\t100755\t0/0\t70\t71\n");
  EXPECT_EQ(listed({.folders = true, .files = true, .suppressModes = true, .columns = "mMf"}),
            "\t\t.\n"
            "104755\t-rwsr-xr-x\t./file\n"
            "100755\t-rwxr-xr-x\t./program\n");
}

TEST(Listing, ShowsTheSizeAndChecksumOfOneArchitecturesPart) {
  EXPECT_EQ(listed({.files = true, .architecture = 7}),
            "./file\t104755\t501/20\t12345\t99\n"
            "./program\t100755\t0/0\t30\t31\n");
  EXPECT_EQ(listed({.files = true, .architecture = 0x1000007, .columns = "sS"}), "12345\t12,345\n40\t40\n");
  EXPECT_EQ(listed({.files = true, .architecture = 12, .columns = "s"}), "12345\n70\n");
}

TEST(Listing, PrintsNameSizeAndTime) {
  EXPECT_EQ(listed({.files = true, .columns = "fsT"}),
            "./file\t12345\tThu Sep 27 04:03:27 2018\n"
            "./program\t70\tThu Jan  1 00:00:04 1970\n");
}

TEST(Listing, PrintsEveryColumnInTheOrderOfTheLetters) {
  EXPECT_EQ(listed({.files = true, .columns = "?/UuTtSsMmGgFf"}),
            "maria/20\t501/20\tmaria\t501\tThu Sep 27 04:03:27 "
            "2018\t1538021007\t12,345\t12345\t-rwsr-xr-x\t104755\t20\t20"
            "\t\"./file\"\t./file\n"
            "root/wheel\t0/0\troot\t0\tThu Jan  1 00:00:04 1970\t4\t70\t70\t-rwxr-xr-x\t100755\twheel\t0"
            "\t\"./program\"\t./program\n");
}

TEST(Listing, LeavesColumnsEmptyThatARecordDoesNotHave) {
  EXPECT_EQ(listed({.columns = "sSt"}),
            "\t\t86400\n"
            "\t\t1\n"
            "\t\t2\n"
            "12345\t12,345\t1538021007\n"
            "4\t4\t3\n"
            "70\t70\t4\n");
}

TEST(Listing, PrintsIdsWithoutNamesAsNumbers) {
  EXPECT_EQ(listed({.links = true, .columns = "UG?"}), "1\twheel\t1/wheel\n");
}

TEST(Listing, FollowsTheRecordAndNotTheMode) {
  const std::string bytes =
      writeBillOfMaterials({{.path = "./._Logs", .mode = 040755, .size = 1, .checksum = 2},
                            {.path = "./plain", .mode = 0100644, .size = 3, .checksum = 4}});
  EXPECT_EQ(listingOf(bytes, {.files = true}), "./._Logs\t40755\t0/0\t1\t2\n./plain\t100644\t0/0\t3\t4\n");
}

TEST(Listing, PrintsARecordOfUnknownTypeWithoutSizeAndOnlyWhereNothingIsChosen) {
  EditableBom bom({{.path = "a"}});
  bom.setU8(bom.block(bom.recordBlock(0)), 9);
  EXPECT_EQ(listingOf(bom.bytes), "a\t100644\t0/0\n");
  EXPECT_EQ(
      listingOf(
          bom.bytes,
          {.blockDevices = true, .characterDevices = true, .folders = true, .files = true, .links = true}),
      "");
}

TEST(Listing, IsUtf8WhateverTheNamesAre) {
  const std::string bytes = writeBillOfMaterials(
      {{.path = "."},
       {.path = "./caf\xE9", .size = 1},
       {.path = "./caf\u00E9 \\351", .size = 2},
       {.path = "./link", .kind = BomKind::link, .mode = 0120755, .linkTarget = "\xE2\x82/\u20AC"}});
  const std::string checksum = std::to_string(sample::posixChecksum("\xE2\x82/\u20AC"));
  EXPECT_EQ(listingOf(bytes, {.files = true, .pathsOnly = true}), ".\n./caf\u00E9 \\351\n./caf\\351\n");
  EXPECT_EQ(listingOf(bytes, {.files = true, .columns = "sfF"}),
            "0\t.\t\".\"\n"
            "2\t./caf\u00E9 \\351\t\"./caf\u00E9 \\\\351\"\n"
            "1\t./caf\\351\t\"./caf\\351\"\n");
  EXPECT_EQ(listingOf(bytes, {.links = true}),
            "./link\t120755\t0/0\t6\t" + checksum + "\t\\342\\202/\u20AC\n");
  EXPECT_EQ(listingOf(bytes, {.links = true, .columns = "UG?"},
                      {Accounts("Ren\xE9:*:0:\n"), Accounts("Ren\u00E9:*:0:\n")}),
            "Ren\\351\tRen\u00E9\tRen\\351/Ren\u00E9\n");
}

TEST(Listing, HasWholePathsHoweverManyThereAre) {
  std::vector<BomEntry> entries{{.path = "./a/b/c/first"}};
  std::string expected = ".\n./a\n./a/b\n./a/b/c\n./a/b/c/first\n./a/b/d\n";
  for (int i = 100000; i < 110000; ++i) {
    entries.push_back({.path = "./a/b/d/" + std::to_string(i)});
    expected += entries.back().path + "\n";
  }
  EXPECT_EQ(listingOf(writeBillOfMaterials(entries), {.pathsOnly = true}), expected);
}

#ifdef __linux__  // which has a device that is always full
TEST(Listing, StopsWhereTheOutputFails) {
  std::FILE* const full = std::fopen("/dev/full", "wb");
  ASSERT_NE(full, nullptr);
  std::setvbuf(full, nullptr, _IONBF, 0);
  const std::string bytes = writeBillOfMaterials(sample::manyBomEntries(20000));
  const auto bom = BillOfMaterials::read(bytes);
  ASSERT_TRUE(bom);
  Output output(full);
  const auto listed = list(*bom, {}, {}, output);
  ASSERT_FALSE(listed);
  EXPECT_EQ(listed.error(), std::errc::no_space_on_device);
  std::fclose(full);
}
#endif

std::size_t heapPeakOfListing(const std::vector<BomEntry>& entries) {
  const std::string bytes = writeBillOfMaterials(entries);
  const auto bom = BillOfMaterials::read(bytes);
  const TemporaryFile file;
  Output output(file.get());
  const HeapMeter meter;
  EXPECT_TRUE(list(*bom, {}, {}, output));
  return meter.peak();
}

TEST(Listing, TakesTheMemoryForAnyPathBeforeItBegins) {
  std::vector<BomEntry> deepest{{.path = "d"}};
  while (deepest.back().path.size() + 2 <= longestPath)
    deepest.push_back({.path = deepest.back().path + "/d"});
  const std::vector<BomEntry> longest{{.path = std::string(longestPath, 'n')}};
  const std::size_t peak = heapPeakOfListing({{.path = "."}});
  EXPECT_GT(peak, longestPath);
  EXPECT_EQ(heapPeakOfListing(deepest), peak);
  EXPECT_EQ(heapPeakOfListing(longest), peak);
}

}  // namespace
}  // namespace pelmarix::lsbom
