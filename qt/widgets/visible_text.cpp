#include "qt/widgets/visible_text.h"

#include <algorithm>
#include <iterator>

namespace pelmarix::qt {
namespace {

constexpr char16_t controlPictures = 0x2400;
constexpr char16_t pictureOfDelete = 0x2421;
constexpr char16_t pictureOfLineEnd = 0x2424;
constexpr char16_t signOfDirection = 0x21c4;  // an arrow to the right over one to the left

char16_t visible(QChar character) {
  const char16_t code = character.unicode();
  if (code < 0x20) return code == u'\n' || code == u'\t' ? code : controlPictures + code;
  switch (code) {
    case 0x7f:
      return pictureOfDelete;
    case 0x061c:  // marks of direction
    case 0x200e:
    case 0x200f:
    case 0x202a:  // embeddings, overrides and their end
    case 0x202b:
    case 0x202c:
    case 0x202d:
    case 0x202e:
    case 0x2066:  // isolates and their end
    case 0x2067:
    case 0x2068:
    case 0x2069:
      return signOfDirection;
    case QChar::LineSeparator:
    case QChar::ParagraphSeparator:
      return pictureOfLineEnd;
    case 0xfdd0:  // the begin and the end of a frame in a text document
    case 0xfdd1:
    case QChar::ObjectReplacementCharacter:
      return QChar::ReplacementCharacter;
    default:
      return code;
  }
}

}  // namespace

QString visible(QStringView text) {
  QString shown = text.toString();
  std::transform(shown.cbegin(), shown.cend(), shown.begin(),
                 [](QChar character) { return QChar(visible(character)); });
  return shown;
}

QString visibleInOneLine(QStringView text) {
  const auto picture = [](char16_t code) { return QChar(static_cast<char16_t>(controlPictures + code)); };
  return visible(text).replace(u'\n', picture(u'\n')).replace(u'\t', picture(u'\t'));
}

}  // namespace pelmarix::qt
