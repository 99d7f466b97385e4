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
#include "lsbom/tree.h"

#include "lsbom/cursor.h"

namespace pelmarix::lsbom {
namespace {

constexpr std::size_t pairLength = 8;

struct Node {
  bool leaf = false;
  std::uint32_t next = 0;
  std::string_view pairs;
};

Failure readNode(const Store& store, std::uint32_t number, Node& node) {
  std::string_view block;
  if (const Failure failure = store.block(number, block)) return failure;
  Cursor cursor(block);
  node.leaf = cursor.u16() != 0;
  const std::size_t count = cursor.u16();
  node.next = cursor.u32();
  cursor.u32();  // the leaf before
  if (!cursor.ok()) return {Fault::shortNode, store.offsetOf(block)};
  node.pairs = cursor.take((node.leaf ? count : count + 1) * pairLength);
  if (!cursor.ok()) return {Fault::nodeTooShort, store.offsetOf(block)};
  return {};
}

class Walk {
 public:
  explicit Walk(const Store& store) : store_(store), seen_(store.blockCount()) {}

  Failure run(std::uint32_t root, Leaves& leaves) {
    std::vector<std::uint32_t> level;
    if (const Failure failure = visit(root, level)) return failure;
    std::vector<Node> nodes;
    for (;;) {
      if (const Failure failure = readLevel(level, nodes)) return failure;
      if (nodes.front().leaf) break;
      level.clear();
      for (const Node& node : nodes) {
        if (const Failure failure = visitChildren(node, level)) return failure;
      }
    }
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      const std::uint32_t expected = i + 1 < level.size() ? level[i + 1] : 0;
      if (const Failure failure = checkNext(nodes[i], expected)) return failure;
      if (const Failure failure = addLeaf(nodes[i], leaves)) return failure;
    }
    return {};
  }

 private:
  Failure visit(std::uint32_t number, std::vector<std::uint32_t>& level) {
    std::string_view block;
    if (const Failure failure = store_.block(number, block)) return failure;
    if (seen_[number]) return {Fault::nodeTwice, store_.offsetOf(block)};
    seen_[number] = true;
    level.push_back(number);
    return {};
  }

  Failure visitChildren(const Node& node, std::vector<std::uint32_t>& level) {
    for (Cursor cursor(node.pairs); !cursor.rest().empty();) {
      const std::uint32_t child = cursor.u32();
      cursor.u32();  // the key, which only a search needs
      if (const Failure failure = visit(child, level)) return failure;
    }
    return {};
  }

  Failure readLevel(const std::vector<std::uint32_t>& level, std::vector<Node>& nodes) const {
    nodes.clear();
    for (const std::uint32_t number : level) {
      Node node;
      if (const Failure failure = readNode(store_, number, node)) return failure;
      nodes.push_back(node);
      if (node.leaf != nodes.front().leaf) return {Fault::unevenTree, store_.offsetOf(node.pairs)};
    }
    return {};
  }

  // Each path has a block of its own for its id, or two would have the same. So overlapping leaves gain
  // nothing.
  Failure addLeaf(const Node& node, Leaves& leaves) const {
    leaves.leaves.push_back({node.pairs, leaves.pathCount});
    const std::size_t count = node.pairs.size() / pairLength;
    if (count > store_.blockCount() - leaves.pathCount) return {Fault::idTwice, store_.offsetOf(node.pairs)};
    leaves.pathCount += static_cast<std::uint32_t>(count);
    return {};
  }

  // The chain of leaves says again what the tree has said. Where they differ, paths would be missing or come
  // twice.
  Failure checkNext(const Node& leaf, std::uint32_t expected) const {
    if (leaf.next == expected) return {};
    const std::uint64_t offset = store_.offsetOf(leaf.pairs);
    if (leaf.next == 0) return {Fault::chainLeavesTree, offset};
    Node next;
    if (const Failure failure = readNode(store_, leaf.next, next)) return failure;
    if (!next.leaf) return {Fault::innerNodeInChain, offset};
    return {seen_[leaf.next] ? Fault::chainLoops : Fault::chainLeavesTree, offset};
  }

  const Store& store_;
  std::vector<bool> seen_;
};

}  // namespace

Failure readTree(const Store& store, Leaves& leaves) {
  std::string_view block;
  if (const Failure failure = store.block(store.pathsBlock(), block)) return failure;
  const std::uint64_t offset = store.offsetOf(block);
  Cursor tree(block);
  const std::string_view magic = tree.take(4);
  const std::uint32_t version = tree.u32();
  const std::uint32_t root = tree.u32();
  tree.u32();  // the node size
  const std::uint32_t pathCount = tree.u32();
  tree.u8();
  if (!tree.ok()) return {Fault::shortTree, offset};
  if (magic != "tree") return {Fault::wrongTreeMagic, offset};
  if (version != 1) return {Fault::wrongTreeVersion, offset};

  if (const Failure failure = Walk(store).run(root, leaves)) return failure;
  if (leaves.pathCount != pathCount) return {Fault::wrongPathCount, offset};
  return {};
}

}  // namespace pelmarix::lsbom
