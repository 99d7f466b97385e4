// Addresses on the network.
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace pelmarix::platform {

/// A valid address; there is no other way to one than fromString.
class URL {
 public:
  /// Nothing when the platform doesn't take the text for an address, see Services::isValidAddress.
  static std::optional<URL> fromString(const std::string& text);

  const std::string& absoluteString() const { return text_; }

 private:
  explicit URL(std::string text) : text_(std::move(text)) {}
  std::string text_;
};

}  // namespace pelmarix::platform
