// The scan of 5,000 receipts beside plain open, read to the end and close of the same files, all of them in
// the system's cache.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/paired_times.h"
#include "platform/services.h"
#include "posix/posix_file_manager.h"
#include "receipts/bom.h"
#include "sample/receipts.h"

namespace {

using pelmarix::BoM;
using pelmarix::receiptsFolder;
using pelmarix::bench::median;
using pelmarix::bench::secondsFor;

constexpr std::size_t receiptCount = 5000;

/// A volume with nothing but receipts, removed at the end.
class Volume {
 public:
  Volume() {
    std::string name = (std::filesystem::temp_directory_path() / "pelmarix-bench-XXXXXX").native();
    if (mkdtemp(name.data()) == nullptr) std::abort();
    root_ = name;
    for (const auto& receipt : pelmarix::sample::receipts(receiptCount)) {
      const std::filesystem::path file = root_ + receiptsFolder + receipt.stem + ".plist";
      std::filesystem::create_directories(file.parent_path());
      std::ofstream(file, std::ios::binary) << pelmarix::sample::propertyListFile(receipt);
    }
    pelmarix::posix::PosixFileManager files{pelmarix::posix::Volume(root_)};
    const auto enumerator = files.enumeratorAtPath(receiptsFolder);
    while (const auto entry = enumerator->nextObject())
      if (entry->ends_with(".plist")) files_.push_back(root_ + receiptsFolder + std::string(*entry));
  }
  ~Volume() { std::filesystem::remove_all(root_); }
  Volume(const Volume&) = delete;
  Volume& operator=(const Volume&) = delete;

  const std::string& root() const { return root_; }
  /// The receipts by absolute path, in the order of the scan.
  const std::vector<std::string>& files() const { return files_; }

 private:
  std::string root_;
  std::vector<std::string> files_;
};

const Volume& volume() {
  static const Volume receipts;
  return receipts;
}

void readPlainly() {
  static std::array<char, 65536> bytes;
  for (const std::string& file : volume().files()) {
    const int descriptor = open(file.c_str(), O_RDONLY);
    while (read(descriptor, bytes.data(), bytes.size()) > 0) benchmark::DoNotOptimize(bytes);
    close(descriptor);
  }
}

void scanBesidePlainReading(benchmark::State& state) {
  pelmarix::posix::PosixFileManager files{pelmarix::posix::Volume(volume().root())};
  pelmarix::platform::Services services;
  services.fileManager = &files;
  const pelmarix::platform::Services* const previous = pelmarix::platform::installServices(&services);
  std::vector<double> plain;
  std::vector<double> scanned;
  while (state.KeepRunning()) {
    BoM receipts;
    plain.push_back(secondsFor(readPlainly));
    scanned.push_back(secondsFor([&] { receipts.readBoMPLists(); }));
    if (receipts.children.size() != receiptCount) state.SkipWithError("receipts are missing");
  }
  pelmarix::platform::installServices(previous);
  constexpr double microseconds = 1e6 / receiptCount;
  state.counters["plain_us_per_file"] = median(plain) * microseconds;
  state.counters["scan_us_per_file"] = median(scanned) * microseconds;
  state.counters["ratio"] = median(scanned) / median(plain);
}
BENCHMARK(scanBesidePlainReading)->Unit(benchmark::kMillisecond)->MinTime(3.0);

}  // namespace

BENCHMARK_MAIN();
