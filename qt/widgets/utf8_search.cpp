#include "qt/widgets/utf8_search.h"

#include <QList>
#include <algorithm>
#include <cstring>

#include "qt/widgets/text_search.h"

namespace pelmarix::qt {
namespace {

constexpr char32_t firstBeyondBasicPlane = 0x10000;

struct Letter {
  char32_t code;
  std::size_t size;
};

// At a character's first byte.
Letter letterAt(std::string_view text, std::size_t place) {
  const auto lead = static_cast<unsigned char>(text[place]);
  const std::size_t size = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  char32_t code = lead & (size == 1 ? 0x7FU : 0xFFU >> (size + 1));
  for (const char byte : text.substr(place + 1, size - 1))
    code = code << 6 | (static_cast<unsigned char>(byte) & 0x3FU);
  return {code, size};
}

char32_t foldedLetter(char32_t code) {
  return code < firstBeyondBasicPlane ? folded(QChar(static_cast<char16_t>(code))) : code;
}

// Calls `action` with the bytes of each letter that is the same as `letter`.
template <typename Action>
void forEachForm(char32_t letter, Action action) {
  if (letter >= firstBeyondBasicPlane) return action(QString::fromUcs4(&letter, 1).toUtf8());
  for (char32_t code = 0; code < firstBeyondBasicPlane; ++code)
    if (foldedLetter(code) == letter) action(QString(QChar(static_cast<char16_t>(code))).toUtf8());
}

}  // namespace

void SoughtText::PossibleBytes::add(char newByte) {
  const auto byte = static_cast<std::uint8_t>(newByte);
  if (count == 0) values.fill(byte);
  const bool isKnown = std::find(values.begin(), values.end(), byte) != values.end();
  if (count > 0 && isKnown) return;
  mask = count < 4 ? 0xFF : 0;
  if (count < 4)
    values[static_cast<std::size_t>(count++)] = byte;
  else
    values.fill(0);
}

SoughtText::SoughtText(const QString& sought) {
  for (const uint code : sought.toUcs4()) letters_.push_back(foldedLetter(code));
  if (letters_.empty()) return;
  bool isFirstOneByte = false;
  forEachForm(letters_[0], [&](const QByteArray& bytes) {
    first_.add(bytes[0]);
    if (bytes.size() > 1)
      second_.add(bytes[1]);
    else
      isFirstOneByte = true;
  });
  if (!isFirstOneByte) return;
  if (letters_.size() > 1)
    forEachForm(letters_[1], [&](const QByteArray& bytes) { second_.add(bytes[0]); });
  else
    second_ = {};
}

bool SoughtText::findCandidates(const char* block, Candidates& candidates) const {
  // All in objects of its own, for the compiler to compare many bytes with one instruction.
  const PossibleBytes first = first_;
  const PossibleBytes second = second_;
  Candidates found;
  std::uint8_t any = 0;
  for (std::size_t i = 0; i < blockSize; ++i) {
    found[i] = static_cast<std::uint8_t>(first.has(block[i]) & second.has(block[i + 1]));
    any = static_cast<std::uint8_t>(any | found[i]);
  }
  candidates = found;
  return any != 0;
}

std::optional<std::size_t> SoughtText::endOfMatch(std::string_view text, std::size_t begin) const {
  for (const char32_t letter : letters_) {
    if (begin >= text.size()) return std::nullopt;
    const Letter found = letterAt(text, begin);
    if (foldedLetter(found.code) != letter) return std::nullopt;
    begin += found.size;
  }
  return begin;
}

std::optional<TextRange> SoughtText::firstIn(std::string_view text, TextRange where) const {
  if (letters_.empty()) return std::nullopt;
  Candidates candidates;
  std::array<char, blockSize + 1> lastBytes{};
  for (std::size_t begin = where.begin; begin < where.end; begin += blockSize) {
    const char* block = text.data() + begin;
    if (begin + blockSize >= text.size()) {
      text.copy(lastBytes.data(), blockSize, begin);
      block = lastBytes.data();
    }
    if (!findCandidates(block, candidates)) continue;
    const std::size_t size = std::min(blockSize, where.end - begin);
    for (std::size_t i = 0; i < size; ++i) {
      const void* const candidate = std::memchr(&candidates[i], 1, size - i);
      if (candidate == nullptr) break;
      i = static_cast<std::size_t>(static_cast<const std::uint8_t*>(candidate) - candidates.data());
      if (const auto matchEnd = endOfMatch(text, begin + i)) return TextRange{begin + i, *matchEnd};
    }
  }
  return std::nullopt;
}

std::optional<TextRange> SoughtText::lastIn(std::string_view text, TextRange where) const {
  // Part by part from the end; within a part a match is followed by the next, up to the last.
  constexpr std::size_t partSize = 262144;
  for (std::size_t end = where.end; end > where.begin;) {
    const std::size_t begin = end - std::min(partSize, end - where.begin);
    std::optional<TextRange> last;
    TextRange part{begin, end};
    while (const auto match = firstIn(text, part)) {
      last = match;
      part.begin = match->begin + 1;
    }
    if (last) return last;
    end = begin;
  }
  return std::nullopt;
}

}  // namespace pelmarix::qt
