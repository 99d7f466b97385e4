// The tree that holds the list of paths.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "lsbom/fault.h"
#include "lsbom/store.h"

namespace pelmarix::lsbom {

struct Leaf {
  std::string_view pairs;   // of block numbers, 8 bytes each: one pair for each path
  std::uint32_t firstPath;  // how many paths the leaves ahead of this one have
};

struct Leaves {
  std::vector<Leaf> leaves;  // in the order of the tree
  std::uint32_t pathCount = 0;
};

// Walks the tree level by level. No node is visited twice, so the work is bounded by the number of blocks.
Failure readTree(const Store& store, Leaves& leaves);

}  // namespace pelmarix::lsbom
