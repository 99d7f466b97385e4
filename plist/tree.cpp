#include "plist/tree.h"

namespace pelmarix::plist {
namespace {

constexpr std::size_t sharedBlockSize = 65536;
/// Longer texts get a block of exactly their size, so that little of a shared block is ever left unused.
constexpr std::size_t longestInSharedBlock = 4096;

}  // namespace

char* Arena::reserve(std::size_t size) {
  if (size > longestInSharedBlock) {
    reserved_ = blocks_.emplace_back(new char[size]).get();
    return reserved_;
  }
  if (size > room_) {
    free_ = blocks_.emplace_back(new char[sharedBlockSize]).get();
    room_ = sharedBlockSize;
  }
  reserved_ = free_;
  return reserved_;
}

std::string_view Arena::commit(const char* last) {
  const std::string_view text(reserved_, static_cast<std::size_t>(last - reserved_));
  if (reserved_ == free_) {
    free_ += text.size();
    room_ -= text.size();
  }
  return text;
}

}  // namespace pelmarix::plist
