#include "qt/widgets/text_search.h"

#include <QChar>
#include <algorithm>

namespace pelmarix::qt {
namespace {

constexpr qsizetype blockSize = 32;
constexpr char16_t firstNonAscii = 0x80;
constexpr char16_t caseBit = 0x20;

bool isSameLetter(QChar letter, QChar other) { return folded(letter) == folded(other); }

// False when none of a block's places has both the first and the last unit of what is sought. So simple that
// the compiler compares many places with one instruction: the bit that tells the cases of ASCII letters is
// left out, and what isn't ASCII may be anything.
bool mayBeginInBlock(const char16_t* firsts, const char16_t* lasts, char16_t first, char16_t last) {
  int hits = 0;
  for (qsizetype i = 0; i < blockSize; ++i) {
    const int isFirst = ((firsts[i] | caseBit) == first) | (firsts[i] >= firstNonAscii);
    const int isLast = ((lasts[i] | caseBit) == last) | (lasts[i] >= firstNonAscii);
    hits |= isFirst & isLast;
  }
  return hits != 0;
}

}  // namespace

char16_t folded(QChar letter) {
  const char16_t unit = letter.unicode();
  if (unit < firstNonAscii)
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit | caseBit) : unit;
  return unit == QChar::Nbsp ? u' ' : letter.toCaseFolded().unicode();
}

qsizetype indexOfIgnoringCase(QStringView text, QStringView sought, qsizetype from) {
  if (sought.isEmpty()) return -1;
  const char16_t first = folded(sought.front());
  const auto firstOfAnyCase = static_cast<char16_t>(first | caseBit);
  const auto lastOfAnyCase = static_cast<char16_t>(folded(sought.back()) | caseBit);
  const qsizetype places = text.size() - sought.size() + 1;
  for (qsizetype begin = from; begin < places; begin += blockSize) {
    const char16_t* const block = text.utf16() + begin;
    const qsizetype end = std::min(begin + blockSize, places);
    if (end - begin == blockSize &&
        !mayBeginInBlock(block, block + sought.size() - 1, firstOfAnyCase, lastOfAnyCase))
      continue;
    for (qsizetype place = begin; place < end; ++place)
      if (folded(text[place]) == first &&
          std::equal(sought.begin(), sought.end(), text.begin() + place, isSameLetter))
        return place;
  }
  return -1;
}

}  // namespace pelmarix::qt
