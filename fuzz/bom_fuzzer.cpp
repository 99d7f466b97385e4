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

void checkFailure(const BillOfMaterials& bill, const Failure& failure) {
  require(bill.size() == 0);
  require(!describe(failure.fault).empty());
}

void checkEntries(const BillOfMaterials& bill, std::string_view bytes) {
  const auto isInside = [bytes](std::string_view text) {
    return text.empty() ||
           (text.data() >= bytes.data() && text.data() + text.size() <= bytes.data() + bytes.size());
  };
  std::vector<Entry> above;  // the entry ahead and what stands above that
  for (std::size_t i = 0; i < bill.size(); ++i) {
    const Entry entry = bill.entry(i);
    require(isInside(entry.name) && isInside(entry.record.linkTarget) && isInside(entry.record.programParts));
    require(entry.name.find('\0') == std::string_view::npos);
    require(entry.id != 0 && bill.entryWithId(entry.id).name.data() == entry.name.data());
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
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  BillOfMaterials bill;
  if (const Failure failure = bill.read(bytes)) {
    checkFailure(bill, failure);
    return 0;
  }
  checkEntries(bill, bytes);
  const AccountNames names{Accounts(bytes), Accounts(bytes)};
  std::rewind(sink);
  Output output(sink);
  list(bill, {.modificationTimes = true, .processor = 7}, names, output);
  list(bill, {.files = true, .columns = {columnLetters.begin(), columnLetters.end()}}, names, output);
  require(output.error() == 0);
  return 0;
}
