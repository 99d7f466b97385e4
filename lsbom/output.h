// What the lister writes its lines with.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <system_error>

#include "base/result.h"

namespace pelmarix::lsbom {

/// Writes to a file through a buffer of its own, which grows until it is flushed.
class Output {
 public:
  /// The file is not owned and must outlive the output.
  explicit Output(std::FILE* file);

  void append(char character) { buffer_ += character; }
  void append(std::string_view characters) { buffer_ += characters; }
  void appendNumber(std::uint32_t number, int base = 10);

  /// True when it is time to flush.
  bool isFull() const { return buffer_.size() >= capacity; }

  /// Hands everything to the system, and forgets it.
  Result<void, std::error_code> flush();

 private:
  static constexpr std::size_t capacity = std::size_t{1} << 17U;

  std::FILE* file_;
  std::string buffer_;
};

}  // namespace pelmarix::lsbom
