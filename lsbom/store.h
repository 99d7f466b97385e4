// The container that a bill of materials lies in: numbered blocks, some of them named.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/result.h"
#include "lsbom/cursor.h"
#include "lsbom/fault.h"

namespace pelmarix::lsbom {

/// What every store begins with.
inline constexpr std::string_view storeMagic = "BOMStore";

/// Gives views into the bytes it was opened on, which must outlive it.
class Store {
 public:
  /// Checks the header and the ranges of index and variables, and looks for the variable "Paths".
  static Result<Store, Failure> open(std::string_view file);

  /// The number of the block that "Paths" names.
  std::uint32_t pathsBlock() const { return pathsBlock_; }

  /// How many numbers the index has: no block's number is as large.
  std::uint32_t blockCount() const { return blockCount_; }

  /// Defined here, since it is called for every part of every path.
  Result<std::string_view, Failure> block(std::uint32_t number) const {
    if (number == 0 || number >= blockCount_) return Failure{Fault::unknownBlock, offsetOf(index_)};
    Cursor pair(index_.substr(number * indexPairLength, indexPairLength));
    const std::uint32_t offset = pair.u32();
    const std::uint32_t length = pair.u32();
    if (!isInside(offset, length)) return Failure{Fault::blockPastEnd, offset};
    return file_.substr(offset, length);
  }

  /// Where a view into the file begins.
  std::uint64_t offsetOf(std::string_view bytes) const {
    return static_cast<std::uint64_t>(bytes.data() - file_.data());
  }

 private:
  static constexpr std::size_t indexPairLength = 8;

  explicit Store(std::string_view file) : file_(file) {}
  Result<void, Failure> openIndex(std::uint32_t offset, std::uint32_t length);
  Result<void, Failure> openVariables(std::uint32_t offset, std::uint32_t length);

  // 32-bit numbers added in 64 bits cannot wrap.
  bool isInside(std::uint64_t offset, std::uint64_t length) const { return offset + length <= file_.size(); }

  std::string_view file_;
  std::string_view index_;  // the pairs of offset and length
  std::uint32_t blockCount_ = 0;
  std::uint32_t pathsBlock_ = 0;
};

}  // namespace pelmarix::lsbom
