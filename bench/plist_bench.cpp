// Decoding an install history of 100,000 entries into owned records, beside libplist doing the same to the
// same bytes.
#include <benchmark/benchmark.h>
#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "bench/history_records.h"
#include "sample/install_history.h"

namespace pelmarix::bench {
namespace {

constexpr std::size_t entries = 100000;

const std::string& xml() {
  static const std::string bytes = sample::xmlForm(sample::installHistory(entries));
  return bytes;
}

const std::string& binary() {
  static const std::string bytes = sample::binaryForm(sample::installHistory(entries));
  return bytes;
}

std::optional<std::string> textOf(plist_t entry, const char* key) {
  const plist_t node = plist_dict_get_item(entry, key);
  if (node == nullptr || plist_get_node_type(node) != PLIST_STRING) return std::nullopt;
  std::uint64_t length = 0;
  const char* const text = plist_get_string_ptr(node, &length);
  return std::string(text, length);
}

std::vector<Record> recordsOf(plist_t root) {
  std::vector<Record> records;
  records.reserve(plist_array_get_size(root));
  plist_array_iter iterator = nullptr;
  plist_array_new_iter(root, &iterator);
  for (;;) {
    plist_t entry = nullptr;
    plist_array_next_item(root, iterator, &entry);
    if (entry == nullptr) break;
    std::int32_t seconds = 0;
    std::int32_t microseconds = 0;
    plist_get_date_val(plist_dict_get_item(entry, "date"), &seconds, &microseconds);
    records.push_back({textOf(entry, "contentType"), Date{static_cast<double>(seconds) + microseconds * 1e-6},
                       textOf(entry, "displayName").value(), textOf(entry, "displayVersion").value()});
  }
  std::free(iterator);
  return records;
}

void check(const std::vector<Record>& records, benchmark::State& state) {
  if (records.size() != entries) state.SkipWithError("not all entries were decoded");
}

void ours(benchmark::State& state, const std::string& bytes) {
  while (state.KeepRunning()) check(decodeRecords(bytes), state);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

using Parse = void (*)(const char*, std::uint32_t, plist_t*);

void theirs(benchmark::State& state, const std::string& bytes, Parse parse) {
  while (state.KeepRunning()) {
    plist_t root = nullptr;
    parse(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root);
    check(recordsOf(root), state);
    plist_free(root);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

void xmlOurs(benchmark::State& state) { ours(state, xml()); }
void xmlLibplist(benchmark::State& state) { theirs(state, xml(), plist_from_xml); }
void binaryOurs(benchmark::State& state) { ours(state, binary()); }
void binaryLibplist(benchmark::State& state) { theirs(state, binary(), plist_from_bin); }

BENCHMARK(xmlOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(xmlLibplist)->Unit(benchmark::kMillisecond);
BENCHMARK(binaryOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(binaryLibplist)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace pelmarix::bench

BENCHMARK_MAIN();
