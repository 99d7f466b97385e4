#include "plist/value.h"

#include <bit>

#include "plist/tree.h"
#include "plist/xml_scalars.h"

namespace pelmarix::plist {
namespace {

/// The node that the reference at `index` of a container in a binary file leads to.
const Node& referenced(const Tree& tree, const Node& container, std::size_t index) {
  const std::size_t width = tree.referenceWidth;
  return tree.nodes[bigEndianBeforeTrailer(container.bytes + index * width, width)];
}

/// The number of nodes from this one to its last descendant, in XML.
std::size_t extent(const Node& node) { return node.isContainer() ? node.size : 1; }

}  // namespace

Type Value::type() const { return node_->type; }

std::optional<std::string_view> Value::string() const {
  if (node_->type != Type::string) return std::nullopt;
  return node_->view();
}

std::optional<Date> Value::date() const {
  if (node_->type != Type::date) return std::nullopt;
  return Date{node_->real};
}

std::optional<bool> Value::boolean() const {
  if (node_->type != Type::boolean) return std::nullopt;
  return node_->number != 0;
}

std::optional<std::int64_t> Value::integer() const {
  if (node_->type != Type::integer || node_->size == Node::unsignedInteger) return std::nullopt;
  return std::bit_cast<std::int64_t>(node_->number);
}

std::optional<std::uint64_t> Value::unsignedInteger() const {
  if (node_->type != Type::integer) return std::nullopt;
  if (const auto number = integer(); number && *number < 0) return std::nullopt;
  return node_->number;
}

std::optional<double> Value::real() const {
  if (node_->type != Type::real) return std::nullopt;
  return node_->real;
}

std::optional<std::uint32_t> Value::uid() const {
  if (node_->type != Type::uid) return std::nullopt;
  return static_cast<std::uint32_t>(node_->number);
}

std::optional<std::string> Value::data() const {
  if (node_->type != Type::data) return std::nullopt;
  return tree_->isBinary() ? std::string(node_->view()) : decodeBase64(node_->view());
}

std::size_t Value::count() const {
  if (!node_->isContainer()) return 0;
  return tree_->isBinary() ? node_->size : node_->number;
}

Elements Value::elements() const {
  const std::size_t last = node_->type == Type::dictionary ? 0 : count();
  return {{tree_, node_, node_ + 1, 0}, {tree_, node_, nullptr, last}};
}

Entries Value::entries() const {
  const std::size_t last = node_->type == Type::dictionary ? count() : 0;
  return {{tree_, node_, node_ + 1, 0}, {tree_, node_, nullptr, last}};
}

std::optional<Value> Value::find(std::string_view key) const {
  if (node_->type != Type::dictionary) return std::nullopt;
  if (tree_->isBinary()) {
    for (std::size_t i = node_->size; i-- > 0;)
      if (referenced(*tree_, *node_, i).view() == key)
        return Value(*tree_, referenced(*tree_, *node_, node_->size + i));
    return std::nullopt;
  }
  const Node* found = nullptr;
  const Node* entry = node_ + 1;
  for (const Node* const last = node_ + node_->size; entry != last; entry += 1 + extent(entry[1]))
    if (entry->view() == key) found = entry + 1;
  return found == nullptr ? std::nullopt : std::optional(Value(*tree_, *found));
}

std::size_t Value::identity() const { return static_cast<std::size_t>(node_ - tree_->nodes.data()); }

Value Elements::Iterator::operator*() const {
  const Position& at = position_;
  return {*at.tree, at.tree->isBinary() ? referenced(*at.tree, *at.container, at.index) : *at.current};
}

Elements::Iterator& Elements::Iterator::operator++() {
  ++position_.index;
  if (!position_.tree->isBinary()) position_.current += extent(*position_.current);
  return *this;
}

Elements::Iterator Elements::Iterator::operator++(int) {
  const Iterator before = *this;
  ++*this;
  return before;
}

Entry Entries::Iterator::operator*() const {
  const Position& at = position_;
  if (!at.tree->isBinary()) return {at.current->view(), {*at.tree, at.current[1]}};
  return {referenced(*at.tree, *at.container, at.index).view(),
          {*at.tree, referenced(*at.tree, *at.container, at.container->size + at.index)}};
}

Entries::Iterator& Entries::Iterator::operator++() {
  ++position_.index;
  if (!position_.tree->isBinary()) position_.current += 1 + extent(position_.current[1]);
  return *this;
}

Entries::Iterator Entries::Iterator::operator++(int) {
  const Iterator before = *this;
  ++*this;
  return before;
}

}  // namespace pelmarix::plist
