// What is sought among the paths of packages.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pelmarix {

/// Matches a path that holds the text anywhere, whatever the case and the spelling of its letters are. A "*"
/// stands for any characters and a "?" for one, but neither for "/". A "/" or "./" at the beginning is the
/// Mac's root, where the path must begin then.
class PathPattern {
 public:
  explicit PathPattern(std::string_view text);

  /// Nothing is sought, and nothing matches.
  bool isEmpty() const { return sought_.empty(); }
  /// `path` is UTF-8, and below the root it begins with "/".
  bool matches(std::string_view path) const;
  /// False where this may match what `wider` doesn't. A text with something more typed to it is known to be
  /// narrower.
  bool isNarrowerThan(const PathPattern& wider) const;

 private:
  bool matchesFolded(std::string_view path) const;

  std::string sought_;  // folded
  bool beginsAtRoot_ = false;
  std::vector<std::string> segments_;  // between the "*"; the first may be empty
};

}  // namespace pelmarix
