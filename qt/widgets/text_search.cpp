#include "qt/widgets/text_search.h"

#include <QChar>
#include <algorithm>
#include <cstdint>
#include <string>

namespace pelmarix::qt {
namespace {

// So many places are looked at together.
constexpr qsizetype blockSize = 64;

constexpr char16_t firstNonAscii = 0x80;
constexpr char16_t caseBit = 0x20;

/// Unit by unit: the letters outside the basic plane that have two cases are of scripts that are dead or
/// rare.
char16_t folded(char16_t unit) {
  if (unit < firstNonAscii)
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit | caseBit) : unit;
  return unit == QChar::Nbsp ? u' ' : QChar(unit).toCaseFolded().unicode();
}

class Search {
 public:
  Search(QStringView text, QStringView sought)
      : text_(text.utf16()), sought_(sought.utf16(), sought.utf16() + sought.size()) {
    std::transform(sought_.begin(), sought_.end(), sought_.begin(), folded);
    if (!sought.isEmpty()) places_ = std::max<qsizetype>(text.size() - sought.size() + 1, 0);
  }

  qsizetype first(qsizetype from) const {
    for (qsizetype begin = from; begin < places_; begin += blockSize) {
      const qsizetype end = std::min(begin + blockSize, places_);
      if (!mayBeginIn(begin, end)) continue;
      for (qsizetype place = begin; place < end; ++place)
        if (beginsAt(place)) return place;
    }
    return -1;
  }

  qsizetype last() const {
    for (qsizetype end = places_; end > 0; end -= blockSize) {
      const qsizetype begin = std::max<qsizetype>(end - blockSize, 0);
      if (!mayBeginIn(begin, end)) continue;
      for (qsizetype place = end; place-- > begin;)
        if (beginsAt(place)) return place;
    }
    return -1;
  }

 private:
  bool beginsAt(qsizetype place) const {
    return std::equal(sought_.begin(), sought_.end(), text_ + place,
                      [](char16_t left, char16_t right) { return left == folded(right); });
  }

  /// False where no place of a whole block has the first and the last unit of what is sought. So simple that
  /// the compiler takes many places at once: the bit that tells the cases of ASCII letters is left out, and
  /// what isn't ASCII may be anything.
  bool mayBeginIn(qsizetype begin, qsizetype end) const {
    if (end - begin < blockSize) return true;
    const char16_t* const firsts = text_ + begin;
    const char16_t* const lasts = firsts + sought_.size() - 1;
    const auto first = static_cast<char16_t>(sought_.front() | caseBit);
    const auto last = static_cast<char16_t>(sought_.back() | caseBit);
    int hits = 0;
    for (qsizetype i = 0; i < blockSize; ++i) {
      const int isFirst = ((firsts[i] | caseBit) == first) | (firsts[i] >= firstNonAscii);
      const int isLast = ((lasts[i] | caseBit) == last) | (lasts[i] >= firstNonAscii);
      hits |= isFirst & isLast;
    }
    return hits != 0;
  }

  const char16_t* text_;
  std::u16string sought_;
  /// How many places there are where it could begin.
  qsizetype places_ = 0;
};

}  // namespace

qsizetype indexOfIgnoringCase(QStringView text, QStringView sought, qsizetype from) {
  return Search(text, sought).first(from);
}

qsizetype lastIndexOfIgnoringCase(QStringView text, QStringView sought) {
  return Search(text, sought).last();
}

}  // namespace pelmarix::qt
