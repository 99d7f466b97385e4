// The search for a file in all packages beside a loop of the shell over their bills of materials, which pipes
// the lister's output into grep. Made of the window's own controller and children, without a window. The
// ratios are to be at most 0.6, with a large bill among the others 1.1.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "bench/paired_times.h"
#include "qt/services/machine_services.h"
#include "sample/bom_writer.h"
#include "sample/package_contents.h"
#include "ui/file_search_controller.h"

namespace pelmarix::bench {
namespace {

namespace fs = std::filesystem;

constexpr const char* sought = "contents/info.plist";

// A folder of bills of materials, removed at the end.
class Packages {
 public:
  explicit Packages(const std::vector<std::size_t>& pathCounts) {
    folder_ = fs::temp_directory_path() / "pelmarix-bench-XXXXXX";
    if (mkdtemp(folder_.data()) == nullptr) std::abort();
    std::size_t lastCount = 0;
    std::string bytes;
    for (const std::size_t count : pathCounts) {
      if (count != lastCount) bytes = sample::writeBillOfMaterials(sample::manyBomEntries(count));
      lastCount = count;
      const std::string stem = folder_ + "/" + std::to_string(items_.size());
      std::ofstream(stem + ".bom", std::ios::binary) << bytes;
      items_.push_back(
          std::make_shared<BoMItem>("com.example." + std::to_string(items_.size()), Date{0}, stem));
    }
  }
  ~Packages() { fs::remove_all(folder_); }
  Packages(const Packages&) = delete;
  Packages& operator=(const Packages&) = delete;

  const std::string& folder() const { return folder_; }
  const std::vector<std::shared_ptr<BoMItem>>& items() const { return items_; }

 private:
  std::string folder_;
  std::vector<std::shared_ptr<BoMItem>> items_;
};

// Names no columns: nothing is shown.
class NoTable final : public platform::TableView {
 public:
  platform::View* makeViewWithIdentifier(const std::string& /*identifier*/) override { return nullptr; }
  void reloadData() override {}
  std::ptrdiff_t selectedRow() const override { return -1; }
  void selectRow(std::ptrdiff_t /*row*/) override {}
  const std::vector<platform::TableColumn*>& tableColumns() const override { return columns_; }

 private:
  std::vector<platform::TableColumn*> columns_;
};

// Returns the longest time that one round of the event loop took, in seconds.
double search(const Packages& packages, std::ptrdiff_t& found) {
  NoTable table;
  ui::FileSearchController controller(packages.items());
  controller.filesTable = &table;
  controller.find(sought);
  qint64 longest = 0;
  while (controller.isSearching()) {
    QElapsedTimer timer;
    timer.start();
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    longest = std::max(longest, timer.nsecsElapsed());
    if (controller.isSearching()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  found = controller.numberOfRowsInTableView(table);
  return static_cast<double>(longest) * 1e-9;
}

void searchBesideShell(benchmark::State& state, const Packages& packages) {
  const std::string recipe = "for bom in '" + packages.folder() +
                             "'/*.bom; do " PELMARIX_LSBOM " -f -p fsT \"$bom\"; done | grep -icF '" +
                             sought + "' > /dev/null";
  Times shell;
  Times program;
  double longest = 0;
  std::ptrdiff_t found = 0;
  while (state.KeepRunning()) {
    shell.take([&] {
      if (std::system(recipe.c_str()) != 0) std::abort();
    });
    program.take([&] { longest = std::max(longest, search(packages, found)); });
  }
  state.counters["shell_ms"] = shell.median() * 1e3;
  state.counters["program_ms"] = program.median() * 1e3;
  state.counters["ratio"] = program.median() / shell.median();
  state.counters["longest_round_ms"] = longest * 1e3;
  state.counters["files"] = static_cast<double>(found);
}

// 40 paths each, as most packages of a system have.
std::vector<std::size_t> pathCounts(std::size_t packages) { return std::vector<std::size_t>(packages, 40); }

// Few packages are big.
std::vector<std::size_t> believablePathCounts() {
  std::vector<std::size_t> counts = pathCounts(200);
  counts.insert(counts.end(), 80, 400);
  counts.insert(counts.end(), 20, 5000);
  return counts;
}

void believableMac(benchmark::State& state) {
  static const Packages packages(believablePathCounts());
  searchBesideShell(state, packages);
}

void manyPackages(benchmark::State& state) {
  static const Packages packages(pathCounts(10'000));
  searchBesideShell(state, packages);
}

void largeBillAmongOthers(benchmark::State& state) {
  auto counts = pathCounts(300);
  counts[150] = 400'000;
  static const Packages packages(counts);
  searchBesideShell(state, packages);
}

BENCHMARK(believableMac)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(3.0);
BENCHMARK(manyPackages)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK(largeBillAmongOthers)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(3.0);

}  // namespace
}  // namespace pelmarix::bench

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  pelmarix::qt::MachineServices machine;
  pelmarix::platform::installServices(&machine.services());
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
