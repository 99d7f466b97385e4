// Output that several threads write in turn.
#pragma once

#include <atomic>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

namespace pelmarix::lsbom {

// Writes texts to a file in the order of their numbers, whoever has them ready first. The first error stays;
// after it nothing more is written.
class Output {
 public:
  // The file is not owned and must outlive the output.
  explicit Output(std::FILE* file) : file_(file) {}

  // Writes a piece of a text once all texts of smaller numbers have ended. Numbers begin at 0.
  void write(std::size_t number, std::string_view piece);

  // Ends a text, once those of smaller numbers have ended. The same number may not be written again.
  void end(std::size_t number);

  // Starts again with number 0, for another list. Hands all that was written to the system.
  void finish();

  // What the system said of the first write that failed, an errno value; 0 while none has.
  int error() const { return error_; }

 private:
  void waitForTurn(std::size_t number) const;

  std::FILE* file_;
  std::atomic<std::size_t> turn_ = 0;
  std::atomic<int> error_ = 0;
};

// Puts one of an output's texts together, and writes it by and by.
class Text {
 public:
  Text(Output& output, std::size_t number) : output_(output), number_(number), buffer_(new char[capacity]) {}
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;

  // Writes what is left and ends the text.
  ~Text();

  void append(char character) {
    *room(1) = character;
    ++used_;
  }

  void append(std::string_view text) {
    for (; text.size() > capacity; text.remove_prefix(capacity)) append(text.substr(0, capacity));
    std::memcpy(room(text.size()), text.data(), text.size());
    used_ += text.size();
  }

  void appendNumber(std::uint32_t number, int base = 10) {
    char* const begin = room(mostDigits);
    used_ += static_cast<std::size_t>(std::to_chars(begin, begin + mostDigits, number, base).ptr - begin);
  }

 private:
  static constexpr std::size_t capacity = std::size_t{1} << 18;
  static constexpr std::size_t mostDigits = 11;  // of 32 bits, in octal

  // Room for a piece of at most the buffer's capacity.
  char* room(std::size_t length) {
    if (capacity - used_ < length) write();
    return buffer_.get() + used_;
  }

  void write();

  Output& output_;
  std::size_t number_;
  std::unique_ptr<char[]> buffer_;
  std::size_t used_ = 0;
};

}  // namespace pelmarix::lsbom
