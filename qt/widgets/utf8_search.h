// Searching UTF-8, by the same notion of a letter as in text_search.h.
#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "qt/widgets/text_index.h"

namespace pelmarix::qt {

/// A text that is sought. Made in half a millisecond; then 60 MB that don't hold it take 9 to 75 ms.
class SoughtText final {
 public:
  explicit SoughtText(const QString& sought);

  bool isEmpty() const { return letters_.empty(); }
  /// What a match has at most.
  std::size_t longestMatch() const { return 4 * letters_.size(); }
  /// The first match that begins in `where`; none when the sought text is empty.
  std::optional<TextRange> firstIn(std::string_view text, TextRange where) const;
  /// The last one.
  std::optional<TextRange> lastIn(std::string_view text, TextRange where) const;

 private:
  // The different values that a byte of a match can have. Of more than four, and of none, any value will do.
  struct PossibleBytes {
    void add(char byte);
    std::uint8_t has(char byte) const {
      const auto bits = static_cast<std::uint8_t>(static_cast<std::uint8_t>(byte) & mask);
      const auto is = [this, bits](std::size_t i) { return static_cast<int>(bits == values[i]); };
      return static_cast<std::uint8_t>(is(0) | is(1) | is(2) | is(3));
    }
    std::array<std::uint8_t, 4> values{};
    std::uint8_t mask = 0;
    int count = 0;
  };
  static constexpr std::size_t blockSize = 64;
  // 1 for each byte of a block where a match may begin.
  using Candidates = std::array<std::uint8_t, blockSize>;
  // False when there is none. Reads the byte after the block, too.
  bool findCandidates(const char* block, Candidates& candidates) const;
  std::optional<std::size_t> endOfMatch(std::string_view text, std::size_t begin) const;

  std::vector<char32_t> letters_;
  PossibleBytes first_, second_;
};

}  // namespace pelmarix::qt
