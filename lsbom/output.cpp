#include "lsbom/output.h"

#include <charconv>

#include "posix/file_descriptor.h"

namespace pelmarix::lsbom {

Output::Output(std::FILE* file) : file_(file) { buffer_.reserve(capacity + 1024); }

void Output::appendNumber(std::uint32_t number, int base) {
  char digits[11];  // of 32 bits, in octal
  buffer_.append(digits, std::to_chars(digits, std::end(digits), number, base).ptr);
}

Result<void, std::error_code> Output::flush() {
  const bool written = std::fwrite(buffer_.data(), 1, buffer_.size(), file_) == buffer_.size();
  buffer_.clear();
  if (!written || std::fflush(file_) != 0) return posix::lastSystemError();
  return {};
}

}  // namespace pelmarix::lsbom
