// The scan of 5,000 receipts beside opening the same files, reading them to their end and closing them, all
// of them in the system's cache. The ratio is to be at most 1.5.
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

namespace pelmarix::bench {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t receiptCount = 5000;

// A volume with nothing but receipts, removed at the end.
class ReceiptsVolume {
 public:
  ReceiptsVolume() {
    root_ = fs::temp_directory_path() / "pelmarix-bench-XXXXXX";
    if (mkdtemp(root_.data()) == nullptr) std::abort();
    for (const sample::Receipt& receipt : sample::receipts(receiptCount)) {
      const fs::path file = root_ + receiptsFolder + receipt.stem + ".plist";
      fs::create_directories(file.parent_path());
      std::ofstream(file, std::ios::binary) << sample::propertyListFile(receipt);
    }
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root_)) {
      if (entry.is_regular_file()) files_.push_back(entry.path());
    }
  }
  ~ReceiptsVolume() { fs::remove_all(root_); }
  ReceiptsVolume(const ReceiptsVolume&) = delete;
  ReceiptsVolume& operator=(const ReceiptsVolume&) = delete;

  const std::string& root() const { return root_; }
  // Of the receipts, in the order of their folder.
  const std::vector<std::string>& files() const { return files_; }

 private:
  std::string root_;
  std::vector<std::string> files_;
};

void readPlainly(const std::vector<std::string>& files) {
  static std::array<char, 65536> bytes;
  for (const std::string& file : files) {
    const int descriptor = open(file.c_str(), O_RDONLY);
    while (read(descriptor, bytes.data(), bytes.size()) > 0) benchmark::DoNotOptimize(bytes);
    close(descriptor);
  }
}

void scanBesidePlainReading(benchmark::State& state) {
  static const ReceiptsVolume volume;  // this function runs several times
  posix::PosixFileManager files{posix::Volume(volume.root())};
  platform::Services services;
  services.fileManager = &files;
  platform::installServices(&services);
  Times plain;
  Times scan;
  while (state.KeepRunning()) {
    BoM receipts;
    plain.take([] { readPlainly(volume.files()); });
    scan.take([&] { receipts.readBoMPLists(); });
    if (receipts.children.size() != receiptCount) state.SkipWithError("receipts are missing");
  }
  platform::installServices(nullptr);
  constexpr double microseconds = 1e6 / receiptCount;
  state.counters["plain_us_per_file"] = plain.median() * microseconds;
  state.counters["scan_us_per_file"] = scan.median() * microseconds;
  state.counters["ratio"] = scan.median() / plain.median();
}
BENCHMARK(scanBesidePlainReading)->Unit(benchmark::kMillisecond)->MinTime(3.0);

}  // namespace
}  // namespace pelmarix::bench

BENCHMARK_MAIN();
