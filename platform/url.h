// Addresses on the network.
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace pelmarix::platform {

/// A valid address; there is no other way to one than fromString.
class URL {
 public:
  /// Nothing when the text is empty or breaks the generic syntax of RFC 3986: a character outside its set
  /// (blanks, control characters, anything beyond ASCII, "<>\"{}|\\^`"), a "%" that two hexadecimal digits
  /// don't follow.
  static std::optional<URL> fromString(const std::string& text);

  const std::string& absoluteString() const { return text_; }

 private:
  explicit URL(std::string text) : text_(std::move(text)) {}
  std::string text_;
};

}  // namespace pelmarix::platform
