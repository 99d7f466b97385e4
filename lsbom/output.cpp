#include "lsbom/output.h"

#include <cerrno>

namespace pelmarix::lsbom {

void Output::appendInPieces(std::string_view text) {
  for (; text.size() > capacity; text.remove_prefix(capacity)) append(text.substr(0, capacity));
  append(text);
}

void Output::write() {
  if (error_ == 0 && std::fwrite(buffer_.data(), 1, used_, file_) != used_) error_ = errno;
  used_ = 0;
}

void Output::flush() {
  write();
  if (error_ == 0 && std::fflush(file_) != 0) error_ = errno;
}

}  // namespace pelmarix::lsbom
