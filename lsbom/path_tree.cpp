// The layout, from public format notes and real files:
//
//   tree  "tree", u32 version, u32 block of the root node, u32 node size, u32 number of paths, u8
//   node  u16 1 in a leaf and 0 in an inner node, u16 count, u32 next leaf (0 ends), u32 leaf before,
//         and pairs of u32:
//           leaf   `count` pairs: block of the path's numbers, block of its name
//           inner  `count` + 1 pairs: block of a child node, block of the last name below it
//                  (0 in the last pair)
//
// A node's block may be shorter than the node size, which is therefore of no use to a reader.
#include "lsbom/path_tree.h"

#include "lsbom/cursor.h"

namespace pelmarix::lsbom {
namespace {

constexpr std::size_t pairLength = 8;

struct Node {
  bool leaf = false;
  std::uint32_t next = 0;
  std::string_view pairs;
};

Result<Node, Failure> readNode(const Store& store, std::uint32_t number) {
  const auto block = store.block(number);
  if (!block) return block.error();
  Cursor cursor(*block);
  Node node;
  node.leaf = cursor.u16() != 0;
  const std::size_t count = cursor.u16();
  node.next = cursor.u32();
  cursor.u32();  // the leaf before
  if (!cursor.ok()) return Failure{Fault::shortNode, store.offsetOf(*block)};
  node.pairs = cursor.take((node.leaf ? count : count + 1) * pairLength);
  if (!cursor.ok()) return Failure{Fault::nodeTooShort, store.offsetOf(*block)};
  return node;
}

class Walk {
 public:
  explicit Walk(const Store& store) : store_(store), seen_(store.blockCount()) {}

  Result<Leaves, Failure> run(std::uint32_t root) {
    std::vector<std::uint32_t> level;
    if (const auto visited = visit(root, level); !visited) return visited.error();
    for (;;) {
      const auto nodes = readLevel(level);
      if (!nodes) return nodes.error();
      if (nodes->front().leaf) return gather(*nodes, level);
      level.clear();
      for (const Node& node : *nodes) {
        for (Cursor cursor(node.pairs); !cursor.rest().empty();) {
          if (const auto visited = visit(cursor.u32(), level); !visited) return visited.error();
          cursor.u32();  // the key, which only a search needs
        }
      }
    }
  }

 private:
  Result<void, Failure> visit(std::uint32_t number, std::vector<std::uint32_t>& level) {
    const auto block = store_.block(number);
    if (!block) return block.error();
    if (seen_[number]) return Failure{Fault::nodeTwice, store_.offsetOf(*block)};
    seen_[number] = true;
    level.push_back(number);
    return {};
  }

  Result<std::vector<Node>, Failure> readLevel(const std::vector<std::uint32_t>& level) const {
    std::vector<Node> nodes;
    for (const std::uint32_t number : level) {
      const auto node = readNode(store_, number);
      if (!node) return node.error();
      nodes.push_back(*node);
      if (node->leaf != nodes.front().leaf) return Failure{Fault::unevenTree, store_.offsetOf(node->pairs)};
    }
    return nodes;
  }

  Result<Leaves, Failure> gather(const std::vector<Node>& nodes,
                                 const std::vector<std::uint32_t>& level) const {
    Leaves leaves;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      const std::string_view pairs = nodes[i].pairs;
      const std::uint32_t expected = i + 1 < level.size() ? level[i + 1] : 0;
      if (const auto checked = checkNext(nodes[i], expected); !checked) return checked.error();
      // Each path has a block of its own for its id, or two would have the same. So overlapping leaves gain
      // nothing.
      const std::size_t count = pairs.size() / pairLength;
      if (count > store_.blockCount() - leaves.pathCount)
        return Failure{Fault::idTwice, store_.offsetOf(pairs)};
      leaves.pairs.push_back(pairs);
      leaves.pathCount += static_cast<std::uint32_t>(count);
    }
    return leaves;
  }

  // The chain of leaves says again what the tree has said. Where they differ, paths would be missing or come
  // twice.
  Result<void, Failure> checkNext(const Node& leaf, std::uint32_t expected) const {
    if (leaf.next == expected) return {};
    const std::uint64_t offset = store_.offsetOf(leaf.pairs);
    if (leaf.next == 0) return Failure{Fault::chainLeavesTree, offset};
    const auto next = readNode(store_, leaf.next);
    if (!next) return next.error();
    if (!next->leaf) return Failure{Fault::innerNodeInChain, offset};
    return Failure{seen_[leaf.next] ? Fault::chainOutOfOrder : Fault::chainLeavesTree, offset};
  }

  const Store& store_;
  std::vector<bool> seen_;  // by block
};

}  // namespace

Result<Leaves, Failure> readTree(const Store& store) {
  const auto block = store.block(store.pathsBlock());
  if (!block) return block.error();
  const std::uint64_t offset = store.offsetOf(*block);
  Cursor tree(*block);
  const std::string_view magic = tree.take(4);
  const std::uint32_t version = tree.u32();
  const std::uint32_t root = tree.u32();
  tree.u32();  // the node size
  const std::uint32_t pathCount = tree.u32();
  tree.u8();
  if (!tree.ok()) return Failure{Fault::shortTree, offset};
  if (magic != "tree") return Failure{Fault::wrongTreeMagic, offset};
  if (version != 1) return Failure{Fault::wrongTreeVersion, offset};

  auto leaves = Walk(store).run(root);
  if (leaves && leaves->pathCount != pathCount) return Failure{Fault::wrongPathCount, offset};
  return leaves;
}

}  // namespace pelmarix::lsbom
