#include "qt/services/http_answer.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace pelmarix::qt {
namespace {

constexpr std::string_view blanks = " \t";
// In bytes; of a header's value too, which can be in several lines.
constexpr std::size_t longestLine = std::size_t{64} << 10U;
// A million others would take far more memory than they have bytes.
constexpr std::string_view usedHeaders[] = {"content-encoding", "content-length", "content-type", "location",
                                            "transfer-encoding"};

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

std::string inSmallLetters(std::string_view text) {
  std::string result(text);
  for (char& c : result)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return result;
}

// The number that is all of the text; nothing when it is anything else.
template <typename Number>
std::optional<Number> number(std::string_view text, int base) {
  Number value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

}  // namespace

void HttpAnswer::add(std::string_view bytes) {
  if (isComplete() || isBroken()) return;
  size_ += bytes.size();
  pending_ += bytes;
  if (size_ > maximumAnswerSize) state_ = State::broken;
  while (!isComplete() && !isBroken()) {
    if (state_ == State::body || state_ == State::chunk) {
      takeContents();
      if (left_ != 0) break;
      state_ = state_ == State::body ? State::complete : State::chunkEnd;
      continue;
    }
    const std::optional<std::string_view> line = nextLine();
    if (!line) break;
    takeLine(*line);
  }
  pending_.erase(0, at_);
  searched_ -= at_;
  at_ = 0;
}

void HttpAnswer::end() {
  if (!isComplete()) state_ = endsWithConnection_ && !isBroken() ? State::complete : State::broken;
}

std::optional<std::string_view> HttpAnswer::nextLine() {
  const std::size_t end = pending_.find('\n', searched_);
  if (end == std::string::npos) {
    if (pending_.size() - at_ > longestLine) state_ = State::broken;
    searched_ = pending_.size();
    return std::nullopt;
  }
  std::string_view line = std::string_view(pending_).substr(at_, end - at_);
  if (line.ends_with('\r')) line.remove_suffix(1);  // not every server sends one
  at_ = searched_ = end + 1;
  return line;
}

void HttpAnswer::takeLine(std::string_view line) {
  switch (state_) {
    case State::status:
      return takeStatus(line);
    case State::headers:
      return line.empty() ? beginBody() : takeHeader(line);
    case State::chunkSize:
      return takeChunkSize(line);
    case State::chunkEnd:
      state_ = line.empty() ? State::chunkSize : State::broken;
      return;
    default:  // trailers, of which nothing is of use
      if (line.empty()) state_ = State::complete;
  }
}

void HttpAnswer::takeStatus(std::string_view line) {
  constexpr std::string_view example = "HTTP/1.1 200";  // and a text behind it
  std::optional<int> code;
  if (line.size() >= example.size() && line.starts_with("HTTP/1.") && line[8] == ' ')
    code = number<int>(line.substr(9, 3), 10);
  state_ = code && *code >= 100 ? State::headers : State::broken;
  status_ = code.value_or(0);
  headers_.clear();
  headerAtHand_.clear();
}

void HttpAnswer::takeHeader(std::string_view line) {
  // A line that begins with a blank goes on with the header before.
  const bool goesOn = blanks.find(line.front()) != std::string_view::npos;
  const std::size_t colon = line.find(':');
  if (!goesOn && colon == std::string_view::npos) {
    state_ = State::broken;
    return;
  }
  if (!goesOn) headerAtHand_ = inSmallLetters(line.substr(0, colon));
  if (std::find(std::begin(usedHeaders), std::end(usedHeaders), headerAtHand_) == std::end(usedHeaders))
    return;
  std::string& value = headers_[headerAtHand_];
  if (!value.empty()) value += goesOn ? " " : ", ";
  value += trimmed(goesOn ? line : line.substr(colon + 1));
  if (value.size() > longestLine) state_ = State::broken;
}

std::string HttpAnswer::header(const std::string& name) const {
  const auto found = headers_.find(name);
  return found == headers_.end() ? std::string() : found->second;
}

void HttpAnswer::beginBody() {
  if (status_ < 200) {
    state_ = State::status;
    return;
  }
  headIsComplete_ = true;
  const std::string length = header("content-length");
  const std::string transferCoding = inSmallLetters(header("transfer-encoding"));
  if (status_ == 204 || status_ == 304) {
    state_ = State::complete;
  } else if (!transferCoding.empty()) {
    state_ = transferCoding == "chunked" ? State::chunkSize : State::broken;
  } else if (!length.empty()) {
    const std::optional<std::size_t> size = number<std::size_t>(length, 10);
    state_ = size ? State::body : State::broken;
    left_ = size.value_or(0);
  } else {
    state_ = State::body;
    left_ = std::numeric_limits<std::size_t>::max();
    endsWithConnection_ = true;
  }
  // So that it never moves, which would take twice the memory; what isn't filled takes none.
  if (!isComplete() && !isBroken())
    body_.reserve(state_ == State::body ? std::min(left_, maximumAnswerSize) : maximumAnswerSize);
}

void HttpAnswer::takeChunkSize(std::string_view line) {
  const std::optional<std::size_t> size = number<std::size_t>(trimmed(line.substr(0, line.find(';'))), 16);
  if (!size)
    state_ = State::broken;
  else
    state_ = *size == 0 ? State::trailers : State::chunk;
  left_ = size.value_or(0);
}

void HttpAnswer::takeContents() {
  const std::size_t count = std::min(left_, pending_.size() - at_);
  body_.append(pending_, at_, count);
  left_ -= count;
  at_ = searched_ = at_ + count;
}

std::optional<std::string> HttpAnswer::takeBody() {
  const std::string coding = inSmallLetters(header("content-encoding"));
  if (!coding.empty() && coding != "identity" && !body_.empty()) return std::nullopt;
  return std::move(body_);
}

}  // namespace pelmarix::qt
