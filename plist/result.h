// What an operation that can fail gives back.
#pragma once

#include <utility>
#include <variant>

#include "plist/error.h"

namespace pelmarix::plist {

/// A value, or why there is none. The value may be asked for only where there is one, the error only where
/// there isn't.
template <typename T>
class Result {
 public:
  Result(T value) : content_(std::move(value)) {}
  Result(Error error) : content_(error) {}

  explicit operator bool() const { return std::holds_alternative<T>(content_); }
  const T& operator*() const& { return *std::get_if<T>(&content_); }
  T&& operator*() && { return std::move(*std::get_if<T>(&content_)); }
  const T* operator->() const { return std::get_if<T>(&content_); }
  const Error& error() const { return *std::get_if<Error>(&content_); }

 private:
  std::variant<T, Error> content_;
};

}  // namespace pelmarix::plist
