// The tree that holds the list of paths.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "lsbom/fault.h"
#include "lsbom/store.h"

namespace pelmarix::lsbom {

// What the tree gives: for each leaf, in the order of the tree, its pairs of block numbers, 8 bytes each.
struct Leaves {
  std::vector<std::string_view> pairs;
  std::uint32_t pathCount = 0;  // in all leaves together
};

// Walks the tree level by level. No node is visited twice, so the work is bounded by the number of blocks.
Failure readTree(const Store& store, Leaves& leaves);

}  // namespace pelmarix::lsbom
