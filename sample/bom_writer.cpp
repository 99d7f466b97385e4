#include "sample/bom_writer.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <tuple>
#include <utility>

namespace pelmarix::sample {
namespace {

// Appends to bytes; numbers are big-endian everywhere.
struct Bytes {
  Bytes& u8(std::uint32_t value) {
    bytes.push_back(static_cast<char>(value));
    return *this;
  }
  Bytes& u16(std::uint32_t value) { return u8(value >> 8).u8(value); }
  Bytes& u32(std::uint32_t value) { return u16(value >> 16).u16(value); }
  Bytes& raw(std::string_view more) {
    bytes.append(more);
    return *this;
  }

  std::string bytes;
};

constexpr std::uint32_t usualNodeSize = 4096;
constexpr std::uint32_t headerRoom = 512;  // its 32 bytes and what the usual writer leaves free behind them

std::uint32_t size32(std::size_t size) { return static_cast<std::uint32_t>(size); }

std::string recordBlock(const BomEntry& entry, bool isOld) {
  const bool program = !entry.processors.empty();
  const bool link = entry.kind == BomKind::link;
  Bytes bytes;
  bytes.u8(static_cast<std::uint32_t>(entry.kind)).u8(1);
  bytes.u16(!program ? 0x000F : entry.processors.size() == 1 ? 0x100F : 0x200F);
  bytes.u16(entry.mode).u32(entry.user).u32(entry.group).u32(entry.modificationTime);
  bytes.u32(link ? size32(entry.linkTarget.size()) : entry.size).u8(1);
  if (link) {
    bytes.u32(posixChecksum(entry.linkTarget)).u32(size32(entry.linkTarget.size() + 1));
    bytes.raw(entry.linkTarget).u8(0);
  } else if (entry.kind != BomKind::folder) {
    bytes.u32(entry.checksum);
  }
  if (program) {
    bytes.u8(1).u32(size32(entry.processors.size()));
    for (const BomProcessor& part : entry.processors) {
      bytes.u32(part.type).u32(part.subtype).u32(part.size).u32(part.checksum);
    }
  }
  if (!isOld) bytes.u32(0).u32(0);
  return std::move(bytes.bytes);
}

// A path's entry with its place in the tree of folders.
struct Path {
  const BomEntry* entry;
  std::string_view name;
  std::uint32_t parent;  // an id; 0 for those without a folder above them
  std::uint32_t id;
};

std::pair<std::string_view, std::string_view> splitPath(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string_view::npos) return {{}, path};
  return {path.substr(0, slash), path.substr(slash + 1)};
}

// The folders that the paths need and that the list does not have.
std::vector<BomEntry> missingFolders(const std::vector<BomEntry>& entries) {
  std::set<std::string_view> known;
  for (const BomEntry& entry : entries) known.insert(entry.path);
  std::vector<BomEntry> folders;
  for (const BomEntry& entry : entries) {
    for (std::string_view above = splitPath(entry.path).first; !above.empty() && known.insert(above).second;
         above = splitPath(above).first) {
      folders.push_back({.path = std::string(above),
                         .kind = BomKind::folder,
                         .mode = 040755,
                         .modificationTime = entry.modificationTime});
    }
  }
  return folders;
}

// The paths in the order of the tree: by the parent's id, then by the name's bytes. Ids run depth first.
std::vector<Path> arrangedPaths(const std::vector<BomEntry>& entries, const std::vector<BomEntry>& added,
                                const BomLayout& layout) {
  std::vector<const BomEntry*> sorted;
  sorted.reserve(entries.size() + added.size());
  for (const BomEntry& entry : entries) sorted.push_back(&entry);
  for (const BomEntry& entry : added) sorted.push_back(&entry);
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const BomEntry* one, const BomEntry* other) { return one->path < other->path; });

  std::map<std::string_view, std::uint32_t> ids;
  std::vector<Path> paths;
  std::uint32_t id = layout.firstId;
  for (const BomEntry* entry : sorted) {
    const auto [above, name] = splitPath(entry->path);
    ids.emplace(entry->path, id);
    paths.push_back({entry, name, above.empty() ? 0 : ids.at(above), id});
    id += layout.idStep;
  }
  std::sort(paths.begin(), paths.end(), [](const Path& one, const Path& other) {
    return std::tie(one.parent, one.name, one.id) < std::tie(other.parent, other.name, other.id);
  });
  return paths;
}

// The blocks of the file by number; number 0 is the null block.
using Blocks = std::vector<std::string>;

// Returns the block's number. Without content it is a block that is filled later.
std::uint32_t add(Blocks& blocks, std::string content = {}) {
  blocks.push_back(std::move(content));
  return size32(blocks.size() - 1);
}

std::string nodeBlock(Bytes node, std::uint32_t size, const BomLayout& layout) {
  if (layout.paddedNodes && node.bytes.size() < size) node.bytes.resize(size);
  return std::move(node.bytes);
}

std::string treeBlock(std::uint32_t root, std::uint32_t nodeSize, std::size_t paths) {
  return Bytes().raw("tree").u32(1).u32(root).u32(nodeSize).u32(size32(paths)).u8(0).bytes;
}

std::uint32_t addEmptyTree(Blocks& blocks, std::uint32_t nodeSize, const BomLayout& layout) {
  const std::uint32_t tree = add(blocks);
  const std::uint32_t root = add(blocks, nodeBlock(Bytes().u16(1).u16(0).u32(0).u32(0), nodeSize, layout));
  blocks[tree] = treeBlock(root, nodeSize, 0);
  return tree;
}

// What a node says of one below it.
struct Child {
  std::uint32_t node;
  std::uint32_t lastKey;
};

std::vector<Child> addLeaves(Blocks& blocks, const std::vector<Path>& paths, const BomLayout& layout) {
  const std::size_t step = layout.pathsPerNode;
  const std::size_t count = std::max<std::size_t>(1, (paths.size() + step - 1) / step);
  std::vector<std::uint32_t> numbers(count);
  for (std::uint32_t& number : numbers) number = add(blocks);

  std::vector<Child> leaves;
  for (std::size_t leaf = 0; leaf < count; ++leaf) {
    const std::size_t first = leaf * step;
    const std::size_t end = std::min(paths.size(), first + step);
    Bytes node;
    node.u16(1).u16(size32(end - first));
    node.u32(leaf + 1 < count ? numbers[leaf + 1] : 0).u32(leaf > 0 ? numbers[leaf - 1] : 0);
    std::uint32_t key = 0;
    for (std::size_t i = first; i < end; ++i) {
      const Path& path = paths[i];
      const std::uint32_t record = add(blocks, recordBlock(*path.entry, layout.oldRecords));
      const std::uint32_t info = add(blocks, Bytes().u32(path.id).u32(record).bytes);
      key = add(blocks, Bytes().u32(path.parent).raw(path.name).u8(0).bytes);
      node.u32(info).u32(key);
    }
    blocks[numbers[leaf]] = nodeBlock(std::move(node), usualNodeSize, layout);
    leaves.push_back({numbers[leaf], key});
  }
  return leaves;
}

// Puts levels of inner nodes above the children until one node is left: the root.
std::uint32_t addRoot(Blocks& blocks, std::vector<Child> children, const BomLayout& layout) {
  while (children.size() > 1) {
    std::vector<Child> level;
    for (std::size_t first = 0; first < children.size(); first += layout.pathsPerNode) {
      const std::size_t end = std::min<std::size_t>(children.size(), first + layout.pathsPerNode);
      Bytes node;
      node.u16(0).u16(size32(end - first - 1)).u32(0).u32(0);
      for (std::size_t i = first; i < end; ++i) {
        node.u32(children[i].node).u32(i + 1 < end ? children[i].lastKey : 0);
      }
      const std::uint32_t number = add(blocks, nodeBlock(std::move(node), usualNodeSize, layout));
      level.push_back({number, children[end - 1].lastKey});
    }
    children = std::move(level);
  }
  return children.front().node;
}

// Adds all that a bom holds and returns its variables: the names by which the blocks are found.
std::string addContent(Blocks& blocks, const std::vector<Path>& paths, const BomLayout& layout) {
  const std::uint32_t info =
      add(blocks, Bytes().u32(1).u32(size32(paths.size() + 1)).u32(1).u32(0).u32(0).u32(0).u32(0).bytes);
  const std::uint32_t tree = add(blocks);
  const std::uint32_t root = addRoot(blocks, addLeaves(blocks, paths, layout), layout);
  blocks[tree] = treeBlock(root, usualNodeSize, paths.size());
  const std::uint32_t hardLinks = addEmptyTree(blocks, usualNodeSize, layout);
  const std::uint32_t views = addEmptyTree(blocks, 128, layout);
  const std::uint32_t viewIndex = add(blocks, Bytes().u32(1).u32(views).u32(0).u8(0).bytes);
  const std::uint32_t longSizes = addEmptyTree(blocks, usualNodeSize, layout);

  const std::pair<std::uint32_t, std::string_view> variables[] = {{info, "BomInfo"},
                                                                  {tree, "Paths"},
                                                                  {hardLinks, "HLIndex"},
                                                                  {viewIndex, "VIndex"},
                                                                  {longSizes, "Size64"}};
  Bytes bytes;
  bytes.u32(size32(std::size(variables)));
  for (const auto& [block, name] : variables) bytes.u32(block).u8(size32(name.size())).raw(name);
  return std::move(bytes.bytes);
}

// The file: its header, and the parts where the layout wants them.
std::string assembled(const Blocks& blocks, const std::string& variables, const BomLayout& layout) {
  // The index has one length wherever the blocks stand, so its room is known ahead of its content.
  const std::uint32_t indexLength = size32(4 + 8 * blocks.size() + 4);
  std::uint32_t end = headerRoom;
  const auto place = [&end](std::size_t length) { return std::exchange(end, end + size32(length)); };
  std::uint32_t variablesOffset = layout.variablesFirst ? place(variables.size()) : 0;
  std::uint32_t indexOffset = layout.indexFirst ? place(indexLength) : 0;
  std::vector<std::uint32_t> offsets(blocks.size());  // of the null block 0
  for (std::size_t i = 1; i < blocks.size(); ++i) {
    const std::size_t number = layout.blocksReversed ? blocks.size() - i : i;
    offsets[number] = place(blocks[number].size());
  }
  if (!layout.variablesFirst) variablesOffset = place(variables.size());
  if (!layout.indexFirst) indexOffset = place(indexLength);

  Bytes index;
  index.u32(size32(blocks.size()));
  for (std::size_t i = 0; i < blocks.size(); ++i) index.u32(offsets[i]).u32(size32(blocks[i].size()));
  index.u32(0);  // an empty list of free ranges

  Bytes file;
  file.raw("BOMStore").u32(1).u32(size32(blocks.size() - 1)).u32(indexOffset).u32(indexLength);
  file.u32(variablesOffset).u32(size32(variables.size()));
  file.bytes.resize(end);
  const auto put = [&file](std::uint32_t offset, const std::string& part) {
    std::copy(part.begin(), part.end(), file.bytes.begin() + offset);
  };
  put(variablesOffset, variables);
  put(indexOffset, index.bytes);
  for (std::size_t i = 1; i < blocks.size(); ++i) put(offsets[i], blocks[i]);
  return std::move(file.bytes);
}

}  // namespace

std::string writeBillOfMaterials(const std::vector<BomEntry>& entries, const BomLayout& layout) {
  const std::vector<BomEntry> added = missingFolders(entries);
  Blocks blocks(1);
  const std::string variables = addContent(blocks, arrangedPaths(entries, added, layout), layout);
  return assembled(blocks, variables, layout);
}

std::uint32_t posixChecksum(std::string_view bytes) {
  std::uint32_t checksum = 0;
  const auto feed = [&checksum](std::uint32_t byte) {
    checksum ^= byte << 24;
    for (int bit = 0; bit < 8; ++bit) checksum = (checksum << 1) ^ ((checksum >> 31) * 0x04C11DB7U);
  };
  for (const char byte : bytes) feed(static_cast<unsigned char>(byte));
  for (std::size_t length = bytes.size(); length > 0; length >>= 8) {
    feed(static_cast<std::uint32_t>(length & 0xFF));
  }
  return ~checksum;
}

}  // namespace pelmarix::sample
