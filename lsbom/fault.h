// What can be wrong with a bill of materials.
#pragma once

#include <cstdint>
#include <string_view>

namespace pelmarix::lsbom {

enum class Fault : std::uint8_t {
  shortHeader,
  wrongMagic,
  wrongVersion,
  indexPastEnd,
  indexTooShort,
  variablesPastEnd,
  variablesTooShort,
  noPaths,
  unknownBlock,
  blockPastEnd,
  shortTree,
  wrongTreeMagic,
  wrongTreeVersion,
  shortNode,
  nodeTooShort,
  nodeTwice,
  unevenTree,
  innerNodeInChain,
  chainOutOfOrder,
  chainLeavesTree,
  wrongPathCount,
  shortNumbers,
  shortName,
  unterminatedName,
  tooMuchSharing,
  shortRecord,
  targetPastEnd,
  unterminatedTarget,
  architecturesPastEnd,
  idZero,
  idTwice,
  unknownParent,
  ownParent,
  parentCycle,
  pathTooLong,
};

/// A message for people, without a full stop.
std::string_view describe(Fault fault);

/// Why a file is refused.
struct Failure {
  Fault fault;
  std::uint64_t offset;  ///< in the file, of the part that holds the fault
};

}  // namespace pelmarix::lsbom
