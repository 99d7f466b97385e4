#include "platform/url.h"

#include "platform/services.h"

namespace pelmarix::platform {

std::optional<URL> URL::fromString(const std::string& text) {
  if (!isValidAddress(text)) return std::nullopt;
  return URL(text);
}

}  // namespace pelmarix::platform
