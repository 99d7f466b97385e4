// What a timeline of 100,000 entries and 10,000 receipts takes: to be made, and to give its picture, all of
// it or what is left of it at some zooms, with and without a selected entry; and for the strip to draw a
// frame of moving. A frame is to take at most 16 ms. The display is in memory unless QT_QPA_PLATFORM names
// another.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QKeyEvent>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "history/history.h"
#include "qt/widgets/timeline_strip.h"
#include "receipts/bom.h"
#include "ui/timeline.h"
#include "ui/timeline_controller.h"

namespace pelmarix::bench {
namespace {

constexpr std::int64_t entryCount = 100'000;
constexpr std::int64_t receiptCount = 10'000;
constexpr double begin = 468'000'000;   // in 2015
constexpr double length = 170'000'000;  // until 2021

struct Lists {
  Lists() {
    for (std::int64_t i = 0; i < entryCount; ++i) {
      if (i % 1000 == 0) histories.push_back(std::make_shared<History>("macOS Mojave 10.14"));
      const double seconds = begin + length * static_cast<double>(i) / entryCount;
      histories.back()->children.push_back(std::make_shared<HistoryItem>(
          "MRTConfigData", "1.35", Date{seconds}, i % 1000 == 0 ? 0 : 1 + i % 4));
    }
    // Newest first, as they are read.
    for (std::int64_t i = receiptCount; i > 0; --i)
      boms.children.push_back(std::make_shared<BoMItem>(
          "com.example.pkg", Date{begin + length * static_cast<double>(i) / receiptCount},
          "/com.example.pkg"));
  }

  std::vector<std::shared_ptr<History>> histories;
  BoM boms;
};

void timelineIsMade(benchmark::State& state) {
  const Lists lists;
  for (auto _ : state) benchmark::DoNotOptimize(ui::Timeline(lists.histories, lists.boms, false));
}
BENCHMARK(timelineIsMade)->Unit(benchmark::kMillisecond);

void timelineGivesItsPicture(benchmark::State& state) {
  const Lists lists;
  const ui::Timeline timeline(lists.histories, lists.boms, false);
  const platform::TimelineSpan all = timeline.span();
  const double shown = (all.end - all.begin) / static_cast<double>(state.range(0));
  const platform::Object* const selected =
      state.range(1) == 0 ? nullptr : lists.histories[50]->children[500].get();
  const double middle = (all.begin + all.end) / 2;
  const platform::TimelineScale scale{{middle - shown / 2, middle + shown / 2}, 1600, 24, 150};
  std::size_t marks = 0;
  for (auto _ : state) marks = timeline.picture(scale, selected).marks.size();
  state.counters["marks"] = static_cast<double>(marks);
}
BENCHMARK(timelineGivesItsPicture)
    ->ArgNames({"zoom", "selected"})
    ->ArgsProduct({{1, 10, 100, 10'000}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

void stripDrawsAFrame(benchmark::State& state) {
  const Lists lists;
  qt::TimelineStrip strip;
  ui::TimelineController controller;
  controller.timelineView = &strip;
  strip.setDataSource(controller);
  strip.resize(2560, strip.sizeHint().height());
  controller.show(lists.histories, lists.boms, false);
  strip.resize(2560, strip.sizeHint().height());
  QImage screen(strip.size(), QImage::Format_RGB32);
  const auto press = [&strip](Qt::Key key) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(&strip, &event);
  };
  for (int step = 0; step < state.range(0); ++step) press(Qt::Key_Plus);
  bool isNear = false;
  for (auto _ : state) {
    press(isNear ? Qt::Key_Minus : Qt::Key_Plus);
    isNear = !isNear;
    strip.render(&screen);
  }
}
BENCHMARK(stripDrawsAFrame)->ArgName("zoomSteps")->Arg(0)->Arg(10)->Arg(20)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace pelmarix::bench
