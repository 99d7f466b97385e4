// Reads a range of bytes from its front. Numbers are big-endian.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace pelmarix::lsbom {

/// Every read takes its bytes or fails. After a failure the cursor stays failed, and what it gives are zeros
/// and empty ranges, so several reads can share one check.
class Cursor {
 public:
  explicit Cursor(std::string_view bytes) : rest_(bytes) {}

  bool ok() const { return ok_; }
  std::string_view rest() const { return rest_; }

  std::string_view take(std::size_t length) {
    if (length > rest_.size()) {
      ok_ = false;
      rest_ = {};
      return {};
    }
    const std::string_view taken = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return taken;
  }

  std::uint8_t u8() {
    const std::string_view bytes = take(1);
    return static_cast<std::uint8_t>(bytes.empty() ? 0 : at(bytes, 0));
  }

  std::uint16_t u16() {
    const std::string_view bytes = take(2);
    return static_cast<std::uint16_t>(bytes.empty() ? 0 : at(bytes, 0) << 8 | at(bytes, 1));
  }

  /// Spelled out, so that compilers make one load of it.
  std::uint32_t u32() {
    const std::string_view bytes = take(4);
    return bytes.empty() ? 0 : at(bytes, 0) << 24 | at(bytes, 1) << 16 | at(bytes, 2) << 8 | at(bytes, 3);
  }

 private:
  static std::uint32_t at(std::string_view bytes, std::size_t index) {
    return static_cast<unsigned char>(bytes[index]);
  }

  std::string_view rest_;
  bool ok_ = true;
};

}  // namespace pelmarix::lsbom
