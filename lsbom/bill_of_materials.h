// Reads bills of materials: the files beside package receipts that list what a package installed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

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
  std::uint32_t id = 0;      // never 0, and no other path's
  std::uint32_t parent = 0;  // the id of what stands above it; 0 at the top
  std::string_view name;     // the path's last component: any bytes but NUL
  Record record;
};

// The entries of a file, depth first, children by the bytes of their names.
class BillOfMaterials {
 public:
  BillOfMaterials();
  BillOfMaterials(const BillOfMaterials&) = delete;
  BillOfMaterials& operator=(const BillOfMaterials&) = delete;
  ~BillOfMaterials();

  // Reads a whole file. The bytes must outlive this object. Work and memory are in proportion to their number
  // (but for what has to be sorted), whatever they say; nothing is allocated by a count that they do not bear
  // out. After a failure there are no entries.
  Failure read(std::string_view bytes);

  std::size_t size() const { return order_.size(); }
  Entry entry(std::size_t index) const { return entryOf(order_[index]); }

  // The entry with an id, which there must be.
  Entry entryWithId(std::uint32_t id) const;

 private:
  // A path as the file has it: ranges are offsets into the bytes.
  struct Path {
    std::uint32_t id;
    std::uint32_t parent;
    std::uint32_t name;
    std::uint32_t nameLength;
    std::uint32_t record;
    std::uint32_t recordLength;
  };

  class Ids;
  class Reader;

  Entry entryOf(std::uint32_t path) const;

  std::string_view bytes_;
  std::unique_ptr<Path[]> pathStore_;
  std::span<Path> paths_;  // by the parent's id, then by name
  std::unique_ptr<Ids> ids_;
  std::unique_ptr<std::uint32_t[]> orderStore_;
  std::span<std::uint32_t> order_;  // the paths in the order of the listing
};

}  // namespace pelmarix::lsbom
