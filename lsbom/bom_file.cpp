#include "lsbom/bom_file.h"

#include <algorithm>

#include "lsbom/store.h"
#include "posix/regular_file.h"

namespace pelmarix::lsbom {

Result<BomFile, std::error_code> BomFile::read(const std::string& path) {
  auto file = posix::RegularFile::open(path);
  if (!file) return file.error();
  if (file->size() > posix::RegularFile::maximumSize) return std::make_error_code(std::errc::file_too_large);

  auto beginning = std::make_unique<char[]>(storeMagic.size());
  const auto begun = file->read(beginning.get(), storeMagic.size());
  if (!begun) return begun.error();
  if (std::string_view(beginning.get(), *begun) != storeMagic) return BomFile(std::move(beginning), *begun);

  // Not cleared first: all of it that is used is read into.
  const std::size_t size = std::max(static_cast<std::size_t>(file->size()), *begun);
  std::unique_ptr<char[]> bytes(new char[size]);
  std::copy_n(beginning.get(), *begun, bytes.get());
  const auto rest = file->read(bytes.get() + *begun, size - *begun);
  if (!rest) return rest.error();
  return BomFile(std::move(bytes), *begun + *rest);
}

}  // namespace pelmarix::lsbom
