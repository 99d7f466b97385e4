#include "lsbom/fault.h"

namespace pelmarix::lsbom {

std::string_view describe(Fault fault) {
  switch (fault) {
    case Fault::shortHeader:
      return "the file ends inside its header";
    case Fault::wrongMagic:
      return "not a bill of materials: it does not begin with \"BOMStore\"";
    case Fault::wrongVersion:
      return "the file's version is not 1";
    case Fault::indexPastEnd:
      return "the block index reaches past the end of the file";
    case Fault::indexTooShort:
      return "the block index has room for fewer blocks than it counts";
    case Fault::variablesPastEnd:
      return "the variables reach past the end of the file";
    case Fault::variablesTooShort:
      return "the variables have room for fewer than they count";
    case Fault::noPaths:
      return "not a bill of materials: it has no variable \"Paths\"";
    case Fault::unknownBlock:
      return "a block is named that the block index does not have";
    case Fault::blockPastEnd:
      return "a block reaches past the end of the file";
    case Fault::shortTree:
      return "the tree of paths ends inside its header";
    case Fault::wrongTreeMagic:
      return "the tree of paths does not begin with \"tree\"";
    case Fault::wrongTreeVersion:
      return "the version of the tree of paths is not 1";
    case Fault::shortNode:
      return "a node ends inside its header";
    case Fault::nodeTooShort:
      return "a node has room for fewer pairs than it counts";
    case Fault::nodeTwice:
      return "a node stands twice in the tree of paths";
    case Fault::unevenTree:
      return "an inner node and a leaf stand on the same level of the tree";
    case Fault::innerNodeInChain:
      return "an inner node stands below a leaf, in the chain of leaves";
    case Fault::chainOutOfOrder:
      return "the chain of leaves leads to a leaf out of order";
    case Fault::chainLeavesTree:
      return "the chain of leaves is not that of the tree's leaves";
    case Fault::wrongPathCount:
      return "the tree has another number of paths than it counts";
    case Fault::shortNumbers:
      return "a path's numbers are cut short";
    case Fault::shortName:
      return "a path's name is cut short ahead of the name";
    case Fault::unterminatedName:
      return "a name has no NUL at its end";
    case Fault::tooMuchSharing:
      return "paths share so many bytes that the listing would be far larger than the file";
    case Fault::shortRecord:
      return "a record is cut short";
    case Fault::targetPastEnd:
      return "a link's target is longer than its record";
    case Fault::unterminatedTarget:
      return "a link's target has no NUL at its end";
    case Fault::architecturesPastEnd:
      return "a program has room for fewer architectures than it counts";
    case Fault::idZero:
      return "a path has the id 0";
    case Fault::idTwice:
      return "two paths have the same id";
    case Fault::unknownParent:
      return "a path's parent is not in the list";
    case Fault::ownParent:
      return "a path is its own parent";
    case Fault::parentCycle:
      return "paths are each other's parents";
    case Fault::pathTooLong:
      return "a path is longer than 4096 bytes";
  }
  return {};
}

}  // namespace pelmarix::lsbom
