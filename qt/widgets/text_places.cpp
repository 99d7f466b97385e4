#include "qt/widgets/text_places.h"

#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <algorithm>

#include "qt/services/text_conversion.h"

namespace pelmarix::qt {
namespace {

// What stands around a place in its line, up to a thousand bytes on either side: a line may have any length.
struct Surroundings {
  Surroundings(const TextIndex& index, std::size_t place) : line(index.line(index.lineAt(place))) {
    constexpr std::size_t reach = 1024;
    begin = index.placeAt(place - std::min(reach, place - line.begin));
    bytes = index.part({begin, index.placeAt(std::min(line.end, place + reach))});
    text = toQString(bytes);
    at = static_cast<int>(utf16Length(bytes.substr(0, place - begin)));
  }
  std::size_t placeAt(int unit) const { return begin + bytesOfUtf16(bytes, static_cast<std::size_t>(unit)); }

  TextRange line;
  std::size_t begin;
  std::string_view bytes;
  QString text;
  int at;
};

QTextLayout::CursorMode stepOf(TextUnit unit) {
  return unit == TextUnit::word ? QTextLayout::SkipWords : QTextLayout::SkipCharacters;
}

}  // namespace

std::size_t nextPlace(const TextIndex& text, std::size_t place, TextUnit unit) {
  const Surroundings around(text, place);
  if (place == around.line.end) return std::min(place + 1, text.text()->size());
  const int next = QTextLayout(around.text).nextCursorPosition(around.at, stepOf(unit));
  // The toolkit sometimes stops between the two units of one character.
  const bool isInside = next < around.text.size() && around.text[next].isLowSurrogate();
  return around.placeAt(isInside ? next + 1 : next);
}

std::size_t previousPlace(const TextIndex& text, std::size_t place, TextUnit unit) {
  const Surroundings around(text, place);
  if (place == around.line.begin) return place - std::min<std::size_t>(place, 1);
  return around.placeAt(QTextLayout(around.text).previousCursorPosition(around.at, stepOf(unit)));
}

TextRange unitAround(const TextIndex& text, std::size_t place, TextUnit unit) {
  if (unit == TextUnit::character) return {place, place};
  const Surroundings around(text, place);
  if (unit == TextUnit::line) return {around.line.begin, std::min(around.line.end + 1, text.text()->size())};
  if (around.text.isEmpty()) return {place, place};
  QTextBoundaryFinder words(QTextBoundaryFinder::Word, around.text);
  words.setPosition(std::min<qsizetype>(around.at + 1, around.text.size()));
  const auto begin = static_cast<int>(words.toPreviousBoundary());
  return {around.placeAt(begin), around.placeAt(static_cast<int>(words.toNextBoundary()))};
}

}  // namespace pelmarix::qt
