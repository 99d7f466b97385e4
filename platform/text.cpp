#include "platform/text.h"

#include "base/utf8.h"
#include "platform/services.h"

namespace pelmarix::platform {

std::string composed(std::string_view text) { return isAscii(text) ? std::string(text) : composedForm(text); }

std::string folded(std::string_view text) {
  if (!isAscii(text)) return foldedForm(text);
  std::string form(text);
  for (char& letter : form)
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  return form;
}

bool textEquals(std::string_view text, std::string_view other) {
  if (text == other) return true;
  if (isAscii(text) && isAscii(other)) return false;
  return composed(text) == composed(other);
}

bool textContains(std::string_view text, std::string_view literal) {
  if (isAscii(text) && isAscii(literal)) return text.find(literal) != std::string_view::npos;
  return composed(text).find(composed(literal)) != std::string::npos;
}

}  // namespace pelmarix::platform
