// How a decoded property list is kept: one array of small nodes, and text beside it only where the file's own
// bytes can't be shown as they are. Private to this folder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "plist/limits.h"
#include "plist/value.h"

namespace pelmarix::plist {

/// Sixteen bytes for any value; a large file has millions of them.
struct Node {
  static constexpr std::uint64_t sizeMask = (std::uint64_t{1} << 46) - 1;
  static constexpr std::uint64_t levelsMask = (std::uint64_t{1} << 10) - 1;
  /// The levels of a container whose contents are being decoded.
  static constexpr std::uint64_t open = levelsMask;
  /// The size of an integer above 2^63-1.
  static constexpr std::uint64_t unsignedInteger = 2;

  Node() : number(0), size(0), levels(0), type(Type::null) {}
  Node(Type nodeType, std::uint64_t value, std::uint64_t extent = 1)
      : number(value), size(extent & sizeMask), levels(1), type(nodeType) {}
  Node(Type nodeType, double value) : real(value), size(1), levels(1), type(nodeType) {}
  Node(Type nodeType, std::string_view view)
      : bytes(view.data()), size(view.size() & sizeMask), levels(1), type(nodeType) {}

  std::string_view view() const { return {bytes, size}; }
  bool isContainer() const { return type >= Type::array; }

  union {
    /// String, data (in XML still in base64), and the references of a container in a binary file.
    const char* bytes;
    /// Boolean, UID, integer in two's complement; in XML the number of a container's elements or entries.
    std::uint64_t number;
    /// Real, date.
    double real;
  };
  /// Of text in bytes. Of a container in XML the nodes from itself to its last descendant, in a binary file
  /// the elements or entries. Of an integer 1, or 2 when it is unsigned and above 2^63-1.
  std::uint64_t size : 46;
  /// In a binary file 1 for what is no container, and for a container one more than for its deepest element;
  /// 0 as long as the value has not been decoded.
  std::uint64_t levels : 10;
  Type type : 8;
};
static_assert(sizeof(Node) == 16);
static_assert(maximumDepth + 1 < Node::open);

/// Text that had to be made: entities, CDATA sections, other encodings. Blocks never move.
class Arena {
 public:
  /// Room for that many bytes, to be filled before anything else is asked for.
  char* reserve(std::size_t size);
  /// Keeps what was filled, from the last reserve() to `last`.
  std::string_view commit(const char* last);

 private:
  std::vector<std::unique_ptr<char[]>> blocks_;
  /// The shared block's free part; small texts are put one behind the other.
  char* free_ = nullptr;
  std::size_t room_ = 0;
  char* reserved_ = nullptr;
};

struct Tree {
  /// XML: in the order of the file, a container before its contents, a key before its value. Binary: by
  /// object number.
  std::vector<Node> nodes;
  std::size_t root = 0;
  /// Bytes of a reference in a binary file; 0 says XML.
  std::size_t referenceWidth = 0;
  Arena arena;

  bool isBinary() const { return referenceWidth != 0; }
};

/// An unsigned number of any number of bytes, the most significant first. Only the last eight count.
inline std::uint64_t bigEndian(const char* bytes, std::size_t width) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < width; ++i) number = number << 8 | static_cast<unsigned char>(bytes[i]);
  return number;
}

/// The same for eight bytes, of which compilers make one load.
inline std::uint64_t bigEndian64(const char* bytes) {
  const auto byte = [bytes](std::size_t i) { return std::uint64_t{static_cast<unsigned char>(bytes[i])}; };
  return byte(0) << 56 | byte(1) << 48 | byte(2) << 40 | byte(3) << 32 | byte(4) << 24 | byte(5) << 16 |
         byte(6) << 8 | byte(7);
}

/// The same for 1 to 8 bytes that a trailer follows: offsets and references. There are millions of them in a
/// large file, and with the trailer behind them eight bytes can be read at once whatever the width is.
inline std::uint64_t bigEndianBeforeTrailer(const char* bytes, std::size_t width) {
  return bigEndian64(bytes) >> (64 - 8 * width);
}

}  // namespace pelmarix::plist
