#include "platform/text.h"

#include <algorithm>

#include "platform/services.h"

namespace pelmarix {
namespace {

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

// Plain ASCII is its own composed form, so texts that need the platform's help are the rare ones.
bool textEquals(std::string_view text, std::string_view other) {
  if (text == other) return true;
  if (isAscii(text) && isAscii(other)) return false;
  return composedForm(text) == composedForm(other);
}

bool textContains(std::string_view text, std::string_view literal) {
  if (isAscii(text) && isAscii(literal)) return text.find(literal) != std::string_view::npos;
  return composedForm(text).find(composedForm(literal)) != std::string::npos;
}

}  // namespace pelmarix
