#include "platform/url.h"

#include <string_view>

namespace pelmarix::platform {
namespace {

constexpr std::string_view hexadecimalDigits = "0123456789ABCDEFabcdef";
// RFC 3986, section 2: the unreserved characters, gen-delims and sub-delims.
constexpr std::string_view characters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~:/?#[]@!$&'()*+,;=";

bool holds(std::string_view set, char c) { return set.find(c) != std::string_view::npos; }

}  // namespace

std::optional<URL> URL::fromString(const std::string& text) {
  if (text.empty()) return std::nullopt;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '%') {
      if (i + 2 >= text.size() || !holds(hexadecimalDigits, text[i + 1]) ||
          !holds(hexadecimalDigits, text[i + 2]))
        return std::nullopt;
    } else if (!holds(characters, c)) {
      return std::nullopt;
    }
  }
  return URL(text);
}

}  // namespace pelmarix::platform
