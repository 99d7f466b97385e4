// Buffered output to a file, with the numbers of a listing.
#pragma once

#include <charconv>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <vector>

namespace pelmarix::lsbom {

// Nothing is written to the file but by flush() and by a full buffer. The first error stays; after it nothing
// more is written.
class Output {
 public:
  // The file is not owned and must outlive the output.
  explicit Output(std::FILE* file) : file_(file), buffer_(capacity) {}

  void append(char character) {
    *room(1) = character;
    ++used_;
  }

  void append(std::string_view text) {
    if (text.size() > capacity) {
      appendInPieces(text);
      return;
    }
    std::memcpy(room(text.size()), text.data(), text.size());
    used_ += text.size();
  }

  void appendNumber(std::uint32_t number, int base = 10) {
    char* const begin = room(maximumDigits);
    used_ += static_cast<std::size_t>(std::to_chars(begin, begin + maximumDigits, number, base).ptr - begin);
  }

  // Hands everything to the file, and the file's own buffer to the system.
  void flush();

  // What the system said of the first write that failed, an errno value; 0 while none has.
  int error() const { return error_; }

 private:
  static constexpr std::size_t capacity = std::size_t{1} << 17;
  static constexpr std::size_t maximumDigits = 11;  // 32 bits in octal

  // Room for a text of at most the buffer's capacity.
  char* room(std::size_t length) {
    if (capacity - used_ < length) write();
    return buffer_.data() + used_;
  }

  void appendInPieces(std::string_view text);
  void write();

  std::FILE* file_;
  std::vector<char> buffer_;
  std::size_t used_ = 0;
  int error_ = 0;
};

}  // namespace pelmarix::lsbom
