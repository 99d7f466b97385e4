// Reads bills of materials: the files beside package receipts that list what a package installed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "lsbom/fault.h"
#include "lsbom/record.h"

namespace pelmarix::lsbom {

/// The longest path, in bytes: four times what a Mac opens, and a bound on what a small file can make of deep
/// folders.
inline constexpr std::size_t longestPath = 4096;

/// One path, with views into the bytes that it was read from.
struct Entry {
  std::uint32_t id;       ///< never 0, and no other path's
  std::uint32_t parent;   ///< the id of the folder it is in; 0 at the top
  std::string_view name;  ///< the path's last component: any bytes but NUL
  Record record;
};

/// The entries of a file, depth first, children by the bytes of their names.
class BillOfMaterials {
 public:
  /// Reads a whole file of less than 4 GiB, which must outlive what is read. Work and memory are in
  /// proportion to their number (but for what has to be sorted), whatever they say, and so is the listing;
  /// nothing is allocated by a count that they do not bear out.
  static Result<BillOfMaterials, Failure> read(std::string_view bytes);

  std::size_t size() const { return order_.size(); }
  Entry entry(std::size_t index) const;

 private:
  class Reader;

  // Where something lies in the bytes.
  struct Range {
    std::uint32_t offset;
    std::uint32_t length;
  };

  // A path as the file has it. Kept small, since fresh memory is half of the cost of a listing.
  struct Path {
    std::uint32_t id;
    std::uint32_t parent;
    Range name;
    Range record;
  };

  explicit BillOfMaterials(std::string_view bytes) : bytes_(bytes) {}

  std::string_view at(Range range) const { return bytes_.substr(range.offset, range.length); }

  std::string_view bytes_;
  std::vector<Path> paths_;           // by the parent's id, then by name
  std::vector<std::uint32_t> order_;  // of the entries: indices of their paths
};

}  // namespace pelmarix::lsbom
