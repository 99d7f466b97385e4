// The lister on a bom of 400,000 paths beside the system's sort of the same listing, each as a program of its
// own on one thread. The lister is to take no longer than sort.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "bench/paired_times.h"
#include "sample/bom_writer.h"
#include "sample/package_contents.h"

namespace pelmarix::bench {
namespace {

constexpr std::size_t pathCount = 400000;

void runShell(const std::string& command) {
  if (std::system(command.c_str()) != 0) std::abort();
}

void listerBesideSort(benchmark::State& state) {
  const std::filesystem::path folder = std::filesystem::temp_directory_path();
  const std::string bom = folder / "pelmarix-bench.bom";
  const std::string listing = folder / "pelmarix-bench.txt";
  std::ofstream(bom, std::ios::binary) << sample::writeBillOfMaterials(sample::manyBomEntries(pathCount));
  const std::string list = PELMARIX_LSBOM " -f -p fsT '" + bom + "' > ";
  runShell(list + "'" + listing + "'");

  Times lister;
  Times sort;
  while (state.KeepRunning()) {
    lister.take([&] { runShell(list + "/dev/null"); });
    sort.take([&] { runShell("LC_ALL=C sort --parallel=1 '" + listing + "' > /dev/null"); });
  }
  state.counters["lister_ms"] = lister.median() * 1e3;
  state.counters["sort_ms"] = sort.median() * 1e3;
  state.counters["ratio"] = lister.median() / sort.median();
  std::filesystem::remove(bom);
  std::filesystem::remove(listing);
}
BENCHMARK(listerBesideSort)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(5.0);

}  // namespace
}  // namespace pelmarix::bench

BENCHMARK_MAIN();
