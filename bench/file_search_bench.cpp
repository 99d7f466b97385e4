// The search for a file in all packages, in its sheet, beside a loop of the shell over their bills of
// materials, which pipes the lister's output into grep. The ratios are to be at most 0.6, with a large bill
// among the others 1.1; a round of the event loop is to take at most 50 ms, and the memory 64 MB. The display
// is in memory unless QT_QPA_PLATFORM names another. Where other programs run, "chrt -f 10" has both sides go
// first.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <stdlib.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <algorithm>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "bench/paired_times.h"
#include "qt/services/machine_services.h"
#include "qt/window/file_search_sheet.h"
#include "sample/bom_writer.h"
#include "sample/package_contents.h"

namespace pelmarix::bench {
namespace {

namespace fs = std::filesystem;

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

// The processor's time that this program has taken until now, in seconds.
double ownTime() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

// The most memory that this program has had since the last call, in bytes.
double peakSinceLastCall() {
  std::ifstream status("/proc/self/status");
  std::string word;
  double kibibytes = 0;
  while (status >> word && word != "VmHWM:") {
  }
  status >> kibibytes;
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << 5;
  return kibibytes * 1024;
}

// The sheet over a window, until all that was found is shown. Returns the longest time for which one round of
// the event loop computed, in seconds.
double search(qt::FileSearchSheet& sheet, const char* sought) {
  const auto& status = *sheet.findChild<QLabel*>(QStringLiteral("status"));
  double longest = 0;
  const auto measured = [&](const auto& work) {
    const double begin = ownTime();
    work();
    longest = std::max(longest, ownTime() - begin);
  };
  measured([&] { sheet.findChild<QLineEdit*>(QStringLiteral("sought"))->setText(QLatin1String(sought)); });
  while (sheet.controller().isSearching() || status.text().toStdString() != sheet.controller().status())
    measured([] { QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents); });
  measured([] { QCoreApplication::processEvents(); });  // the last painting
  return longest;
}

void searchBesideShell(benchmark::State& state, const Packages& packages, const char* sought) {
  qt::MachineServices machine;
  platform::installServices(&machine.services());
  const std::string recipe = "for bom in '" + packages.folder() +
                             "'/*.bom; do " PELMARIX_LSBOM " -f -p fsT \"$bom\"; done | grep -icF '" +
                             sought + "' > /dev/null";
  Times shell;
  Times program;
  Times own;
  double longest = 0;
  double memory = 0;
  QWidget window;
  window.resize(900, 640);
  window.show();
  while (state.KeepRunning()) {
    shell.take([&] {
      if (std::system(recipe.c_str()) != 0) std::abort();
    });
    qt::FileSearchSheet sheet(&window, packages.items());
    sheet.open();
    QCoreApplication::processEvents();
    peakSinceLastCall();
    const double before = peakSinceLastCall();
    const double begin = ownTime();
    program.take([&] { longest = std::max(longest, search(sheet, sought)); });
    own.add(ownTime() - begin);
    memory = std::max(memory, peakSinceLastCall() - before);
    state.SetLabel(sheet.controller().status());
  }
  state.counters["shell_ms"] = shell.best() * 1e3;
  state.counters["program_ms"] = program.best() * 1e3;
  state.counters["ratio"] = program.best() / shell.best();
  state.counters["own_ms"] = own.best() * 1e3;
  state.counters["longest_round_ms"] = longest * 1e3;
  state.counters["memory_MB"] = memory / 1e6;
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
  searchBesideShell(state, packages, "contents/info.plist");
}

void manyPackages(benchmark::State& state) {
  static const Packages packages(pathCounts(10'000));
  searchBesideShell(state, packages, "contents/info.plist");
}

const Packages& largeBill() {
  static const Packages packages([] {
    auto counts = pathCounts(300);
    counts[150] = 400'000;
    return counts;
  }());
  return packages;
}

void largeBillAmongOthers(benchmark::State& state) {
  searchBesideShell(state, largeBill(), "contents/info.plist");
}

// More than are kept: it ends early.
void filesBeyondTheMost(benchmark::State& state) { searchBesideShell(state, largeBill(), "app"); }

BENCHMARK(believableMac)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(10);
BENCHMARK(manyPackages)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK(largeBillAmongOthers)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(10);
BENCHMARK(filesBeyondTheMost)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

}  // namespace
}  // namespace pelmarix::bench
