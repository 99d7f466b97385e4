// One damage to a well-formed file for each fault that the lister tells apart.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lsbom/bill_of_materials.h"
#include "tests/lsbom/editable_bom.h"
#include "tests/support/heap_meter.h"

namespace pelmarix::lsbom {
namespace {

using sample::BomEntry;
using sample::BomKind;

// The paths in the order of the file: ".", "./a", "./b", "./l", "./p", "./a/f".
const std::vector<BomEntry> entries = {
    {.path = ".", .kind = BomKind::folder},
    {.path = "./a", .kind = BomKind::folder},
    {.path = "./a/f", .size = 1},
    {.path = "./b", .size = 2},
    {.path = "./l", .kind = BomKind::link, .linkTarget = "b"},
    {.path = "./p", .size = 3, .processors = {{7, 3, 1, 2}, {0x1000007, 3, 2, 3}}},
};
constexpr std::uint32_t link = 3;
constexpr std::uint32_t program = 4;
constexpr std::uint32_t lastPath = 5;

struct Damage {
  std::string_view name;
  std::function<void(EditableBom&)> doIt;
  Fault fault;
  std::uint32_t pathsPerNode = 510;
};

std::size_t nodeOf(const EditableBom& bom) { return bom.block(bom.rootNode()); }
std::size_t nameOf(const EditableBom& bom, std::uint32_t path) { return bom.block(bom.nameBlock(path)); }
std::size_t numbersOf(const EditableBom& bom, std::uint32_t path) {
  return bom.block(bom.numbersBlock(path));
}
std::size_t recordOf(const EditableBom& bom, std::uint32_t path) { return bom.block(bom.recordBlock(path)); }
std::uint32_t idOf(const EditableBom& bom, std::uint32_t path) { return bom.u32(numbersOf(bom, path)); }

// Shortens a block without moving anything.
void cut(EditableBom& bom, std::uint32_t block, std::uint32_t length) {
  bom.setU32(bom.indexPair(block) + 4, length);
}

const Damage damages[] = {
    {"NoBytes", [](EditableBom& bom) { bom.bytes.clear(); }, Fault::shortHeader},
    {"HeaderCutShort", [](EditableBom& bom) { bom.bytes.resize(31); }, Fault::shortHeader},
    {"OtherMagic", [](EditableBom& bom) { bom.bytes.replace(0, 8, "bplist00"); }, Fault::wrongMagic},
    {"OtherVersion", [](EditableBom& bom) { bom.setU32(8, 2); }, Fault::wrongVersion},

    {"IndexBehindTheEnd", [](EditableBom& bom) { bom.setU32(16, 0xFFFFFFFF); }, Fault::indexPastEnd},
    {"IndexOneByteTooLong", [](EditableBom& bom) { bom.setU32(20, bom.u32(20) + 1); }, Fault::indexPastEnd},
    {"IndexWhoseEndWraps", [](EditableBom& bom) { bom.setU32(20, 0xFFFFFFF0); }, Fault::indexPastEnd},
    {"FileWithoutItsLastByte", [](EditableBom& bom) { bom.bytes.pop_back(); }, Fault::indexPastEnd},
    {"IndexWithoutRoomForItsCount", [](EditableBom& bom) { bom.setU32(20, 3); }, Fault::indexTooShort},
    {"IndexThatCountsMoreBlocksThanItHolds",
     [](EditableBom& bom) { bom.setU32(bom.index(), bom.u32(bom.index()) + 1); }, Fault::indexTooShort},
    {"IndexThatCountsAsManyBlocksAsItCan", [](EditableBom& bom) { bom.setU32(bom.index(), 0xFFFFFFFF); },
     Fault::indexTooShort},

    {"VariablesBehindTheEnd", [](EditableBom& bom) { bom.setU32(24, 0xFFFFFFFF); }, Fault::variablesPastEnd},
    {"VariablesWhoseEndWraps", [](EditableBom& bom) { bom.setU32(28, 0xFFFFFFF0); }, Fault::variablesPastEnd},
    {"VariablesWithoutRoomForTheirCount", [](EditableBom& bom) { bom.setU32(28, 3); },
     Fault::variablesTooShort},
    {"MoreVariablesCountedThanThereAre", [](EditableBom& bom) { bom.setU32(bom.variables(), 0xFFFFFFFF); },
     Fault::variablesTooShort},
    {"VariableWithANameThatIsTooLong",
     [](EditableBom& bom) { bom.setU8(bom.variableNamed("Size64") + 4, 7); }, Fault::variablesTooShort},
    {"NoVariables", [](EditableBom& bom) { bom.setU32(bom.variables(), 0); }, Fault::noPaths},
    {"NoVariablePaths", [](EditableBom& bom) { bom.setU8(bom.variableNamed("Paths") + 5, 'p'); },
     Fault::noPaths},

    {"PathsInTheNullBlock", [](EditableBom& bom) { bom.setU32(bom.variableNamed("Paths"), 0); },
     Fault::unknownBlock},
    {"PathsInABlockBehindTheLast",
     [](EditableBom& bom) { bom.setU32(bom.variableNamed("Paths"), bom.u32(bom.index())); },
     Fault::unknownBlock},
    {"RootInABlockBehindTheLast", [](EditableBom& bom) { bom.setU32(bom.tree() + 8, 0xFFFFFFFF); },
     Fault::unknownBlock},
    {"ChildInABlockBehindTheLast", [](EditableBom& bom) { bom.setU32(nodeOf(bom) + 12, 0xFFFFFFFF); },
     Fault::unknownBlock, 2},
    {"NextLeafInABlockBehindTheLast", [](EditableBom& bom) { bom.setU32(nodeOf(bom) + 4, 0xFFFFFFFF); },
     Fault::unknownBlock},
    {"NumbersInABlockBehindTheLast", [](EditableBom& bom) { bom.setU32(bom.pathPair(1), 0xFFFFFFFF); },
     Fault::unknownBlock},
    {"NameInABlockBehindTheLast", [](EditableBom& bom) { bom.setU32(bom.pathPair(1) + 4, 0xFFFFFFFF); },
     Fault::unknownBlock},
    {"RecordInABlockBehindTheLast", [](EditableBom& bom) { bom.setU32(numbersOf(bom, 1) + 4, 0xFFFFFFFF); },
     Fault::unknownBlock},
    {"BlockBehindTheEnd", [](EditableBom& bom) { bom.setU32(bom.indexPair(bom.pathsBlock()), 0xFFFFFFFF); },
     Fault::blockPastEnd},
    {"BlockOneByteTooLong",
     [](EditableBom& bom) {
       const std::uint32_t block = bom.recordBlock(1);
       bom.setU32(bom.indexPair(block) + 4,
                  static_cast<std::uint32_t>(bom.bytes.size() - bom.block(block) + 1));
     },
     Fault::blockPastEnd},
    {"BlockWhoseEndWraps", [](EditableBom& bom) { cut(bom, bom.nameBlock(1), 0xFFFFFFF0); },
     Fault::blockPastEnd},

    {"TreeCutShort", [](EditableBom& bom) { cut(bom, bom.pathsBlock(), 20); }, Fault::shortTree},
    {"TreeWithOtherMagic", [](EditableBom& bom) { bom.bytes.replace(bom.tree(), 4, "Tree"); },
     Fault::wrongTreeMagic},
    {"TreeOfOtherVersion", [](EditableBom& bom) { bom.setU32(bom.tree() + 4, 2); }, Fault::wrongTreeVersion},
    {"NodeCutShort", [](EditableBom& bom) { cut(bom, bom.rootNode(), 11); }, Fault::shortNode},
    {"LeafThatCountsMorePathsThanItHolds", [](EditableBom& bom) { cut(bom, bom.rootNode(), 12 + 8 * 6 - 1); },
     Fault::nodeTooShort},
    {"LeafThatCountsAsManyPathsAsItCan", [](EditableBom& bom) { bom.setU16(nodeOf(bom) + 2, 0xFFFF); },
     Fault::nodeTooShort},
    {"InnerNodeWithoutRoomForItsLastChild", [](EditableBom& bom) { cut(bom, bom.rootNode(), 12 + 8); },
     Fault::nodeTooShort, 3},
    {"NodeThatIsItsOwnChild", [](EditableBom& bom) { bom.setU32(nodeOf(bom) + 12, bom.rootNode()); },
     Fault::nodeTwice, 3},
    {"NodeThatIsItsOwnLastChild", [](EditableBom& bom) { bom.setU32(nodeOf(bom) + 20, bom.rootNode()); },
     Fault::nodeTwice, 3},
    {"NodeThatIsItsOwnGrandchild",
     [](EditableBom& bom) { bom.setU32(bom.block(bom.childNode(bom.rootNode(), 0)) + 12, bom.rootNode()); },
     Fault::nodeTwice, 2},
    {"LeafThatIsAChildTwice",
     [](EditableBom& bom) { bom.setU32(nodeOf(bom) + 20, bom.childNode(bom.rootNode(), 0)); },
     Fault::nodeTwice, 3},
    {"LeafBesideAnInnerNode", [](EditableBom& bom) { bom.setU32(nodeOf(bom) + 20, bom.firstLeaf()); },
     Fault::unevenTree, 2},
    {"InnerNodeBesideALeaf",
     [](EditableBom& bom) { bom.setU16(bom.block(bom.childNode(bom.rootNode(), 1)), 0); }, Fault::unevenTree,
     3},

    {"InnerNodeBelowALeaf",
     [](EditableBom& bom) { bom.setU32(bom.block(bom.firstLeaf()) + 4, bom.rootNode()); },
     Fault::innerNodeInChain, 3},
    {"LeafThatFollowsItself", [](EditableBom& bom) { bom.setU32(nodeOf(bom) + 4, bom.rootNode()); },
     Fault::chainOutOfOrder},
    {"LastLeafThatLeadsBackToTheFirst",
     [](EditableBom& bom) { bom.setU32(bom.block(bom.childNode(bom.rootNode(), 1)) + 4, bom.firstLeaf()); },
     Fault::chainOutOfOrder, 3},
    {"ChainThatEndsEarly", [](EditableBom& bom) { bom.setU32(bom.block(bom.firstLeaf()) + 4, 0); },
     Fault::chainLeavesTree, 3},
    {"ChainThatGoesOnOutsideTheTree",
     [](EditableBom& bom) {
       const std::size_t other = bom.block(bom.u32(bom.variableNamed("HLIndex")));
       bom.setU32(nodeOf(bom) + 4, bom.u32(other + 8));
     },
     Fault::chainLeavesTree},
    {"ChainThatLeadsToABlockWithoutANode",
     [](EditableBom& bom) { bom.setU32(nodeOf(bom) + 4, bom.nameBlock(1)); }, Fault::shortNode},
    {"TreeThatCountsMorePathsThanItHas", [](EditableBom& bom) { bom.setU32(bom.tree() + 16, 0xFFFFFFFF); },
     Fault::wrongPathCount},
    {"TreeThatCountsFewerPathsThanItHas", [](EditableBom& bom) { bom.setU32(bom.tree() + 16, 5); },
     Fault::wrongPathCount},
    {"MorePathsThanBlocks",
     [](EditableBom& bom) { bom.setU16(nodeOf(bom) + 2, 100).setU32(bom.tree() + 16, 100); }, Fault::idTwice},

    {"NumbersCutShort", [](EditableBom& bom) { cut(bom, bom.numbersBlock(1), 7); }, Fault::shortNumbers},
    {"NameCutShortAheadOfIt", [](EditableBom& bom) { cut(bom, bom.nameBlock(1), 3); }, Fault::shortName},
    {"NameWithoutItsNul", [](EditableBom& bom) { cut(bom, bom.nameBlock(1), 5); }, Fault::unterminatedName},
    {"NameWithoutAByte", [](EditableBom& bom) { cut(bom, bom.nameBlock(1), 4); }, Fault::unterminatedName},

    {"RecordCutShort", [](EditableBom& bom) { cut(bom, bom.recordBlock(1), 22); }, Fault::shortRecord},
    {"EmptyRecord", [](EditableBom& bom) { cut(bom, bom.recordBlock(lastPath), 0); }, Fault::shortRecord},
    {"LinkCutShortAheadOfItsTarget", [](EditableBom& bom) { cut(bom, bom.recordBlock(link), 30); },
     Fault::shortRecord},
    {"TargetLongerThanItsRecord", [](EditableBom& bom) { bom.setU32(recordOf(bom, link) + 27, 11); },
     Fault::targetPastEnd},
    {"TargetOfTheGreatestLength", [](EditableBom& bom) { bom.setU32(recordOf(bom, link) + 27, 0xFFFFFFFF); },
     Fault::targetPastEnd},
    {"TargetWithoutItsNul", [](EditableBom& bom) { bom.setU32(recordOf(bom, link) + 27, 1); },
     Fault::unterminatedTarget},
    {"TargetWithoutAByte", [](EditableBom& bom) { bom.setU32(recordOf(bom, link) + 27, 0); },
     Fault::unterminatedTarget},
    {"ArchitecturesLongerThanTheirRecord",
     [](EditableBom& bom) { bom.setU32(recordOf(bom, program) + 28, 3); }, Fault::architecturesPastEnd},
    {"AsManyArchitecturesAsCanBe",
     [](EditableBom& bom) { bom.setU32(recordOf(bom, program) + 28, 0xFFFFFFFF); },
     Fault::architecturesPastEnd},
    {"ArchitecturesCutShortInTheirCount", [](EditableBom& bom) { cut(bom, bom.recordBlock(program), 31); },
     Fault::architecturesPastEnd},

    {"IdOfZero", [](EditableBom& bom) { bom.setU32(numbersOf(bom, 2), 0); }, Fault::idZero},
    {"IdUsedTwice", [](EditableBom& bom) { bom.setU32(numbersOf(bom, 2), idOf(bom, 3)); }, Fault::idTwice},
    {"DistantIdUsedTwice",
     [](EditableBom& bom) {
       bom.setU32(numbersOf(bom, 2), 4000000000).setU32(numbersOf(bom, 3), 4000000000);
     },
     Fault::idTwice},
    {"NumbersUsedTwice", [](EditableBom& bom) { bom.setU32(bom.pathPair(2), bom.numbersBlock(3)); },
     Fault::idTwice},
    {"UnknownParent", [](EditableBom& bom) { bom.setU32(nameOf(bom, lastPath), 7); }, Fault::unknownParent},
    {"UnknownDistantParent", [](EditableBom& bom) { bom.setU32(nameOf(bom, lastPath), 0xFFFFFFFF); },
     Fault::unknownParent},
    {"UnknownParentAmongDistantIds",
     [](EditableBom& bom) {
       bom.setU32(numbersOf(bom, 2), 4000000000).setU32(nameOf(bom, lastPath), 3999999999);
     },
     Fault::unknownParent},
    {"PathThatIsItsOwnParent",
     [](EditableBom& bom) { bom.setU32(nameOf(bom, lastPath), idOf(bom, lastPath)); }, Fault::ownParent},
    {"TopThatIsItsOwnParent", [](EditableBom& bom) { bom.setU32(nameOf(bom, 0), idOf(bom, 0)); },
     Fault::ownParent},
    {"PathsThatAreEachOthersParents",
     [](EditableBom& bom) { bom.setU32(nameOf(bom, 1), idOf(bom, lastPath)); }, Fault::parentCycle},
    {"NoPathAtTheTop", [](EditableBom& bom) { bom.setU32(nameOf(bom, 0), idOf(bom, lastPath)); },
     Fault::parentCycle},
};

// Of a file that there should be a failure of.
Failure failureOf(std::string_view bytes) {
  const auto bom = BillOfMaterials::read(bytes);
  if (bom) throw std::logic_error("the file is well-formed");
  return bom.error();
}

void expectWellFormed(std::string_view bytes, std::size_t pathCount) {
  const auto bom = BillOfMaterials::read(bytes);
  ASSERT_TRUE(bom) << describe(bom.error().fault);
  EXPECT_EQ(bom->size(), pathCount);
}

TEST(MalformedBillOfMaterials, IsWellFormedWithoutTheDamage) {
  for (const std::uint32_t pathsPerNode : {510U, 3U, 2U})
    expectWellFormed(EditableBom(entries, {.pathsPerNode = pathsPerNode}).bytes, entries.size());
}

class MalformedBillOfMaterials : public testing::TestWithParam<Damage> {};

TEST_P(MalformedBillOfMaterials, IsRefused) {
  EditableBom bom(entries, {.pathsPerNode = GetParam().pathsPerNode});
  GetParam().doIt(bom);
  EXPECT_EQ(describe(failureOf(bom.bytes).fault), describe(GetParam().fault));
}

INSTANTIATE_TEST_SUITE_P(Damages, MalformedBillOfMaterials, testing::ValuesIn(damages),
                         [](const testing::TestParamInfo<Damage>& damage) {
                           return std::string(damage.param.name);
                         });

// Names share one long block, so that a small file would make a long listing.
TEST(MalformedBillOfMaterials, IsRefusedForNamesThatTogetherAreLongerThanTheFile) {
  for (const std::uint32_t pathsPerNode : {510U, 2U}) {
    EditableBom bom(
        {{.path = "./a"}, {.path = "./b"}, {.path = "./c"}, {.path = "./" + std::string(4000, 'n')}},
        {.paddedNodes = false, .pathsPerNode = pathsPerNode});
    ASSERT_TRUE(BillOfMaterials::read(bom.bytes));
    std::vector<std::size_t> nameFields;
    for (std::size_t i = 0; i < bom.bytes.size(); ++i) {
      if (bom.bytes.compare(i, 6, {"\0\0\0\1a\0", 6}) == 0 ||
          bom.bytes.compare(i, 6, {"\0\0\0\1b\0", 6}) == 0) {
        nameFields.push_back(i);
      }
    }
    ASSERT_EQ(nameFields.size(), 2U);
    const std::size_t longName = bom.bytes.find("nnnn") - 4;
    for (std::uint32_t block = 1; block < bom.u32(bom.index()); ++block) {
      for (const std::size_t field : nameFields) {
        if (bom.block(block) == field) {
          bom.setU32(bom.indexPair(block), static_cast<std::uint32_t>(longName))
              .setU32(bom.indexPair(block) + 4, 4005);
        }
      }
    }
    EXPECT_EQ(failureOf(bom.bytes).fault, Fault::tooMuchSharing);
  }
}

// All paths have the first one's record.
EditableBom withOneRecord(const BomEntry& first, std::uint32_t count) {
  std::vector<BomEntry> paths{first};
  paths.reserve(count);
  for (std::uint32_t i = 1; i < count; ++i) paths.push_back({.path = std::to_string(1000 + i)});
  EditableBom bom(paths);
  for (std::uint32_t i = 1; i < count; ++i)
    bom.setU32(bom.block(bom.numbersBlock(i)) + 4, bom.recordBlock(0));
  return bom;
}

TEST(MalformedBillOfMaterials, IsRefusedForRecordsThatTogetherAreFarLongerThanTheFile) {
  const BomEntry longLink{
      .path = "1000", .kind = sample::BomKind::link, .linkTarget = std::string(60000, 't')};
  BomEntry largeProgram{.path = "1000"};
  largeProgram.processors.resize(4000);
  for (const BomEntry& first : {longLink, largeProgram}) {
    expectWellFormed(withOneRecord(first, 10).bytes, 10);
    const Failure failure = failureOf(withOneRecord(first, 100).bytes);
    EXPECT_EQ(failure.fault, Fault::tooMuchSharing);
    EXPECT_EQ(failure.offset, 0U) << "the file as a whole";
  }
}

TEST(MalformedBillOfMaterials, MayHaveRecordsOfSixteenTimesTheFilesLength) {
  const BomEntry longLink{
      .path = "1000", .kind = sample::BomKind::link, .linkTarget = std::string(60000, 't')};
  std::string bytes = withOneRecord(longLink, 100).bytes;
  bytes.resize(std::size_t{100} * (4 + 60000 / 16));  // with the names
  expectWellFormed(bytes, 100);
  bytes.pop_back();
  EXPECT_EQ(failureOf(bytes).fault, Fault::tooMuchSharing);
}

TEST(MalformedBillOfMaterials, IsRefusedForTheFirstOfThePathsThatHaveOneId) {
  std::vector<BomEntry> files;
  files.reserve(30000);
  for (int i = 0; i < 30000; ++i) files.push_back({.path = std::to_string(100000 + i)});
  EditableBom bom(files, {.pathsPerNode = 30000});
  for (const std::uint32_t path : {8100U, 12000U, 29000U}) bom.setU32(numbersOf(bom, path), 20001);
  const Failure failure = failureOf(bom.bytes);
  EXPECT_EQ(failure.fault, Fault::idTwice);
  EXPECT_EQ(failure.offset, nameOf(bom, 8100) + 4);
}

TEST(MalformedBillOfMaterials, IsRefusedForTheFirstOfManyDamages) {
  std::vector<BomEntry> files;
  files.reserve(20000);
  for (int i = 0; i < 20000; ++i) files.push_back({.path = std::to_string(100000 + i)});
  EditableBom bom(files, {.pathsPerNode = 2});
  for (std::uint32_t block = 1; block < bom.u32(bom.index()); ++block) {
    if (bom.u32(bom.indexPair(block) + 4) == 11)
      bom.setU32(bom.indexPair(block) + 4, 10);  // names lose their NUL
  }
  const Failure failure = failureOf(bom.bytes);
  EXPECT_EQ(failure.fault, Fault::unterminatedName);
  EXPECT_EQ(failure.offset, nameOf(bom, 0));
}

TEST(MalformedBillOfMaterials, IsRefusedForANameThatIsLongerThanAnyPath) {
  const EditableBom bom({{.path = std::string(longestPath + 1, 'n')}});
  EXPECT_EQ(failureOf(bom.bytes).fault, Fault::pathTooLong);
}

TEST(MalformedBillOfMaterials, IsRefusedForAPathThatIsTooLongInAll) {
  const std::string folder(longestPath - 1, 'f');
  const EditableBom bom({{.path = folder}, {.path = folder + "/n"}});
  EXPECT_EQ(failureOf(bom.bytes).fault, Fault::pathTooLong);
}

// Empty names, too, make a path longer: there is a "/" ahead of each.
TEST(MalformedBillOfMaterials, IsRefusedForFoldersThatAreTooDeepWhateverTheirNames) {
  std::string path = "d";
  std::vector<BomEntry> folders{{.path = path}};
  while (folders.size() < longestPath + 2) folders.push_back({.path = path += "/d"});
  EditableBom bom(folders, {.pathsPerNode = 5000});
  EXPECT_EQ(failureOf(bom.bytes).fault, Fault::pathTooLong);
  for (std::uint32_t folder = 0; folder < folders.size(); ++folder) bom.setU8(nameOf(bom, folder) + 4, 0);
  EXPECT_EQ(failureOf(bom.bytes).fault, Fault::pathTooLong);
}

// A list whose paths are of so many bytes in all. Few of these are a path's own: most lie deep in folders of
// long names.
std::string bytesWithPathsOf(std::size_t length) {
  const std::string outer(2000, 'a');
  const std::string inner = outer + "/" + std::string(2000, 'b');
  std::vector<BomEntry> files;
  length -= outer.size() + inner.size();
  const auto add = [&](std::string path) {
    length -= path.size();
    files.push_back({.path = std::move(path)});
  };
  while (length > 2 * inner.size()) add(inner + "/" + std::to_string(100'000 + files.size()));
  while (length > 1000) add(std::to_string(100'000 + files.size()) + std::string(494, 'c'));
  add(std::string(length, 'd'));
  return sample::writeBillOfMaterials(files);
}

std::string withSize(std::string bytes, std::size_t size) {
  bytes.resize(size);
  return bytes;
}

TEST(MalformedBillOfMaterials, IsRefusedForPathsThatTogetherAreFarLongerThanTheFile) {
  constexpr std::size_t size = 900'000;
  constexpr std::size_t most = 16 * size + (std::size_t{4} << 20U);
  EXPECT_TRUE(BillOfMaterials::read(withSize(bytesWithPathsOf(most), size)));
  EXPECT_EQ(failureOf(withSize(bytesWithPathsOf(most), size - 1)).fault, Fault::tooMuchSharing);
  EXPECT_EQ(failureOf(withSize(bytesWithPathsOf(most + 1), size)).fault, Fault::tooMuchSharing);
}

TEST(MalformedBillOfMaterials, IsRefusedForPathsThatTogetherAreLongerThanAnyListing) {
  constexpr std::size_t size = std::size_t{20} << 20U;  // so that it isn't the file that is too small
  constexpr std::size_t most = std::size_t{256} << 20U;
  EXPECT_TRUE(BillOfMaterials::read(withSize(bytesWithPathsOf(most), size)));
  EXPECT_EQ(failureOf(withSize(bytesWithPathsOf(most + 1), size)).fault, Fault::tooMuchSharing);
}

TEST(MalformedBillOfMaterials, IsRefusedForLeavesThatTogetherHaveMorePathsThanThereAreBlocks) {
  EditableBom bom(entries, {.pathsPerNode = 3});
  const std::uint32_t second = bom.childNode(bom.rootNode(), 1);
  const std::uint32_t blocks = bom.u32(bom.index());
  const auto failureWithPaths = [&](std::uint32_t count) {
    bom.setU16(bom.block(second) + 2, count - 3).setU32(bom.tree() + 16, count);
    return failureOf(bom.bytes);
  };
  const Failure failure = failureWithPaths(blocks + 1);
  EXPECT_EQ(failure.fault, Fault::idTwice);
  EXPECT_EQ(failure.offset, bom.block(second) + 12);
  EXPECT_NE(failureWithPaths(blocks).offset, bom.block(second) + 12) << "each could have one of its own";
}

TEST(MalformedBillOfMaterials, IsRefusedForPathsThatAreTheSameInAll) {
  const std::vector<BomEntry> files(1000, {.path = "file"});
  EditableBom bom(files, {.pathsPerNode = 1000});
  for (std::uint32_t path = 0; path < files.size(); ++path) bom.setU32(numbersOf(bom, path), 7);
  EXPECT_EQ(failureOf(bom.bytes).fault, Fault::idTwice);
}

TEST(MalformedBillOfMaterials, TakesNoMoreMemoryForLargeIds) {
  EditableBom bom(entries);
  for (const std::uint32_t id : {1000U, 0x20000000U, 0x80000000U, 0xFFFFFFFFU}) {
    bom.setU32(numbersOf(bom, lastPath), id);
    const HeapMeter meter;
    EXPECT_TRUE(BillOfMaterials::read(bom.bytes));
    EXPECT_LT(meter.peak(), 2000U) << id;
  }
}

TEST(MalformedBillOfMaterials, TellsWhereInItsHeaderTheDamageIs) {
  const std::string bytes = EditableBom(entries).bytes;
  EXPECT_EQ(failureOf(bytes.substr(0, 31)).offset, 0U);
  EXPECT_EQ(failureOf("b" + bytes).offset, 0U) << "its magic";
  EXPECT_EQ(failureOf(EditableBom(entries).setU32(8, 2).bytes).offset, 8U) << "its version";
}

TEST(MalformedBillOfMaterials, TellsWhereTheDamageIs) {
  EditableBom bom(entries);
  bom.setU32(nameOf(bom, lastPath), 7);
  EXPECT_EQ(failureOf(bom.bytes).offset, nameOf(bom, lastPath) + 4);
}

TEST(MalformedBillOfMaterials, TellsOfAnUnknownParentWhereNoPathIsAtTheTop) {
  EditableBom bom({{.path = "file"}});
  bom.setU32(nameOf(bom, 0), 7);
  const Failure failure = failureOf(bom.bytes);
  EXPECT_EQ(failure.fault, Fault::unknownParent);
  EXPECT_EQ(failure.offset, nameOf(bom, 0) + 4);
}

TEST(MalformedBillOfMaterials, TellsOfPathsThatAreEachOthersParentsWhereOneOfThemIs) {
  EditableBom bom(entries);
  bom.setU32(nameOf(bom, 1), idOf(bom, lastPath));
  EXPECT_EQ(failureOf(bom.bytes).offset, nameOf(bom, lastPath) + 4);
}

TEST(Fault, EveryOneHasAMessageOfItsOwn) {
  std::vector<std::string_view> messages;
  for (int i = 0; i <= static_cast<int>(Fault::pathTooLong); ++i) {
    const std::string_view message = describe(static_cast<Fault>(i));
    EXPECT_FALSE(message.empty());
    EXPECT_EQ(std::count(messages.begin(), messages.end(), message), 0) << message;
    messages.push_back(message);
  }
}

// Each damaged file lies in a heap block of exactly its size, where a sanitizer sees a read of one byte too
// many.
void expectRefusedOrWhole(const std::string& bytes) {
  const std::vector<char> block(bytes.begin(), bytes.end());
  const auto bom = BillOfMaterials::read({block.data(), block.size()});
  if (!bom) {
    ASSERT_LE(bom.error().offset, UINT32_MAX);
    return;
  }
  ASSERT_EQ(bom->size(), entries.size());
  for (std::size_t i = 0; i < bom->size(); ++i) ASSERT_NE(bom->entry(i).id, 0U);
}

TEST(DamagedBillOfMaterials, IsRefusedWhereverItIsCutOff) {
  const EditableBom bom(entries, {.paddedNodes = false});
  for (std::size_t length = 0; length < bom.bytes.size(); ++length) {
    const std::vector<char> block(bom.bytes.begin(), bom.bytes.begin() + static_cast<std::ptrdiff_t>(length));
    ASSERT_FALSE(BillOfMaterials::read({block.data(), block.size()})) << length;
  }
}

TEST(DamagedBillOfMaterials, IsRefusedOrListedWholeAfterTheFlipOfAnyBit) {
  for (const std::uint32_t pathsPerNode : {510U, 2U}) {
    EditableBom bom(entries, {.paddedNodes = false, .pathsPerNode = pathsPerNode});
    for (std::size_t bit = 0; bit < 8 * bom.bytes.size(); ++bit) {
      const auto flip = static_cast<char>(1 << (bit % 8));
      bom.bytes[bit / 8] = static_cast<char>(bom.bytes[bit / 8] ^ flip);
      ASSERT_NO_FATAL_FAILURE(expectRefusedOrWhole(bom.bytes)) << bit;
      bom.bytes[bit / 8] = static_cast<char>(bom.bytes[bit / 8] ^ flip);
    }
  }
}

}  // namespace
}  // namespace pelmarix::lsbom
