// What can be wrong with a bill of materials.
#pragma once

#include <cstdint>
#include <string_view>

namespace pelmarix::lsbom {

enum class Fault : std::uint8_t {
  none,
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
  chainLoops,
  chainLeavesTree,
  wrongPathCount,
  shortNumbers,
  shortName,
  unendedName,
  textsTooLong,
  shortRecord,
  targetPastEnd,
  unendedTarget,
  processorsPastEnd,
  idZero,
  idTwice,
  unknownParent,
  ownParent,
  parentCycle,
  pathTooLong,
};

// A sentence for people, without a full stop; empty for none.
std::string_view describe(Fault fault);

// A fault and where it is: the offset in the file of the part that holds it. True where there is a fault.
struct Failure {
  Fault fault = Fault::none;
  std::uint64_t offset = 0;

  explicit operator bool() const { return fault != Fault::none; }
};

}  // namespace pelmarix::lsbom
