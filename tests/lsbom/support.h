// What several tests of the lister share.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include "lsbom/bill_of_materials.h"
#include "lsbom/listing.h"

namespace pelmarix::lsbom {

// A file without a name that goes away with this object.
class TemporaryFile {
 public:
  TemporaryFile() = default;
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { std::fclose(file_); }

  std::FILE* get() const { return file_; }

  std::string content() const {
    std::string text(static_cast<std::size_t>(std::ftell(file_)), '\0');
    std::rewind(file_);
    text.resize(std::fread(text.data(), 1, text.size(), file_));
    return text;
  }

 private:
  std::FILE* file_ = std::tmpfile();
};

// The listing of a file's bytes; the sentence of the fault where they are no bill of materials.
inline std::string listingOf(std::string_view bytes, const ListOptions& options = {},
                             const AccountNames& names = {}) {
  BillOfMaterials bill;
  if (const Failure failure = bill.read(bytes)) return std::string(describe(failure.fault));
  const TemporaryFile file;
  Output output(file.get());
  list(bill, options, names, output);
  return file.content();
}

}  // namespace pelmarix::lsbom
