#include "qt/widgets/text_index.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace pelmarix::qt {
namespace {

constexpr std::size_t blockSize = 1024;

// A character counts where its first byte is: two units when that begins four bytes, else one.
template <typename Count = std::size_t>
Count unitsBegunBy(char byte) {
  const auto code = static_cast<unsigned char>(byte);
  const int units = static_cast<int>((code & 0xC0) != 0x80) + static_cast<int>(code >= 0xF0);
  return static_cast<Count>(units);
}

// Counts in small numbers, of which the compiler adds up many with one instruction.
struct Counts {
  std::size_t lineFeeds = 0;
  std::size_t utf16 = 0;

  void add(std::string_view text) {
    constexpr std::size_t step = 64;
    while (text.size() >= step) {
      std::uint8_t feeds = 0;
      std::uint8_t units = 0;
      for (std::size_t i = 0; i < step; ++i) {
        feeds = static_cast<std::uint8_t>(feeds + (text[i] == '\n'));
        units = static_cast<std::uint8_t>(units + unitsBegunBy<std::uint8_t>(text[i]));
      }
      lineFeeds += feeds;
      utf16 += units;
      text.remove_prefix(step);
    }
    for (const char byte : text) {
      lineFeeds += byte == '\n' ? 1 : 0;
      utf16 += unitsBegunBy(byte);
    }
  }
};

Counts countsOf(std::string_view text) {
  Counts counts;
  counts.add(text);
  return counts;
}

}  // namespace

std::size_t utf16Length(std::string_view utf8) { return countsOf(utf8).utf16; }

std::size_t bytesOfUtf16(std::string_view utf8, std::size_t units) {
  std::size_t bytes = 0;
  while (bytes < utf8.size() && unitsBegunBy(utf8[bytes]) <= units) units -= unitsBegunBy(utf8[bytes++]);
  return bytes;
}

TextIndex::TextIndex(platform::SharedText text) : text_(std::move(text)) {
  blocks_.reserve(text_->size() / blockSize + 2);
  Counts before;
  for (std::string_view rest = *text_; !rest.empty(); rest.remove_prefix(std::min(blockSize, rest.size()))) {
    blocks_.push_back({before.lineFeeds, before.utf16});
    before.add(rest.substr(0, blockSize));
  }
  blocks_.push_back({before.lineFeeds, before.utf16});
}

std::size_t TextIndex::lineAt(std::size_t place) const {
  const std::size_t block = place / blockSize;
  return blocks_[block].lineFeeds + countsOf(part({block * blockSize, place})).lineFeeds;
}

std::size_t TextIndex::lineBegin(std::size_t number) const {
  if (number == 0) return 0;
  // The line feed before it is in the last block that has fewer before it.
  const auto after = std::lower_bound(blocks_.begin(), blocks_.end(), number,
                                      [](const Block& block, std::size_t n) { return block.lineFeeds < n; });
  std::size_t lineFeeds = std::prev(after)->lineFeeds;
  auto place = static_cast<std::size_t>(std::prev(after) - blocks_.begin()) * blockSize;
  for (; lineFeeds < number; ++lineFeeds) place = text_->find('\n', place) + 1;
  return place;
}

TextRange TextIndex::line(std::size_t number) const {
  return {lineBegin(number), number + 1 < lineCount() ? lineBegin(number + 1) - 1 : text_->size()};
}

std::size_t TextIndex::utf16Before(std::size_t place) const {
  const std::size_t block = place / blockSize;
  return blocks_[block].utf16 + utf16Length(part({block * blockSize, place}));
}

std::size_t TextIndex::placeAfterUtf16(std::size_t units) const {
  const auto after = std::upper_bound(blocks_.begin() + 1, blocks_.end(), units,
                                      [](std::size_t n, const Block& block) { return n < block.utf16; });
  const auto block = static_cast<std::size_t>(std::prev(after) - blocks_.begin());
  const std::size_t begin = block * blockSize;
  if (begin >= text_->size()) return text_->size();
  return begin + bytesOfUtf16(part({begin, text_->size()}), units - blocks_[block].utf16);
}

std::size_t TextIndex::placeAt(std::size_t byte) const {
  if (byte >= text_->size()) return text_->size();
  while (byte > 0 && unitsBegunBy((*text_)[byte]) == 0) --byte;
  return byte;
}

}  // namespace pelmarix::qt
