#include "lsbom/bill_of_materials.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

#include "sample/bom_writer.h"
#include "sample/package_contents.h"
#include "tests/lsbom/editable_bom.h"
#include "tests/lsbom/support.h"

namespace pelmarix::lsbom {
namespace {

using sample::BomEntry;
using sample::BomKind;
using sample::BomLayout;
using sample::writeBillOfMaterials;
using testing::ElementsAre;

const std::vector<BomEntry> package = {
    {.path = ".",
     .kind = BomKind::folder,
     .mode = 041775,
     .user = 0,
     .group = 80,
     .modificationTime = 1474068532},
    {.path = "./Applications", .kind = BomKind::folder, .mode = 040755, .modificationTime = 1},
    {.path = "./Applications/My Tool.app", .kind = BomKind::folder, .mode = 040755, .modificationTime = 2},
    {.path = "./Applications/My Tool.app/run",
     .mode = 0100755,
     .user = 501,
     .group = 20,
     .modificationTime = 4294967295,
     .size = 4294967295,
     .checksum = 4294967294,
     .processors = {{0x1000007, 3, 40, 41}, {7, 3, 30, 31}}},
    {.path = "./Applications/Über\tblick", .size = 7, .checksum = 8},
    {.path = "./dev", .kind = BomKind::device, .mode = 0060640},
    {.path = "./latest", .kind = BomKind::link, .mode = 0120755, .linkTarget = "Applications/My Tool.app"},
};

const std::string packageListing =
    ".\t41775\t0/80\n"
    "./Applications\t40755\t0/0\n"
    "./Applications/My Tool.app\t40755\t0/0\n"
    "./Applications/My Tool.app/run\t100755\t501/20\t4294967295\t4294967294\n"
    "./Applications/Über\tblick\t100644\t0/0\t7\t8\n"
    "./dev\t60640\t0/0\n"
    "./latest\t120755\t0/0\t24\t" +
    std::to_string(sample::posixChecksum("Applications/My Tool.app")) + "\tApplications/My Tool.app\n";

std::vector<std::string> pathsOf(const std::string& bytes) {
  const std::string text = listingOf(bytes, {.pathsOnly = true});
  std::vector<std::string> paths;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = text.find('\n', begin);
    paths.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return paths;
}

TEST(BillOfMaterials, ReadsWhatTheWriterWrote) {
  EXPECT_EQ(listingOf(writeBillOfMaterials(package)), packageListing);
}

TEST(BillOfMaterials, ReadsOldShortRecords) {
  EXPECT_EQ(listingOf(writeBillOfMaterials(package, {.oldRecords = true})), packageListing);
}

TEST(BillOfMaterials, ReadsVariablesAtAnotherPlace) {
  EXPECT_EQ(listingOf(writeBillOfMaterials(package, {.variablesFirst = true})), packageListing);
}

TEST(BillOfMaterials, ReadsAnIndexAheadOfTheBlocks) {
  EXPECT_EQ(listingOf(writeBillOfMaterials(package, {.indexFirst = true})), packageListing);
}

TEST(BillOfMaterials, ReadsBlocksInAnotherOrder) {
  EXPECT_EQ(listingOf(writeBillOfMaterials(package, {.blocksReversed = true})), packageListing);
}

TEST(BillOfMaterials, ReadsNodesWithoutPadding) {
  EXPECT_EQ(listingOf(writeBillOfMaterials(package, {.paddedNodes = false})), packageListing);
}

TEST(BillOfMaterials, ReadsAFileThatIsUnusualInEveryWay) {
  const BomLayout layout{.oldRecords = true,
                         .variablesFirst = true,
                         .indexFirst = true,
                         .blocksReversed = true,
                         .paddedNodes = false,
                         .pathsPerNode = 2,
                         .firstId = 1000,
                         .idStep = 77};
  EXPECT_EQ(listingOf(writeBillOfMaterials(package, layout)), packageListing);
}

TEST(BillOfMaterials, AnEmptyListHasNoEntries) {
  for (const bool paddedNodes : {true, false}) {
    const std::string bytes = writeBillOfMaterials({}, {.paddedNodes = paddedNodes});
    const auto bom = BillOfMaterials::read(bytes);
    ASSERT_TRUE(bom);
    EXPECT_EQ(bom->size(), 0U);
  }
}

TEST(BillOfMaterials, FindsParentsWhereIdsHaveGaps) {
  EXPECT_EQ(listingOf(writeBillOfMaterials(package, {.idStep = 3})), packageListing);
}

TEST(BillOfMaterials, FindsParentsWhereIdsAreFarApart) {
  EXPECT_EQ(listingOf(writeBillOfMaterials(package, {.firstId = 4000000000, .idStep = 40000000})),
            packageListing);
}

TEST(BillOfMaterials, OrdersChildrenByTheBytesOfTheirNamesAndNotByWholePaths) {
  const std::string bytes = writeBillOfMaterials({{.path = "./a b"},
                                                  {.path = "./a/z"},
                                                  {.path = "./a-b"},
                                                  {.path = "./Z"},
                                                  {.path = "./é"},
                                                  {.path = "./z"},
                                                  {.path = "./a"},
                                                  {.path = "."}});
  EXPECT_THAT(pathsOf(bytes), ElementsAre(".", "./Z", "./a", "./a/z", "./a b", "./a-b", "./z", "./é"));
}

TEST(BillOfMaterials, OrdersPathsThatTheFileHasInAnotherOrder) {
  EditableBom bom({{.path = "."}, {.path = "./a"}, {.path = "./b"}, {.path = "./c"}});
  const std::uint32_t numbers = bom.numbersBlock(1);
  const std::uint32_t name = bom.nameBlock(1);
  bom.setU32(bom.pathPair(1), bom.numbersBlock(3)).setU32(bom.pathPair(1) + 4, bom.nameBlock(3));
  bom.setU32(bom.pathPair(3), numbers).setU32(bom.pathPair(3) + 4, name);
  EXPECT_THAT(pathsOf(bom.bytes), ElementsAre(".", "./a", "./b", "./c"));
}

TEST(BillOfMaterials, OrdersPathsOfWhichOnlyTheNodesAreInAnotherOrder) {
  EditableBom bom({{.path = "."}, {.path = "./b"}, {.path = "./c"}, {.path = "./d"}}, {.pathsPerNode = 2});
  bom.bytes[bom.block(bom.nameBlock(1)) + 4] = 'z';
  EXPECT_THAT(pathsOf(bom.bytes), ElementsAre(".", "./c", "./d", "./z"));
}

TEST(BillOfMaterials, ListsPathsOfOneNameByTheirIds) {
  const std::string bytes = writeBillOfMaterials({{.path = "a", .size = 1}, {.path = "a", .size = 2}});
  EXPECT_EQ(listingOf(bytes, {.columns = "fs"}), "a\t1\na\t2\n");
  EditableBom bom({{.path = "a", .size = 1}, {.path = "a", .size = 2}});
  bom.setU32(bom.block(bom.numbersBlock(0)), 9);
  EXPECT_EQ(listingOf(bom.bytes, {.columns = "fs"}), "a\t2\na\t1\n");
}

TEST(BillOfMaterials, ReadsMorePathsThanOneNodeHolds) {
  for (const std::size_t count : {509U, 510U, 511U, 1021U, 20000U}) {
    const std::vector<BomEntry> entries = sample::manyBomEntries(count);
    std::vector<std::string> expected;
    expected.reserve(count);
    for (const BomEntry& entry : entries) expected.push_back(entry.path);
    std::vector<std::string> paths = pathsOf(writeBillOfMaterials(entries));
    std::sort(expected.begin(), expected.end());
    std::sort(paths.begin(), paths.end());
    EXPECT_EQ(paths, expected);
  }
}

TEST(BillOfMaterials, ReadsSeveralLevelsOfInnerNodes) {
  const std::vector<BomEntry> entries = sample::manyBomEntries(300);
  EXPECT_EQ(listingOf(writeBillOfMaterials(entries, {.pathsPerNode = 3})),
            listingOf(writeBillOfMaterials(entries)));
}

TEST(BillOfMaterials, KeepsNamesAsTheyAre) {
  EditableBom bom({{.path = "."}, {.path = "./abcdef"}});
  bom.bytes.replace(bom.block(bom.nameBlock(1)) + 4, 6, "\n/\t\xFF\x01 ");
  const auto read = BillOfMaterials::read(bom.bytes);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->entry(1).name, "\n/\t\xFF\x01 ");
}

TEST(BillOfMaterials, LetsPathsShareARecord) {
  EditableBom bom({{.path = "."}, {.path = "./a", .size = 5}, {.path = "./b", .size = 6}});
  bom.setU32(bom.block(bom.numbersBlock(2)) + 4, bom.recordBlock(1));
  EXPECT_EQ(listingOf(bom.bytes, {.columns = "fs"}), ".\t0\n./a\t5\n./b\t5\n");
}

TEST(BillOfMaterials, AcceptsBlocksThatOverlap) {
  EditableBom bom({{.path = "."}, {.path = "./a", .size = 5}, {.path = "./b", .size = 6}});
  bom.setU32(bom.indexPair(bom.recordBlock(2)), bom.u32(bom.indexPair(bom.recordBlock(1))));
  EXPECT_EQ(listingOf(bom.bytes, {.columns = "fs"}), ".\t0\n./a\t5\n./b\t5\n");
}

TEST(BillOfMaterials, ListsSeveralPathsAtTheTop) {
  EXPECT_THAT(pathsOf(writeBillOfMaterials({{.path = "b"}, {.path = "a"}, {.path = "a/c"}})),
              ElementsAre("a", "a/c", "b"));
}

TEST(BillOfMaterials, DoesNotTrustTheHeadersNumberOfBlocks) {
  EditableBom bom(package);
  EXPECT_EQ(listingOf(bom.setU32(12, 0xFFFFFFFF).bytes), packageListing);
}

TEST(BillOfMaterials, ReadsFoldersThatAreThousandsDeep) {
  std::string path = ".";
  std::vector<BomEntry> entries{{.path = path}};
  while (entries.size() < 2048) entries.push_back({.path = path += "/d"});
  const std::vector<std::string> paths = pathsOf(writeBillOfMaterials(entries));
  ASSERT_EQ(paths.size(), entries.size());
  EXPECT_EQ(paths.back(), path);
}

TEST(BillOfMaterials, ReadsPathsUpToTheLongest) {
  const std::string folder(2000, 'f');
  const std::string file(longestPath - folder.size() - 1, 'n');
  EXPECT_THAT(pathsOf(writeBillOfMaterials({{.path = folder}, {.path = folder + "/" + file}})),
              ElementsAre(folder, folder + "/" + file));
}

TEST(BillOfMaterials, ReadsLongNamesAndLongFoldersThatDoNotMeet) {
  const std::string folder(3000, 'f');
  const std::string file(longestPath, 'n');
  EXPECT_THAT(pathsOf(writeBillOfMaterials({{.path = folder}, {.path = folder + "/a"}, {.path = file}})),
              ElementsAre(folder, folder + "/a", file));
}

}  // namespace
}  // namespace pelmarix::lsbom
