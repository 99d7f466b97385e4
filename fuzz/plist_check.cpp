#include "fuzz/plist_check.h"

#include <cstdlib>
#include <optional>
#include <vector>

#include "base/utf8.h"
#include "plist/document.h"
#include "tests/plist/heap_meter.h"

namespace pelmarix::plist {
namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

void checkText(std::string_view text) { require(isValidUtf8(text)); }

void checkValues(const Document& document) {
  std::vector<bool> isSeen(document.valueCount());
  std::vector<Value> waiting{document.root()};
  while (!waiting.empty()) {
    const Value value = waiting.back();
    waiting.pop_back();
    if (isSeen.at(value.identity())) continue;
    isSeen[value.identity()] = true;

    if (const auto text = value.string()) checkText(*text);
    require(value.data().has_value() == (value.type() == Type::data));
    require(value.type() != Type::integer || value.integer() || value.unsignedInteger());
    std::size_t count = 0;
    for (const Value element : value.elements()) {
      waiting.push_back(element);
      ++count;
    }
    for (const Entry entry : value.entries()) {
      checkText(entry.key);
      waiting.push_back(entry.value);
      ++count;
    }
    require(count == value.count());
  }
}

}  // namespace

void check(std::string_view bytes) {
  const HeapMeter heap;
  const Result<Document, Error> document = Document::decode(bytes);
  require(heap.peak() <= 64 * bytes.size() + 1048576);
  if (document) {
    checkValues(*document);
  } else {
    // UTF-16 takes up to three bytes of UTF-8 for two of its own.
    require(document.error().offset <= 2 * bytes.size());
    require(!description(document.error()).empty());
  }
}

}  // namespace pelmarix::plist
