// Reads and lists whatever bytes there are, and checks what the reader promises of its result.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "lsbom/bill_of_materials.h"
#include "lsbom/listing.h"

using namespace pelmarix::lsbom;

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

void checkEntries(const BillOfMaterials& bom, std::string_view bytes) {
  const auto isInside = [bytes](std::string_view part) {
    return part.empty() ||
           (part.data() >= bytes.data() && part.data() + part.size() <= bytes.data() + bytes.size());
  };
  std::vector<Entry> above;  // the entry ahead and what stands above that
  for (std::size_t i = 0; i < bom.size(); ++i) {
    const Entry entry = bom.entry(i);
    require(isInside(entry.name) && isInside(entry.record.linkTarget) && isInside(entry.record.programParts));
    require(entry.name.find('\0') == std::string_view::npos);
    require(entry.id != 0);
    std::string_view sibling;  // the one ahead
    for (; !above.empty() && above.back().id != entry.parent; above.pop_back()) sibling = above.back().name;
    require(above.empty() == (entry.parent == 0));
    require(entry.name >= sibling);
    above.push_back(entry);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static std::FILE* const sink = std::tmpfile();
  require(sink != nullptr);
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto bom = BillOfMaterials::read(bytes);
  if (!bom) {
    require(!describe(bom.error().fault).empty());
    require(bom.error().offset <= UINT32_MAX);
    return 0;
  }
  checkEntries(*bom, bytes);
  const AccountNames names{Accounts(bytes), Accounts(bytes)};
  std::rewind(sink);
  Output output(sink);
  require(bool{list(*bom, {.modificationTimes = true, .architecture = 7}, names, output)});
  require(bool{
      list(*bom, {.files = true, .columns = {columnLetters.begin(), columnLetters.end()}}, names, output)});
  return 0;
}
