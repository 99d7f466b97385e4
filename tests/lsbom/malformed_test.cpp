// One damage to a well-formed file for each fault that the lister tells apart.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "lsbom/bill_of_materials.h"
#include "tests/lsbom/editable_bom.h"

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
  Fault fault;
  std::function<void(EditableBom&)> doIt;
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
    {"NoBytes", Fault::shortHeader, [](EditableBom& bom) { bom.bytes.clear(); }},
    {"HeaderCutShort", Fault::shortHeader, [](EditableBom& bom) { bom.bytes.resize(31); }},
    {"OtherMagic", Fault::wrongMagic, [](EditableBom& bom) { bom.bytes.replace(0, 8, "bplist00"); }},
    {"OtherVersion", Fault::wrongVersion, [](EditableBom& bom) { bom.setU32(8, 2); }},

    {"IndexBehindTheEnd", Fault::indexPastEnd, [](EditableBom& bom) { bom.setU32(16, 0xFFFFFFFF); }},
    {"IndexOneByteTooLong", Fault::indexPastEnd, [](EditableBom& bom) { bom.setU32(20, bom.u32(20) + 1); }},
    {"IndexWhoseEndWraps", Fault::indexPastEnd, [](EditableBom& bom) { bom.setU32(20, 0xFFFFFFF0); }},
    {"FileWithoutItsLastByte", Fault::indexPastEnd, [](EditableBom& bom) { bom.bytes.pop_back(); }},
    {"IndexWithoutRoomForItsCount", Fault::indexTooShort, [](EditableBom& bom) { bom.setU32(20, 3); }},
    {"IndexThatCountsMoreBlocksThanItHolds", Fault::indexTooShort,
     [](EditableBom& bom) { bom.setU32(bom.index(), bom.u32(bom.index()) + 1); }},
    {"IndexThatCountsAsManyBlocksAsItCan", Fault::indexTooShort,
     [](EditableBom& bom) { bom.setU32(bom.index(), 0xFFFFFFFF); }},

    {"VariablesBehindTheEnd", Fault::variablesPastEnd, [](EditableBom& bom) { bom.setU32(24, 0xFFFFFFFF); }},
    {"VariablesWhoseEndWraps", Fault::variablesPastEnd, [](EditableBom& bom) { bom.setU32(28, 0xFFFFFFF0); }},
    {"VariablesWithoutRoomForTheirCount", Fault::variablesTooShort,
     [](EditableBom& bom) { bom.setU32(28, 3); }},
    {"MoreVariablesCountedThanThereAre", Fault::variablesTooShort,
     [](EditableBom& bom) { bom.setU32(bom.variables(), 0xFFFFFFFF); }},
    {"VariableWithANameThatIsTooLong", Fault::variablesTooShort,
     [](EditableBom& bom) { bom.setU8(bom.variableNamed("Size64") + 4, 7); }},
    {"NoVariables", Fault::noPaths, [](EditableBom& bom) { bom.setU32(bom.variables(), 0); }},
    {"NoVariablePaths", Fault::noPaths,
     [](EditableBom& bom) { bom.setU8(bom.variableNamed("Paths") + 5, 'p'); }},

    {"PathsInTheNullBlock", Fault::unknownBlock,
     [](EditableBom& bom) { bom.setU32(bom.variableNamed("Paths"), 0); }},
    {"PathsInABlockBehindTheLast", Fault::unknownBlock,
     [](EditableBom& bom) { bom.setU32(bom.variableNamed("Paths"), bom.u32(bom.index())); }},
    {"RootInABlockBehindTheLast", Fault::unknownBlock,
     [](EditableBom& bom) { bom.setU32(bom.tree() + 8, 0xFFFFFFFF); }},
    {"ChildInABlockBehindTheLast", Fault::unknownBlock,
     [](EditableBom& bom) { bom.setU32(nodeOf(bom) + 12, 0xFFFFFFFF); }, 2},
    {"NextLeafInABlockBehindTheLast", Fault::unknownBlock,
     [](EditableBom& bom) { bom.setU32(nodeOf(bom) + 4, 0xFFFFFFFF); }},
    {"NumbersInABlockBehindTheLast", Fault::unknownBlock,
     [](EditableBom& bom) { bom.setU32(bom.pathPair(1), 0xFFFFFFFF); }},
    {"NameInABlockBehindTheLast", Fault::unknownBlock,
     [](EditableBom& bom) { bom.setU32(bom.pathPair(1) + 4, 0xFFFFFFFF); }},
    {"RecordInABlockBehindTheLast", Fault::unknownBlock,
     [](EditableBom& bom) { bom.setU32(numbersOf(bom, 1) + 4, 0xFFFFFFFF); }},
    {"BlockBehindTheEnd", Fault::blockPastEnd,
     [](EditableBom& bom) { bom.setU32(bom.indexPair(bom.pathsBlock()), 0xFFFFFFFF); }},
    {"BlockOneByteTooLong", Fault::blockPastEnd,
     [](EditableBom& bom) {
       const std::uint32_t block = bom.recordBlock(1);
       bom.setU32(bom.indexPair(block) + 4,
                  static_cast<std::uint32_t>(bom.bytes.size() - bom.block(block) + 1));
     }},
    {"BlockWhoseEndWraps", Fault::blockPastEnd,
     [](EditableBom& bom) { cut(bom, bom.nameBlock(1), 0xFFFFFFF0); }},

    {"TreeCutShort", Fault::shortTree, [](EditableBom& bom) { cut(bom, bom.pathsBlock(), 20); }},
    {"TreeWithOtherMagic", Fault::wrongTreeMagic,
     [](EditableBom& bom) { bom.bytes.replace(bom.tree(), 4, "Tree"); }},
    {"TreeOfOtherVersion", Fault::wrongTreeVersion, [](EditableBom& bom) { bom.setU32(bom.tree() + 4, 2); }},
    {"NodeCutShort", Fault::shortNode, [](EditableBom& bom) { cut(bom, bom.rootNode(), 11); }},
    {"LeafThatCountsMorePathsThanItHolds", Fault::nodeTooShort,
     [](EditableBom& bom) { cut(bom, bom.rootNode(), 12 + 8 * 6 - 1); }},
    {"LeafThatCountsAsManyPathsAsItCan", Fault::nodeTooShort,
     [](EditableBom& bom) { bom.setU16(nodeOf(bom) + 2, 0xFFFF); }},
    {"InnerNodeWithoutRoomForItsLastChild", Fault::nodeTooShort,
     [](EditableBom& bom) { cut(bom, bom.rootNode(), 12 + 8); }, 3},
    {"NodeThatIsItsOwnChild", Fault::nodeTwice,
     [](EditableBom& bom) { bom.setU32(nodeOf(bom) + 12, bom.rootNode()); }, 3},
    {"NodeThatIsItsOwnLastChild", Fault::nodeTwice,
     [](EditableBom& bom) { bom.setU32(nodeOf(bom) + 20, bom.rootNode()); }, 3},
    {"NodeThatIsItsOwnGrandchild", Fault::nodeTwice,
     [](EditableBom& bom) { bom.setU32(bom.block(bom.childNode(bom.rootNode(), 0)) + 12, bom.rootNode()); },
     2},
    {"LeafThatIsAChildTwice", Fault::nodeTwice,
     [](EditableBom& bom) { bom.setU32(nodeOf(bom) + 20, bom.childNode(bom.rootNode(), 0)); }, 3},
    {"LeafBesideAnInnerNode", Fault::unevenTree,
     [](EditableBom& bom) { bom.setU32(nodeOf(bom) + 20, bom.firstLeaf()); }, 2},
    {"InnerNodeBesideALeaf", Fault::unevenTree,
     [](EditableBom& bom) { bom.setU16(bom.block(bom.childNode(bom.rootNode(), 1)), 0); }, 3},

    {"InnerNodeBelowALeaf", Fault::innerNodeInChain,
     [](EditableBom& bom) { bom.setU32(bom.block(bom.firstLeaf()) + 4, bom.rootNode()); }, 3},
    {"LeafThatFollowsItself", Fault::chainLoops,
     [](EditableBom& bom) { bom.setU32(nodeOf(bom) + 4, bom.rootNode()); }},
    {"LastLeafThatLeadsBackToTheFirst", Fault::chainLoops,
     [](EditableBom& bom) { bom.setU32(bom.block(bom.childNode(bom.rootNode(), 1)) + 4, bom.firstLeaf()); },
     3},
    {"ChainThatEndsEarly", Fault::chainLeavesTree,
     [](EditableBom& bom) { bom.setU32(bom.block(bom.firstLeaf()) + 4, 0); }, 3},
    {"ChainThatGoesOnOutsideTheTree", Fault::chainLeavesTree,
     [](EditableBom& bom) {
       const std::size_t other = bom.block(bom.u32(bom.variableNamed("HLIndex")));
       bom.setU32(nodeOf(bom) + 4, bom.u32(other + 8));
     }},
    {"ChainThatLeadsToABlockWithoutANode", Fault::shortNode,
     [](EditableBom& bom) { bom.setU32(nodeOf(bom) + 4, bom.nameBlock(1)); }},
    {"TreeThatCountsMorePathsThanItHas", Fault::wrongPathCount,
     [](EditableBom& bom) { bom.setU32(bom.tree() + 16, 0xFFFFFFFF); }},
    {"TreeThatCountsFewerPathsThanItHas", Fault::wrongPathCount,
     [](EditableBom& bom) { bom.setU32(bom.tree() + 16, 5); }},
    {"MorePathsThanBlocks", Fault::idTwice,
     [](EditableBom& bom) { bom.setU16(nodeOf(bom) + 2, 100).setU32(bom.tree() + 16, 100); }},

    {"NumbersCutShort", Fault::shortNumbers, [](EditableBom& bom) { cut(bom, bom.numbersBlock(1), 7); }},
    {"NameCutShortAheadOfIt", Fault::shortName, [](EditableBom& bom) { cut(bom, bom.nameBlock(1), 3); }},
    {"NameWithoutItsNul", Fault::unendedName, [](EditableBom& bom) { cut(bom, bom.nameBlock(1), 5); }},
    {"NameWithoutAByte", Fault::unendedName, [](EditableBom& bom) { cut(bom, bom.nameBlock(1), 4); }},

    {"RecordCutShort", Fault::shortRecord, [](EditableBom& bom) { cut(bom, bom.recordBlock(1), 22); }},
    {"EmptyRecord", Fault::shortRecord, [](EditableBom& bom) { cut(bom, bom.recordBlock(lastPath), 0); }},
    {"LinkCutShortAheadOfItsTarget", Fault::shortRecord,
     [](EditableBom& bom) { cut(bom, bom.recordBlock(link), 30); }},
    {"TargetLongerThanItsRecord", Fault::targetPastEnd,
     [](EditableBom& bom) { bom.setU32(recordOf(bom, link) + 27, 11); }},
    {"TargetOfTheGreatestLength", Fault::targetPastEnd,
     [](EditableBom& bom) { bom.setU32(recordOf(bom, link) + 27, 0xFFFFFFFF); }},
    {"TargetWithoutItsNul", Fault::unendedTarget,
     [](EditableBom& bom) { bom.setU32(recordOf(bom, link) + 27, 1); }},
    {"TargetWithoutAByte", Fault::unendedTarget,
     [](EditableBom& bom) { bom.setU32(recordOf(bom, link) + 27, 0); }},
    {"ProcessorsLongerThanTheirRecord", Fault::processorsPastEnd,
     [](EditableBom& bom) { bom.setU32(recordOf(bom, program) + 28, 3); }},
    {"AsManyProcessorsAsCanBe", Fault::processorsPastEnd,
     [](EditableBom& bom) { bom.setU32(recordOf(bom, program) + 28, 0xFFFFFFFF); }},
    {"ProcessorsCutShortInTheirCount", Fault::processorsPastEnd,
     [](EditableBom& bom) { cut(bom, bom.recordBlock(program), 31); }},

    {"IdOfZero", Fault::idZero, [](EditableBom& bom) { bom.setU32(numbersOf(bom, 2), 0); }},
    {"IdUsedTwice", Fault::idTwice, [](EditableBom& bom) { bom.setU32(numbersOf(bom, 2), idOf(bom, 3)); }},
    {"DistantIdUsedTwice", Fault::idTwice,
     [](EditableBom& bom) {
       bom.setU32(numbersOf(bom, 2), 4000000000).setU32(numbersOf(bom, 3), 4000000000);
     }},
    {"NumbersUsedTwice", Fault::idTwice,
     [](EditableBom& bom) { bom.setU32(bom.pathPair(2), bom.numbersBlock(3)); }},
    {"UnknownParent", Fault::unknownParent, [](EditableBom& bom) { bom.setU32(nameOf(bom, lastPath), 7); }},
    {"UnknownDistantParent", Fault::unknownParent,
     [](EditableBom& bom) { bom.setU32(nameOf(bom, lastPath), 0xFFFFFFFF); }},
    {"UnknownParentAmongDistantIds", Fault::unknownParent,
     [](EditableBom& bom) {
       bom.setU32(numbersOf(bom, 2), 4000000000).setU32(nameOf(bom, lastPath), 3999999999);
     }},
    {"PathThatIsItsOwnParent", Fault::ownParent,
     [](EditableBom& bom) { bom.setU32(nameOf(bom, lastPath), idOf(bom, lastPath)); }},
    {"TopThatIsItsOwnParent", Fault::ownParent,
     [](EditableBom& bom) { bom.setU32(nameOf(bom, 0), idOf(bom, 0)); }},
    {"PathsThatAreEachOthersParents", Fault::parentCycle,
     [](EditableBom& bom) { bom.setU32(nameOf(bom, 1), idOf(bom, lastPath)); }},
    {"NoPathAtTheTop", Fault::parentCycle,
     [](EditableBom& bom) { bom.setU32(nameOf(bom, 0), idOf(bom, lastPath)); }},
};

TEST(MalformedBillOfMaterials, IsWellFormedWithoutTheDamage) {
  for (const std::uint32_t pathsPerNode : {510U, 3U, 2U}) {
    const EditableBom bom(entries, {.pathsPerNode = pathsPerNode});
    BillOfMaterials bill;
    EXPECT_FALSE(bill.read(bom.bytes));
    EXPECT_EQ(bill.size(), entries.size());
  }
}

class MalformedBillOfMaterials : public testing::TestWithParam<Damage> {};

TEST_P(MalformedBillOfMaterials, IsRefused) {
  EditableBom bom(entries, {.pathsPerNode = GetParam().pathsPerNode});
  GetParam().doIt(bom);
  BillOfMaterials bill;
  EXPECT_EQ(describe(bill.read(bom.bytes).fault), describe(GetParam().fault));
  EXPECT_EQ(bill.size(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Damages, MalformedBillOfMaterials, testing::ValuesIn(damages),
                         [](const testing::TestParamInfo<Damage>& damage) {
                           return std::string(damage.param.name);
                         });

// Names share one long block, so that a small file would make a long listing.
TEST(MalformedBillOfMaterials, IsRefusedForNamesThatTogetherAreLongerThanTheFile) {
  for (const std::uint32_t pathsPerNode : {510U, 2U}) {
    EditableBom bom(
        {{.path = "./a"}, {.path = "./b"}, {.path = "./c"}, {.path = "./" + std::string(60000, 'n')}},
        {.paddedNodes = false, .pathsPerNode = pathsPerNode});
    BillOfMaterials bill;
    ASSERT_FALSE(bill.read(bom.bytes));
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
              .setU32(bom.indexPair(block) + 4, 60005);
        }
      }
    }
    EXPECT_EQ(bill.read(bom.bytes).fault, Fault::namesTooLong);
  }
}

TEST(MalformedBillOfMaterials, IsRefusedForANameThatIsLongerThanAnyPath) {
  const EditableBom bom({{.path = std::string(longestPath + 1, 'n')}});
  BillOfMaterials bill;
  EXPECT_EQ(bill.read(bom.bytes).fault, Fault::pathTooLong);
}

TEST(MalformedBillOfMaterials, IsRefusedForAPathThatIsTooLongInAll) {
  const std::string folder(longestPath - 1, 'f');
  const EditableBom bom({{.path = folder}, {.path = folder + "/n"}});
  BillOfMaterials bill;
  EXPECT_EQ(bill.read(bom.bytes).fault, Fault::pathTooLong);
}

TEST(MalformedBillOfMaterials, TellsWhereTheDamageIs) {
  EditableBom bom(entries);
  bom.setU32(nameOf(bom, lastPath), 7);
  BillOfMaterials bill;
  EXPECT_EQ(bill.read(bom.bytes).offset, nameOf(bom, lastPath) + 4);
}

TEST(Fault, EveryOneHasASentenceOfItsOwn) {
  std::vector<std::string_view> sentences;
  for (int i = 0; i <= static_cast<int>(Fault::pathTooLong); ++i) {
    const std::string_view sentence = describe(static_cast<Fault>(i));
    EXPECT_EQ(sentence.empty(), i == 0);
    EXPECT_EQ(std::count(sentences.begin(), sentences.end(), sentence), 0) << sentence;
    sentences.push_back(sentence);
  }
}

// Each damaged file lies in a heap block of exactly its size, where a sanitizer sees a read of one byte too
// many.
void expectRefusedOrWhole(const std::string& bytes) {
  const std::vector<char> block(bytes.begin(), bytes.end());
  BillOfMaterials bill;
  if (bill.read({block.data(), block.size()})) {
    ASSERT_EQ(bill.size(), 0U);
  } else {
    ASSERT_EQ(bill.size(), entries.size());
  }
}

TEST(DamagedBillOfMaterials, IsRefusedWhereverItIsCutOff) {
  const EditableBom bom(entries, {.paddedNodes = false});
  for (std::size_t length = 0; length < bom.bytes.size(); ++length) {
    const std::vector<char> block(bom.bytes.begin(), bom.bytes.begin() + static_cast<std::ptrdiff_t>(length));
    BillOfMaterials bill;
    ASSERT_TRUE(bill.read({block.data(), block.size()})) << length;
    ASSERT_EQ(bill.size(), 0U);
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
