// Looking through a listing of a bill of materials while it comes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "receipts/path_pattern.h"

namespace pelmarix {

/// A file that a listing tells of.
class ListedFile {
 public:
  /// What the listing has of one file: its path, size and time with a tab between two, one at least. The path
  /// may hold anything, line ends and tabs included.
  explicit ListedFile(std::string_view text);

  const std::string& text() const { return text_; }
  /// From the Mac's root, with "/" in front, where the listing has "./".
  std::string_view path() const;
  std::string_view size() const;
  std::string_view modified() const;
  /// In bytes of memory.
  std::size_t cost() const { return sizeof(ListedFile) + text_.size(); }

 private:
  std::string text_;
  std::size_t pathEnd_;
  std::size_t sizeEnd_;
};

/// Keeps the files whose paths match, and nothing else.
class ListingSearch {
 public:
  explicit ListingSearch(PathPattern pattern) : pattern_(std::move(pattern)) {}

  /// From now on another pattern is looked for, a narrower one.
  void narrow(const PathPattern& pattern);
  /// What comes next in the listing, cut off anywhere.
  void take(std::string_view bytes);
  /// To be called when the listing has ended.
  void finish();

  /// False when what came is no listing: it isn't UTF-8, or what it has of a file doesn't come to an end. Nor
  /// can one be looked through when memory runs out.
  bool isListing() const { return isListing_; }
  std::vector<ListedFile>& files() { return files_; }
  /// In bytes, what the files take.
  std::size_t cost() const { return cost_; }

 private:
  // Returns how much of the text was whole files.
  std::size_t lookThrough(std::string_view text);

  PathPattern pattern_;
  std::string rest_;  // of what came, behind the last whole file
  std::vector<ListedFile> files_;
  std::size_t cost_ = 0;
  bool isListing_ = true;
};

}  // namespace pelmarix
