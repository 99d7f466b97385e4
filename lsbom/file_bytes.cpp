#include "lsbom/file_bytes.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "lsbom/bill_of_materials.h"
#include "lsbom/parallel.h"

namespace pelmarix::lsbom {
namespace {

// A file of several slices of this length is read by several threads: half of the time goes into fresh
// memory.
constexpr std::size_t sliceLength = std::size_t{1} << 20;

struct Close {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

using File = std::unique_ptr<std::FILE, Close>;

File openFile(const std::string& path) {
  File file(std::fopen(path.c_str(), "rb"));
  if (file) std::setvbuf(file.get(), nullptr, _IONBF, 0);
  return file;
}

// Reads bytes that are known to be there. Gives 0 or an errno value.
int readSlice(const std::string& path, std::size_t offset, char* to, std::size_t length) {
  const File file = openFile(path);
  if (!file || std::fseek(file.get(), static_cast<long>(offset), SEEK_SET) != 0) return errno;
  if (std::fread(to, 1, length, file.get()) == length) return 0;
  return std::ferror(file.get()) != 0 ? errno : EIO;  // the file has become shorter
}

}  // namespace

int FileBytes::read(const std::string& path) {
  size_ = 0;
  const File file = openFile(path);
  if (!file) return errno;
  std::error_code noSize;
  const std::uintmax_t size = std::filesystem::file_size(path, noSize);
  if (!noSize && size > largestFile) return EFBIG;
  return !noSize && size > sliceLength ? readSlices(path, size) : readToEnd(file.get());
}

int FileBytes::readSlices(const std::string& path, std::size_t size) {
  reserve(size);
  std::atomic<int> error = 0;
  inParallel(size, sliceLength, [&](std::size_t begin, std::size_t end) {
    const int failure = readSlice(path, begin, data_.get() + begin, end - begin);
    if (failure != 0) error = failure;
  });
  if (error == 0) size_ = size;
  return error;
}

int FileBytes::readToEnd(std::FILE* file) {
  reserve(sliceLength);
  for (;;) {
    size_ += std::fread(data_.get() + size_, 1, capacity_ - size_, file);
    if (std::ferror(file) != 0) return errno;
    if (size_ < capacity_) return 0;
    if (size_ > largestFile) return EFBIG;
    reserve(2 * capacity_);
  }
}

// Memory that is not cleared first: all of it that is used is read into.
void FileBytes::reserve(std::size_t capacity) {
  std::unique_ptr<char[]> data(new char[capacity]);
  if (size_ > 0) std::memcpy(data.get(), data_.get(), size_);
  data_ = std::move(data);
  capacity_ = capacity;
}

}  // namespace pelmarix::lsbom
