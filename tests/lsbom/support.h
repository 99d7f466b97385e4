// What several tests of the lister share.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include "lsbom/bill_of_materials.h"
#include "lsbom/listing.h"

namespace pelmarix::lsbom {

/// A file without a name that goes away with this object.
class TemporaryFile {
 public:
  TemporaryFile() = default;
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { std::fclose(file_); }

  std::FILE* get() const { return file_; }

  std::string content() const {
    std::string bytes(static_cast<std::size_t>(std::ftell(file_)), '\0');
    std::rewind(file_);
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file_));
    return bytes;
  }

 private:
  std::FILE* file_ = std::tmpfile();
};

/// The listing of a file's bytes, or what went wrong.
inline std::string listingOf(std::string_view bytes, const ListOptions& options = {},
                             const AccountNames& names = {}) {
  const auto bom = BillOfMaterials::read(bytes);
  if (!bom) return std::string(describe(bom.error().fault));
  const TemporaryFile file;
  Output output(file.get());
  const auto listed = list(*bom, options, names, output);
  return listed ? file.content() : listed.error().message();
}

}  // namespace pelmarix::lsbom
