// Output that several threads write in turn.
#pragma once

#include <atomic>
#include <charconv>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

namespace pelmarix::lsbom {

// Writes texts to a file in the order of their numbers, whoever has them ready first. The first error stays;
// after it nothing more is written.
class Output {
 public:
  // Room for a part of a text.
  using Buffer = std::unique_ptr<char[]>;
  static constexpr std::size_t bufferSize = std::size_t{1} << 17;

  // The file is not owned and must outlive the output.
  explicit Output(std::FILE* file) : file_(file) {}

  // Begins a text, in a buffer that is its own. Numbers begin at 0. Where many texts of smaller numbers have
  // not been written, this waits for them, so somebody must be at work on those.
  Buffer begin(std::size_t number);

  // Writes a piece of a text once all texts of smaller numbers are written.
  void write(std::size_t number, std::string_view piece);

  // Takes what is left of a text, which ends it. Waits for no other text; may write it, and those that have
  // ended ahead of their turn.
  void end(std::size_t number, Buffer buffer, std::size_t length);

  // Starts again with number 0, for another list, when all texts have ended. Hands what was written to the
  // system.
  void finish();

  // What the system said of the first write that failed, an errno value; 0 while none has.
  int error() const { return error_; }

 private:
  struct Ended {
    Buffer buffer;
    std::size_t length;
  };

  void put(std::string_view piece);

  std::FILE* file_;  // written without the mutex, by whoever works on the text whose turn it is
  std::atomic<int> error_ = 0;
  std::mutex mutex_;                    // guards what stands below
  std::condition_variable written_;     // some text is
  std::size_t turn_ = 0;                // the number of the text that may be written
  std::map<std::size_t, Ended> ended_;  // of texts whose turn has not come
  std::vector<Buffer> spare_;
};

// Puts one of an output's texts together, and writes it by and by.
class Text {
 public:
  Text(Output& output, std::size_t number)
      : output_(output), number_(number), buffer_(output.begin(number)) {}
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;

  ~Text() { output_.end(number_, std::move(buffer_), used_); }

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
  static constexpr std::size_t capacity = Output::bufferSize;
  static constexpr std::size_t mostDigits = 11;  // of 32 bits, in octal

  // Room for a piece of at most the buffer's capacity.
  char* room(std::size_t length) {
    if (capacity - used_ < length) {
      output_.write(number_, {buffer_.get(), used_});
      used_ = 0;
    }
    return buffer_.get() + used_;
  }

  Output& output_;
  std::size_t number_;
  Output::Buffer buffer_;
  std::size_t used_ = 0;
};

}  // namespace pelmarix::lsbom
