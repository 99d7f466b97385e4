// The content of a file.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace pelmarix::lsbom {

class FileBytes {
 public:
  // Reads a whole file, or whatever else a path can name that has an end. Gives 0 or an errno value.
  int read(const std::string& path);

  // Valid until the next read.
  std::string_view bytes() const { return {data_.get(), size_}; }

 private:
  int readToEnd(std::FILE* file);
  int readSlices(const std::string& path, std::size_t size);
  void reserve(std::size_t capacity);

  std::unique_ptr<char[]> data_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace pelmarix::lsbom
