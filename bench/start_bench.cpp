// From the start of the process to the first painted window, with 1,000 entries and 500 receipts, beside the
// same window with nothing in it. The ratio is to be at most 1.3. The display is the one that there is, or in
// memory where there is none; Xvfb needs -noreset, for it refuses clients while it resets after its last one.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QMainWindow>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "bench/paired_times.h"
#include "platform/application.h"
#include "sample/sample_volume.h"

namespace pelmarix::bench {
namespace {

constexpr const char* untilPaintedVariable = "PELMARIX_BENCH_UNTIL_PAINTED";

// Ends the process when the main window has been painted and handed to the display.
class EndAtFirstPaint final : public QObject {
 public:
  using QObject::QObject;

 private:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint && qobject_cast<QMainWindow*>(watched) != nullptr)
      QMetaObject::invokeMethod(
          this, [] { std::_Exit(0); }, Qt::QueuedConnection);
    return QObject::eventFilter(watched, event);
  }
};

void watchForFirstPaint() {
  if (qEnvironmentVariableIsSet(untilPaintedVariable)) qApp->installEventFilter(new EndAtFirstPaint(qApp));
}
Q_COREAPP_STARTUP_FUNCTION(watchForFirstPaint)

// A folder with both volumes and with settings that keep the program from asking for updates.
class Stage {
 public:
  Stage() {
    const std::string config = path("config/pelmarix");
    std::filesystem::create_directories(config);
    std::ofstream(config + "/pelmarix.ini") << "[General]\nnoUpdateCheck=true\n";
    if (!sample::makeVolume(path("full"), {.entries = 1000, .receipts = 500})) std::abort();
    if (!sample::makeVolume(path("empty"), {.entries = 0, .receipts = 0})) std::abort();
  }

  // Runs the program on a volume until its window has been painted.
  void runToFirstPaint(const char* volume) const {
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(untilPaintedVariable), QStringLiteral("1"));
    environment.insert(QStringLiteral("PELMARIX_VOLUME"), QString::fromStdString(path(volume)));
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), QString::fromStdString(path("config")));
    if (!environment.contains(QStringLiteral("DISPLAY")))
      environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    program.setProcessEnvironment(environment);
    program.start(QCoreApplication::applicationFilePath(), QStringList());
    if (!program.waitForFinished() || program.exitStatus() != QProcess::NormalExit || program.exitCode() != 0)
      std::abort();
  }

 private:
  std::string path(const char* name) const { return folder_.filePath(QLatin1String(name)).toStdString(); }

  QTemporaryDir folder_;
};

void firstWindowBesideEmptyOne(benchmark::State& state) {
  const Stage stage;
  Times full;
  Times empty;
  for (auto _ : state) {
    full.take([&stage] { stage.runToFirstPaint("full"); });
    empty.take([&stage] { stage.runToFirstPaint("empty"); });
  }
  state.counters["full_ms"] = full.median() * 1e3;
  state.counters["empty_ms"] = empty.median() * 1e3;
  state.counters["ratio"] = full.median() / empty.median();
}
BENCHMARK(firstWindowBesideEmptyOne)->Unit(benchmark::kMillisecond)->Iterations(20);

}  // namespace
}  // namespace pelmarix::bench

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsSet(pelmarix::bench::untilPaintedVariable)) {
    pelmarix::platform::applicationMain(argc, argv);
    return 0;
  }
  const QCoreApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
