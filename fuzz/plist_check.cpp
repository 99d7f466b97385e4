#include "fuzz/plist_check.h"

#include <cstdlib>

#include "base/utf8.h"
#include "plist/document.h"
#include "tests/support/heap_meter.h"

namespace pelmarix::plist {
namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

void checkValue(Value value, std::size_t depth, std::size_t& visits) {
  if (visits == 0) return;
  --visits;
  require(depth <= 512 || value.type() < Type::array);
  if (const auto text = value.string()) require(isValidUtf8(*text));
  require(value.data().has_value() == (value.type() == Type::data));
  require(value.type() != Type::integer || value.integer() || value.unsignedInteger());
  std::size_t count = 0;
  for (const Value element : value.elements()) {
    checkValue(element, depth + 1, visits);
    ++count;
  }
  for (const Entry entry : value.entries()) {
    require(isValidUtf8(entry.key));
    checkValue(entry.value, depth + 1, visits);
    ++count;
  }
  require(count == value.count());
}

}  // namespace

void check(std::string_view bytes) {
  const HeapMeter heap;
  const Result<Document, Error> document = Document::decode(bytes);
  require(heap.peak() <= 64 * bytes.size() + 1048576);
  if (document) {
    // A binary file may hold one value in more places than could ever be visited.
    std::size_t visits = 16 * bytes.size();
    checkValue(document->root(), 1, visits);
  } else {
    // A byte of ISO-8859-1 becomes two bytes of UTF-8, or one.
    require(document.error().offset <= 2 * bytes.size());
    require(!description(document.error()).empty());
  }
}

}  // namespace pelmarix::plist
