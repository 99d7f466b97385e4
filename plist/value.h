// A value of a decoded property list: a handle of two pointers, to be passed by value. It stays good as long
// as its Document and the bytes that the document was decoded from.
//
// Each getter answers only for a value of its own type and is empty for all others; nothing is converted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
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

class Elements;
class Entries;

class Value {
 public:
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
  /// The bytes themselves, made anew at each call.
  std::optional<std::string> data() const;

  /// The number of elements of an array or set, or of entries of a dictionary, repeated keys included; else
  /// 0.
  std::size_t count() const;
  /// The elements of an array or set in file order; nothing for other types.
  Elements elements() const;
  /// The keys and values of a dictionary in file order, repeated keys included; nothing for other types.
  Entries entries() const;
  /// The value under a key of a dictionary, compared byte for byte. Where the key is repeated the last one
  /// counts. Looks at every key.
  std::optional<Value> find(std::string_view key) const;

  /// True for the very same value of the same document. A binary file may hold one value in many places, so
  /// what is small on disk can be endless when walked from place to place: readers that look below an
  /// element, or copy out of it, for each place it stands in, need a bound of their own or look at each value
  /// once.
  bool isSameAs(Value other) const { return node_ == other.node_; }
  /// A number of its own for each value of a document, below Document::valueCount().
  std::size_t identity() const;

 private:
  const Tree* tree_;
  const Node* node_;
};

struct Entry {
  std::string_view key;
  Value value;
};

/// Where an iterator over a container stands.
struct Position {
  const Tree* tree = nullptr;
  const Node* container = nullptr;
  /// XML only: the element itself, or the entry's key.
  const Node* current = nullptr;
  std::size_t index = 0;

  friend bool operator==(const Position& left, const Position& right) { return left.index == right.index; }
};

class Elements {
 public:
  class Iterator {
   public:
    using value_type = Value;
    using difference_type = std::ptrdiff_t;

    Iterator() = default;
    explicit Iterator(Position position) : position_(position) {}
    Value operator*() const;
    Iterator& operator++();
    Iterator operator++(int);
    friend bool operator==(const Iterator&, const Iterator&) = default;

   private:
    Position position_;
  };

  Elements(Position first, Position last) : first_(first), last_(last) {}
  Iterator begin() const { return first_; }
  Iterator end() const { return last_; }

 private:
  Iterator first_;
  Iterator last_;
};

class Entries {
 public:
  class Iterator {
   public:
    using value_type = Entry;
    using difference_type = std::ptrdiff_t;

    Iterator() = default;
    explicit Iterator(Position position) : position_(position) {}
    Entry operator*() const;
    Iterator& operator++();
    Iterator operator++(int);
    friend bool operator==(const Iterator&, const Iterator&) = default;

   private:
    Position position_;
  };

  Entries(Position first, Position last) : first_(first), last_(last) {}
  Iterator begin() const { return first_; }
  Iterator end() const { return last_; }

 private:
  Iterator first_;
  Iterator last_;
};

}  // namespace pelmarix::plist
