#include "receipts/listing_search.h"

#include <algorithm>
#include <new>

#include "base/utf8.h"

namespace pelmarix {
namespace {

// Far more than a lister prints of a file.
constexpr std::size_t longestText = std::size_t{1} << 20U;

constexpr auto nowhere = std::string_view::npos;

struct Fields {
  std::size_t pathEnd;
  std::size_t sizeEnd;
};

// The last two tabs; where there is one, no size is between them.
Fields fieldsOf(std::string_view text) {
  const std::size_t last = text.rfind('\t');
  return {std::min(text.rfind('\t', last - 1), last), last};
}

std::string_view pathIn(std::string_view text, std::size_t pathEnd) {
  const std::string_view path = text.substr(0, pathEnd);
  return path.starts_with("./") ? path.substr(1) : path;
}

}  // namespace

ListedFile::ListedFile(std::string_view text) : text_(text) {
  const Fields fields = fieldsOf(text);
  pathEnd_ = fields.pathEnd;
  sizeEnd_ = fields.sizeEnd;
}

std::string_view ListedFile::path() const { return pathIn(text_, pathEnd_); }

std::string_view ListedFile::size() const {
  return std::string_view(text_).substr(pathEnd_, sizeEnd_ - pathEnd_).substr(pathEnd_ < sizeEnd_ ? 1 : 0);
}

std::string_view ListedFile::modified() const { return std::string_view(text_).substr(sizeEnd_ + 1); }

void ListingSearch::narrow(const PathPattern& pattern) {
  pattern_ = pattern;
  std::erase_if(files_, [this](const ListedFile& file) {
    const bool isLost = !pattern_.matches(file.path());
    if (isLost) cost_ -= file.cost();
    return isLost;
  });
}

void ListingSearch::take(std::string_view bytes) try {
  if (!isListing_) return;
  rest_.append(bytes);
  rest_.erase(0, lookThrough(rest_));
  if (rest_.size() > longestText) isListing_ = false;
} catch (const std::bad_alloc&) {
  isListing_ = false;
}

void ListingSearch::finish() {
  if (!rest_.empty()) take("\n");
  if (!rest_.empty()) isListing_ = false;
}

std::size_t ListingSearch::lookThrough(std::string_view text) {
  const std::string_view lines = text.substr(0, text.rfind('\n') + 1);
  if (!isValidUtf8(lines)) {
    isListing_ = false;
    return text.size();
  }
  std::size_t begin = 0;
  for (std::size_t from = 0; from < lines.size();) {
    const std::size_t end = lines.find('\n', from);
    const std::string_view line = lines.substr(from, end - from);
    from = end + 1;
    if (line.find('\t') == nowhere) continue;  // a name with a line end goes on in the next line
    const std::string_view file = lines.substr(begin, end - begin);
    const Fields fields = fieldsOf(file);
    if (pattern_.matches(pathIn(file, fields.pathEnd))) {
      files_.emplace_back(file);
      cost_ += files_.back().cost();
    }
    begin = from;
  }
  return begin;
}

}  // namespace pelmarix
