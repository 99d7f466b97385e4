// A well-formed bill of materials, to be damaged at a place that the format names. Trusts what it holds until
// then.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "sample/bom_writer.h"

namespace pelmarix::lsbom {

class EditableBom {
 public:
  explicit EditableBom(const std::vector<sample::BomEntry>& entries, const sample::BomLayout& layout = {})
      : bytes(sample::writeBillOfMaterials(entries, layout)) {}

  std::uint32_t u32(std::size_t offset) const {
    return u8(offset) << 24 | u8(offset + 1) << 16 | u8(offset + 2) << 8 | u8(offset + 3);
  }

  EditableBom& setU8(std::size_t offset, std::uint32_t value) {
    bytes.at(offset) = static_cast<char>(value);
    return *this;
  }
  EditableBom& setU16(std::size_t offset, std::uint32_t value) {
    return setU8(offset, value >> 8).setU8(offset + 1, value);
  }
  EditableBom& setU32(std::size_t offset, std::uint32_t value) {
    return setU16(offset, value >> 16).setU16(offset + 2, value);
  }

  /// Places in the file.
  std::size_t index() const { return u32(16); }
  std::size_t variables() const { return u32(24); }
  std::size_t indexPair(std::uint32_t block) const { return index() + 4 + std::size_t{8} * block; }
  std::size_t block(std::uint32_t number) const { return u32(indexPair(number)); }
  std::size_t tree() const { return block(pathsBlock()); }

  /// Numbers of blocks.
  std::uint32_t pathsBlock() const { return u32(variableNamed("Paths")); }
  std::uint32_t rootNode() const { return u32(tree() + 8); }
  std::uint32_t childNode(std::uint32_t node, std::uint32_t child) const {
    return u32(block(node) + 12 + std::size_t{8} * child);
  }
  /// Of a path in the first leaf, or in the only one.
  std::uint32_t numbersBlock(std::uint32_t path) const { return u32(pathPair(path)); }
  std::uint32_t nameBlock(std::uint32_t path) const { return u32(pathPair(path) + 4); }
  std::uint32_t recordBlock(std::uint32_t path) const { return u32(block(numbersBlock(path)) + 4); }

  std::size_t pathPair(std::uint32_t path) const { return block(firstLeaf()) + 12 + std::size_t{8} * path; }

  std::uint32_t firstLeaf() const {
    std::uint32_t node = rootNode();
    while (u8(block(node) + 1) == 0) node = childNode(node, 0);
    return node;
  }

  /// Where the entry of a variable begins: its block's number, the length of its name, its name.
  std::size_t variableNamed(std::string_view name) const {
    std::size_t offset = variables() + 4;
    for (std::uint32_t left = u32(variables()); left > 0; --left) {
      if (bytes.compare(offset + 5, u8(offset + 4), name) == 0) return offset;
      offset += 5 + u8(offset + 4);
    }
    throw std::logic_error("no such variable");
  }

  std::string bytes;

 private:
  std::uint32_t u8(std::size_t offset) const { return static_cast<unsigned char>(bytes.at(offset)); }
};

}  // namespace pelmarix::lsbom
