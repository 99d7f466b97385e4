#include "platform/text.h"

#include <algorithm>

#include "base/utf8.h"
#include "platform/services.h"

namespace pelmarix::platform {

std::string composed(std::string_view text) { return isAscii(text) ? std::string(text) : composedForm(text); }

std::string folded(std::string_view text) {
  std::string letters(text);
  for (char& letter : letters)
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  if (isAscii(letters)) return letters;

  // The platform gets what isn't ASCII alone, with the letter in front, which accents may belong to.
  std::string form;
  const char* const last = letters.data() + letters.size();
  for (const char* first = letters.data(); first != last;) {
    const char* const other = findNonAscii(first, last);
    const char* const begin = other == first || other == last ? other : other - 1;
    const char* const end = std::find_if(other, last, [](char byte) { return (byte & 0x80) == 0; });
    form.append(first, begin);
    if (begin != end) form += foldedForm({begin, static_cast<std::size_t>(end - begin)});
    first = end;
  }
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
