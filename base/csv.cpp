#include "base/csv.h"

#include "base/utf8.h"

namespace pelmarix {
namespace {

void appendField(std::string& text, std::string_view field) {
  const bool isQuoted = field.find_first_of(",\"\r\n") != std::string_view::npos;
  if (isQuoted) text += '"';
  const char* place = field.data();
  const char* const last = place + field.size();
  while (place != last) {
    const char* const invalid = findInvalidUtf8(place, last);
    for (; place != invalid; ++place) {
      if (*place == '"') text += '"';
      text += *place;
    }
    if (place == last) break;
    text += "\uFFFD";
    ++place;
  }
  if (isQuoted) text += '"';
}

}  // namespace

void appendCsvRecord(std::string& text, std::initializer_list<std::string_view> fields) {
  for (const std::string_view& field : fields) {
    if (&field != fields.begin()) text += ',';
    appendField(text, field);
  }
  text += "\r\n";
}

}  // namespace pelmarix
