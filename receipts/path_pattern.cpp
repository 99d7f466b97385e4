#include "receipts/path_pattern.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "platform/text.h"

namespace pelmarix {
namespace {

constexpr auto nowhere = std::string_view::npos;

struct Range {
  std::size_t begin;
  std::size_t end;
};

// Where the segment ends that begins at `begin`; nothing where it doesn't.
std::optional<std::size_t> endOfSegment(std::string_view path, std::string_view segment, std::size_t begin) {
  std::size_t place = begin;
  for (const char character : segment) {
    if (place == path.size()) return std::nullopt;
    if (character == '?') {
      if (path[place] == '/') return std::nullopt;
      ++place;
      while (place < path.size() && (path[place] & 0xC0) == 0x80) ++place;
    } else if (path[place++] != character) {
      return std::nullopt;
    }
  }
  return place;
}

// The first place from `from` on where the segment stands.
std::optional<Range> findSegment(std::string_view path, std::string_view segment, std::size_t from) {
  const std::size_t mark = segment.find('?');
  if (mark == nowhere) {
    const std::size_t begin = path.find(segment, from);
    if (begin == nowhere) return std::nullopt;
    return Range{begin, begin + segment.size()};
  }
  for (std::size_t begin = from; begin < path.size(); ++begin)
    if (const auto end = endOfSegment(path, segment, begin)) return Range{begin, *end};
  return std::nullopt;
}

}  // namespace

PathPattern::PathPattern(std::string_view text) : sought_(platform::folded(text)) {
  if (sought_.starts_with("./")) sought_.erase(0, 1);
  beginsAtRoot_ = sought_.starts_with('/');
  std::string_view rest = sought_;
  for (std::size_t star = rest.find('*'); star != nowhere; star = rest.find('*')) {
    segments_.emplace_back(rest.substr(0, star));
    rest.remove_prefix(star + 1);
  }
  segments_.emplace_back(rest);
}

bool PathPattern::matches(std::string_view path) const { return matchesFolded(platform::folded(path)); }

bool PathPattern::matchesFolded(std::string_view path) const {
  if (isEmpty()) return false;
  std::size_t from = 0;
  for (;;) {
    const auto first = findSegment(path, segments_.front(), from);
    if (!first || (beginsAtRoot_ && first->begin > 0)) return false;
    std::size_t end = first->end;
    const bool isWhole = std::all_of(segments_.begin() + 1, segments_.end(), [&](const std::string& segment) {
      const auto found = findSegment(path, segment, end);
      if (!found || path.substr(end, found->begin - end).find('/') != nowhere) return false;
      end = found->end;
      return true;
    });
    if (isWhole) return true;
    // The first segment further on in the same part of the path reaches no further.
    const std::size_t slash = path.find('/', first->begin);
    if (slash == nowhere) return false;
    from = slash + 1;
  }
}

bool PathPattern::isNarrowerThan(const PathPattern& wider) const {
  if (wider.isEmpty()) return false;
  return wider.beginsAtRoot_ ? sought_.starts_with(wider.sought_)
                             : sought_.find(wider.sought_) != std::string::npos;
}

}  // namespace pelmarix
