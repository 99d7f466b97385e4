// What an HTTP/1.1 server answers, byte by byte as it comes.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace pelmarix::qt {

/// A larger answer is broken: all that comes counts. An update list has a few kilobytes; the bound only keeps
/// a mistaken or hostile server from filling the memory.
inline constexpr std::size_t maximumAnswerSize = std::size_t{16} << 20U;

/// The final answer to one request; those before it that only tell how the request fares are passed over.
class HttpAnswer {
 public:
  /// Takes the next bytes; what comes after the end of the answer is ignored.
  void add(std::string_view bytes);
  /// Nothing more comes, which can be the end of the body.
  void end();

  bool isComplete() const { return state_ == State::complete; }
  /// Not HTTP, cut, or too large, of which a line or a header of more than 64 KiB is a case; nothing more is
  /// looked at.
  bool isBroken() const { return state_ == State::broken; }

  /// 0 until the whole head is there.
  int status() const { return headIsComplete_ ? status_ : 0; }
  /// The value of a header that the program uses, whose name is given in small letters; empty when there is
  /// none.
  std::string header(const std::string& name) const;
  /// Of a complete answer the body; nothing when the server has compressed it unasked.
  std::optional<std::string> takeBody();

 private:
  enum class State {
    status,
    headers,
    body,
    chunkSize,
    chunk,
    chunkEnd,
    trailers,
    complete,
    broken,
  };

  std::optional<std::string_view> nextLine();
  void takeLine(std::string_view line);
  void takeStatus(std::string_view line);
  void takeHeader(std::string_view line);
  void beginBody();
  void takeChunkSize(std::string_view line);
  void takeContents();

  State state_ = State::status;
  std::size_t size_ = 0;
  // What has come and isn't dealt with, from `at_` on; up to `searched_` there is no end of a line.
  std::string pending_;
  std::size_t at_ = 0;
  std::size_t searched_ = 0;
  int status_ = 0;
  bool headIsComplete_ = false;
  std::map<std::string, std::string> headers_;
  std::string headerAtHand_;  // its name
  std::string body_;
  std::size_t left_ = 0;  // of the body or of a chunk
  bool endsWithConnection_ = false;
};

}  // namespace pelmarix::qt
