// Lists a bill of materials of 400,000 paths, beside what any program must do for that: read the file, and
// write as many bytes as the listing has.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "lsbom/bom_file.h"
#include "lsbom/command_line.h"
#include "sample/bom_writer.h"
#include "sample/package_contents.h"

namespace {

using namespace pelmarix::lsbom;

constexpr std::size_t pathCount = 400000;

// The bom and the listing of it, as files that go away at the end.
class Files {
 public:
  Files() {
    const std::string bytes =
        pelmarix::sample::writeBillOfMaterials(pelmarix::sample::manyBomEntries(pathCount));
    std::ofstream(bom, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;
  ~Files() {
    std::filesystem::remove(bom);
    std::filesystem::remove(listing);
  }

  const std::string bom = std::filesystem::temp_directory_path() / "pelmarix-bench.bom";
  const std::string listing = std::filesystem::temp_directory_path() / "pelmarix-bench.txt";
};

const Files& files() {
  static const Files theFiles;
  return theFiles;
}

std::int64_t listingSize() { return static_cast<std::int64_t>(std::filesystem::file_size(files().listing)); }

void makeListing(const std::vector<std::string>& arguments) {
  std::FILE* const output = std::fopen(files().listing.c_str(), "wb");
  if (output == nullptr || run(arguments, {}, output, stderr) != exitSuccess) std::abort();
  std::fclose(output);
}

void listBom(benchmark::State& state) {
  makeListing({"-f", "-p", "fsT", files().bom});  // makes the files as well
  while (state.KeepRunning()) makeListing({"-f", "-p", "fsT", files().bom});
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(pathCount));
  state.SetBytesProcessed(state.iterations() * listingSize());
}
BENCHMARK(listBom)->Unit(benchmark::kMillisecond)->UseRealTime();

void readBom(benchmark::State& state) {
  std::size_t size = 0;
  while (state.KeepRunning()) {
    const auto file = BomFile::read(files().bom);
    if (!file) std::abort();
    size = file->bytes().size();
    benchmark::DoNotOptimize(file->bytes().data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}
BENCHMARK(readBom)->Unit(benchmark::kMillisecond)->UseRealTime();

void writeListing(benchmark::State& state) {
  makeListing({"-f", "-p", "fsT", files().bom});
  const std::string block(1 << 18, 'x');
  const auto size = static_cast<std::size_t>(listingSize());
  while (state.KeepRunning()) {
    std::FILE* const output = std::fopen(files().listing.c_str(), "wb");
    if (output == nullptr) std::abort();
    for (std::size_t left = size; left > 0;)
      left -= std::fwrite(block.data(), 1, std::min(left, block.size()), output);
    std::fclose(output);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}
BENCHMARK(writeListing)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
