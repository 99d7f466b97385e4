// What the lister writes its lines with.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string_view>
#include <system_error>

#include "base/result.h"

namespace pelmarix::lsbom {

/// Writes to a file through a buffer of its own. Takes no memory once it is made. After an error nothing more
/// is written.
class Output {
 public:
  /// The file is not owned and must outlive the output.
  explicit Output(std::FILE* file);

  // Both defined here, since they are called for every part of every line.
  void append(char character) {
    if (size_ == capacity) return appendInPieces({&character, 1});
    buffer_[size_++] = character;
  }
  void append(std::string_view characters) {
    if (characters.size() > capacity - size_) return appendInPieces(characters);
    std::copy_n(characters.data(), characters.size(), buffer_.get() + size_);
    size_ += characters.size();
  }
  void appendNumber(std::uint32_t number, int base = 10);
  /// Bytes that are not UTF-8 each as a backslash and three octal digits.
  void appendText(std::string_view text);
  /// The same in double quotes, quotes and backslashes behind a backslash, control characters in octal too.
  void appendQuoted(std::string_view text);

  bool hasFailed() const { return bool{error_}; }

  /// Hands everything to the system, and forgets it. Fails with the first error there was.
  Result<void, std::error_code> flush();

 private:
  static constexpr std::size_t capacity = std::size_t{1} << 17U;

  void appendInPieces(std::string_view characters);
  void appendOctal(char byte);

  std::FILE* file_;
  std::unique_ptr<char[]> buffer_;
  std::size_t size_ = 0;
  std::error_code error_;
};

}  // namespace pelmarix::lsbom
