#include "lsbom/file_bytes.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "lsbom/bill_of_materials.h"

namespace pelmarix::lsbom {
namespace {

struct Close {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

int FileBytes::read(const std::string& path) {
  data_.reset();
  size_ = capacity_ = 0;
  const std::unique_ptr<std::FILE, Close> file(std::fopen(path.c_str(), "rb"));
  if (!file) return errno;
  std::setvbuf(file.get(), nullptr, _IONBF, 0);

  // The size is a guess that spares copies: a pipe has none. One byte more than it makes the last read see
  // the end.
  std::error_code noSize;
  const std::uintmax_t size = std::filesystem::file_size(path, noSize);
  reserve(noSize ? 0 : std::min<std::uintmax_t>(size, largestFile) + 1);
  for (;;) {
    const std::size_t count = std::fread(data_.get() + size_, 1, capacity_ - size_, file.get());
    size_ += count;
    if (std::ferror(file.get()) != 0) return errno;
    if (size_ < capacity_) return 0;
    if (size_ > largestFile) return EFBIG;
    reserve(2 * capacity_);
  }
}

// Memory that is not cleared first: all of it that is used is read into.
void FileBytes::reserve(std::size_t capacity) {
  capacity_ = std::max<std::size_t>(capacity, std::size_t{1} << 16);
  std::unique_ptr<char[]> data(new char[capacity_]);
  if (size_ > 0) std::memcpy(data.get(), data_.get(), size_);
  data_ = std::move(data);
}

}  // namespace pelmarix::lsbom
