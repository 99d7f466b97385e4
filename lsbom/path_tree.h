// The tree that holds the list of paths.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "lsbom/fault.h"
#include "lsbom/store.h"

namespace pelmarix::lsbom {

/// The leaves of a tree, in its order.
struct Leaves {
  /// Of each leaf: pairs of block numbers, u32 each, one pair for each path.
  std::vector<std::string_view> pairs;
  std::uint32_t pathCount = 0;  ///< of all leaves; each path could have a block of its own
};

/// Walks the tree level by level. No node is visited twice, so the work is bounded by the number of blocks.
Result<Leaves, Failure> readTree(const Store& store);

}  // namespace pelmarix::lsbom
