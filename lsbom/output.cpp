#include "lsbom/output.h"

#include <charconv>
#include <iterator>

#include "base/utf8.h"
#include "posix/file_descriptor.h"

namespace pelmarix::lsbom {

// Not cleared first: all of it that is used is written to.
Output::Output(std::FILE* file) : file_(file), buffer_(new char[capacity]) {}

void Output::appendInPieces(std::string_view characters) {
  while (!characters.empty()) {
    if (size_ == capacity && !flush()) return;
    const std::string_view piece = characters.substr(0, capacity - size_);
    append(piece);
    characters.remove_prefix(piece.size());
  }
}

void Output::appendNumber(std::uint32_t number, int base) {
  char digits[11];  // of 32 bits, in octal
  const char* const end = std::to_chars(digits, std::end(digits), number, base).ptr;
  append({digits, static_cast<std::size_t>(end - digits)});
}

void Output::appendOctal(char byte) {
  const auto number = static_cast<unsigned char>(byte);
  const char digits[] = {'\\', static_cast<char>('0' + number / 64), static_cast<char>('0' + number / 8 % 8),
                         static_cast<char>('0' + number % 8)};
  append({digits, sizeof digits});
}

void Output::appendText(std::string_view text) {
  for (const char *first = text.data(), *const last = first + text.size();; ++first) {
    const char* const invalid = findInvalidUtf8(first, last);
    append({first, static_cast<std::size_t>(invalid - first)});
    if (invalid == last) return;
    appendOctal(*invalid);
    first = invalid;
  }
}

void Output::appendQuoted(std::string_view text) {
  append('"');
  const char* const last = text.data() + text.size();
  const char* invalid = findInvalidUtf8(text.data(), last);
  for (const char* at = text.data(); at != last; ++at) {
    const auto byte = static_cast<unsigned char>(*at);
    if (at == invalid || byte < 0x20 || byte == 0x7F) {
      appendOctal(*at);
      if (at == invalid) invalid = findInvalidUtf8(at + 1, last);
    } else {
      if (*at == '"' || *at == '\\') append('\\');
      append(*at);
    }
  }
  append('"');
}

Result<void, std::error_code> Output::flush() {
  if (error_) return error_;
  const bool written = std::fwrite(buffer_.get(), 1, size_, file_) == size_;
  size_ = 0;
  if (!written || std::fflush(file_) != 0) error_ = posix::lastSystemError();
  if (error_) return error_;
  return {};
}

}  // namespace pelmarix::lsbom
