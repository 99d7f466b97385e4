// A value of a decoded property list: a handle of two pointers, to be passed by value. It stays good as long
// as its Document and the bytes that the document was decoded from.
//
// Each getter answers only for a value of its own type and is empty for all others; nothing is converted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "base/date.h"

namespace pelmarix::plist {

struct Node;
struct Tree;

enum class Type : std::uint8_t {
  null,
  boolean,
  integer,
  real,
  date,
  string,
  data,
  uid,
  array,
  set,
  dictionary,
};

template <typename Item>
class Contents;
struct Entry;

class Value {
 public:
  /// For this folder; others get theirs from a Document.
  Value(const Tree& tree, const Node& node) : tree_(&tree), node_(&node) {}

  Type type() const;

  /// UTF-8, always valid; may hold NUL and other control characters. Not terminated.
  std::optional<std::string_view> string() const;
  /// May be infinite or not a number: a binary file can hold both.
  std::optional<Date> date() const;
  std::optional<bool> boolean() const;
  /// Empty for integers above 2^63-1.
  std::optional<std::int64_t> integer() const;
  /// Empty for negative integers.
  std::optional<std::uint64_t> unsignedInteger() const;
  std::optional<double> real() const;
  std::optional<std::uint32_t> uid() const;
  std::optional<std::string_view> data() const;

  /// The number of elements of an array or set, or of entries of a dictionary, repeated keys included; else
  /// 0.
  std::size_t count() const;
  /// The elements of an array or set in file order; nothing for other types.
  ///
  /// A binary file may hold one value in many places, so what is small on disk can be endless when walked
  /// from place to place. Readers that look below the elements, or copy out of them, need a bound of their
  /// own.
  Contents<Value> elements() const;
  /// The keys and values of a dictionary in file order, repeated keys included; nothing for other types.
  Contents<Entry> entries() const;
  /// The value under a key of a dictionary, compared byte for byte. Where the key is repeated the last one
  /// counts. Takes time in proportion to the number of entries.
  std::optional<Value> find(std::string_view key) const;

 private:
  const Tree* tree_;
  const Node* node_;
};

struct Entry {
  std::string_view key;
  Value value;
};

/// The elements or the entries of a container, to be walked by a range-based `for`.
template <typename Item>
class Contents {
 public:
  class Iterator {
   public:
    Iterator(const Tree& tree, const Node& container, std::size_t index)
        : tree_(&tree), container_(&container), index_(index) {}
    Item operator*() const;
    Iterator& operator++() {
      ++index_;
      return *this;
    }
    friend bool operator==(const Iterator&, const Iterator&) = default;

   private:
    const Tree* tree_;
    const Node* container_;
    std::size_t index_;
  };

  Contents(const Tree& tree, const Node& container, std::size_t count)
      : begin_(tree, container, 0), end_(tree, container, count) {}
  Iterator begin() const { return begin_; }
  Iterator end() const { return end_; }

 private:
  Iterator begin_;
  Iterator end_;
};

template <>
Value Contents<Value>::Iterator::operator*() const;
template <>
Entry Contents<Entry>::Iterator::operator*() const;

}  // namespace pelmarix::plist
