// How a decoded property list is kept: one array of small nodes. Private to this folder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <forward_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "plist/value.h"

namespace pelmarix::plist {

/// Containers nested deeper are refused, as the platform refuses them: whoever walks the values may then
/// recurse.
inline constexpr std::size_t maximumDepth = 512;

/// In bytes. Files that are longer are refused, and those whose text is longer as UTF-8.
inline constexpr std::size_t maximumSize = std::size_t{256} << 20U;

/// Trees that take more nodes are refused; with maximumSize this bounds what a file can cost. A file of
/// maximumSize may have one for 21 bytes, and usual ones have one for 30.
inline constexpr std::size_t maximumNodes = std::size_t{12} << 20U;

/// An unsigned number, the most significant byte first. Of more than eight bytes the last eight count.
inline std::uint64_t bigEndian(std::string_view bytes) {
  std::uint64_t number = 0;
  for (const char byte : bytes) number = number << 8 | static_cast<unsigned char>(byte);
  return number;
}

/// The elements of an array or set; of a dictionary all keys, then all values.
struct Children {
  /// In XML the place of the first one's node, in a binary file the offset of the reference to it.
  std::size_t first = 0;
  /// The number of elements or entries.
  std::size_t count = 0;
};

/// A value. Kept to 16 bytes, since a large file has millions of them.
struct Node {
  Node() : number(0) {}
  Node(Type nodeType, std::uint64_t value) : number(value), type(nodeType) {}
  Node(Type nodeType, double value) : real(value), type(nodeType) {}
  Node(Type nodeType, std::string_view value)
      : firstByte(value.data()), count(static_cast<std::uint32_t>(value.size())), type(nodeType) {}
  Node(Type nodeType, Children value)
      : firstChild(value.first), count(static_cast<std::uint32_t>(value.count)), type(nodeType) {}

  static Node integer(std::uint64_t value, bool isNegative) {
    Node node(Type::integer, value);
    node.isNegative = isNegative;
    return node;
  }

  bool isContainer() const { return type >= Type::array; }
  /// Of a string, of data.
  std::string_view bytes() const { return {firstByte, count}; }
  /// Of an array, a set, a dictionary.
  Children children() const { return {firstChild, count}; }

  union {
    /// Boolean, UID; integer, in two's complement.
    std::uint64_t number;
    /// Real, date.
    double real;
    const char* firstByte;
    std::size_t firstChild;
  };
  std::uint32_t count = 0;
  Type type = Type::null;
  /// Of an integer.
  bool isNegative = false;
};

/// Can be moved but not copied: its nodes refer to the strings that it keeps.
struct Tree {
  Tree() = default;
  Tree(Tree&&) = default;

  /// Binary: by object number. XML: the children of a container one behind the other.
  std::vector<Node> nodes;
  std::size_t root = 0;
  /// Strings and data that the file doesn't hold as they are. They never move.
  std::forward_list<std::string> kept;
  /// The nodes that would take as much memory as the list of those strings.
  std::size_t nodesForKept = 0;
  /// In a binary file the bytes that hold the references, and the width of one; 0 in XML.
  std::string_view file;
  std::size_t referenceWidth = 0;

  std::string_view keep(std::string bytes) {
    nodesForKept += 3;
    return kept.emplace_front(std::move(bytes));
  }

  const Node& child(Children children, std::size_t index) const {
    if (referenceWidth == 0) return nodes[children.first + index];
    return nodes[bigEndian(file.substr(children.first + index * referenceWidth, referenceWidth))];
  }
};

}  // namespace pelmarix::plist
