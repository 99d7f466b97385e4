// Reads bills of materials: the files beside package receipts that list what a package installed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "lsbom/fault.h"
#include "lsbom/record.h"

namespace pelmarix::lsbom {

// Every offset in the file has 32 bits; what stands behind this many bytes is never read.
inline constexpr std::size_t largestFile = UINT32_MAX;

// The longest path, in bytes: far above what any system opens, and a bound on what a small file can make of
// deep folders.
inline constexpr std::size_t longestPath = 65535;

// One path. Its texts are views into the bytes that were read.
struct Entry {
  std::string_view name;    // the path's last component: any bytes but NUL
  std::uint32_t depth = 0;  // how many components stand above it
  Record record;
};

// The entries of a file, depth first, children by the bytes of their names: what stands above an entry is the
// nearest one ahead of it with a smaller depth.
class BillOfMaterials {
 public:
  BillOfMaterials() = default;

  // Reads a whole file. The bytes must outlive this object. Work and memory are in proportion to their number
  // (but for what has to be sorted), whatever they say; nothing is allocated by a count that they do not bear
  // out. After a failure there are no entries.
  Failure read(std::string_view bytes);

  std::size_t size() const { return places_.size(); }
  Entry entry(std::size_t index) const;

  // The index of the entry that stands above another, or none.
  static constexpr std::uint32_t none = UINT32_MAX;
  std::uint32_t parent(std::size_t index) const { return places_[index].parent; }

 private:
  // A path as the file has it: ranges are offsets into the bytes, its place is told by ids.
  struct Path {
    std::uint32_t id;
    std::uint32_t parent;
    std::uint32_t name;
    std::uint32_t nameLength;
    std::uint32_t record;
    std::uint32_t recordLength;
  };

  // Where in the listing a path stands.
  struct Place {
    std::uint32_t path;
    std::uint32_t depth;
    std::uint32_t parent;  // its place, or none
  };

  class Reader;
  class Ids;

  std::string_view bytes_;
  std::unique_ptr<Path[]> pathStore_;
  std::span<Path> paths_;      // by the parent's id, then by name
  std::vector<Place> places_;  // in the order of the listing
};

}  // namespace pelmarix::lsbom
