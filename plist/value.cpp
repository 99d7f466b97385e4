#include "plist/value.h"

#include <bit>

#include "plist/tree.h"

namespace pelmarix::plist {

Type Value::type() const { return node_->type; }

std::optional<std::string_view> Value::string() const {
  if (node_->type != Type::string) return std::nullopt;
  return node_->bytes();
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
  if (node_->type != Type::integer) return std::nullopt;
  const auto number = std::bit_cast<std::int64_t>(node_->number);
  if (number < 0 && !node_->isNegative) return std::nullopt;
  return number;
}

std::optional<std::uint64_t> Value::unsignedInteger() const {
  if (node_->type != Type::integer || node_->isNegative) return std::nullopt;
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

std::optional<std::string_view> Value::data() const {
  if (node_->type != Type::data) return std::nullopt;
  return node_->bytes();
}

std::size_t Value::count() const { return node_->isContainer() ? node_->count : 0; }

Contents<Value> Value::elements() const {
  return {*tree_, *node_, node_->type == Type::dictionary ? 0 : count()};
}

Contents<Entry> Value::entries() const {
  return {*tree_, *node_, node_->type == Type::dictionary ? count() : 0};
}

std::optional<Value> Value::find(std::string_view key) const {
  if (node_->type != Type::dictionary) return std::nullopt;
  for (std::size_t i = count(); i-- > 0;)
    if (tree_->child(node_->children(), i).bytes() == key)
      return Value(*tree_, tree_->child(node_->children(), count() + i));
  return std::nullopt;
}

template <>
Value Contents<Value>::Iterator::operator*() const {
  return {*tree_, tree_->child(container_->children(), index_)};
}

template <>
Entry Contents<Entry>::Iterator::operator*() const {
  const Children children = container_->children();
  return {tree_->child(children, index_).bytes(), {*tree_, tree_->child(children, children.count + index_)}};
}

}  // namespace pelmarix::plist
