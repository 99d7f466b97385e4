// The one way in which an operation of the program fails.
#pragma once

#include <optional>
#include <utility>
#include <variant>

namespace pelmarix {

/// The value that an operation gave, or the error that tells why there is none; true when there is a value.
/// The value may be asked for only where there is one, the error only where there isn't.
///
/// What may simply not be there (a key of a dictionary, a chosen path) is a std::optional and no failure; and
/// a decoder of records, of which nobody asks why they were refused, gives one too.
template <typename T, typename E>
class [[nodiscard]] Result {
 public:
  Result(T value) : content_(std::in_place_index<0>, std::move(value)) {}
  Result(E error) : content_(std::in_place_index<1>, std::move(error)) {}

  explicit operator bool() const { return content_.index() == 0; }
  const T& operator*() const& { return *std::get_if<0>(&content_); }
  T& operator*() & { return *std::get_if<0>(&content_); }
  T&& operator*() && { return std::move(*std::get_if<0>(&content_)); }
  const T* operator->() const { return std::get_if<0>(&content_); }
  T* operator->() { return std::get_if<0>(&content_); }
  const E& error() const { return *std::get_if<1>(&content_); }

 private:
  std::variant<T, E> content_;
};

/// Of an operation that gives nothing but its success.
template <typename E>
class [[nodiscard]] Result<void, E> {
 public:
  Result() = default;
  Result(E error) : error_(std::move(error)) {}

  explicit operator bool() const { return !error_; }
  const E& error() const { return *error_; }

 private:
  std::optional<E> error_;
};

}  // namespace pelmarix
