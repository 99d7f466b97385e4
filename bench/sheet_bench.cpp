// A listing of 100,000 lines on screen: the sheet, from the text that the lister printed, beside the widget
// alone with the same text. The display is in memory unless QT_QPA_PLATFORM names
// another.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDialog>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QVBoxLayout>
#include <QWidget>
#include <string>
#include <vector>

#include "bench/paired_times.h"
#include "platform/text.h"
#include "qt/window/bill_of_materials_sheet.h"

namespace {

using pelmarix::bench::median;
using pelmarix::bench::secondsFor;

std::string listing() {
  std::string text;
  for (int line = 0; line < 100'000; ++line)
    text += "./Applications/Example.app/Contents/Resources/Table " + std::to_string(line) +
            ".dat\t189789\tMon Dec 28 11:09:55 2020\n";
  return text;
}

void sheetBesideWidgetAlone(benchmark::State& state) {
  const pelmarix::platform::SharedText text = pelmarix::platform::shareText(listing());
  const QString sameText = QString::fromStdString(*text);
  QWidget window;
  window.resize(1000, 800);
  window.show();
  std::vector<double> alone;
  std::vector<double> sheet;
  for (auto _ : state) {
    QDialog dialog(&window);
    QVBoxLayout layout(&dialog);
    QPlainTextEdit widget;
    layout.addWidget(&widget);
    dialog.resize(window.size() * 9 / 10);
    widget.setReadOnly(true);
    widget.setLineWrapMode(QPlainTextEdit::NoWrap);
    widget.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    alone.push_back(secondsFor([&] {
      widget.setPlainText(sameText);
      dialog.open();
      dialog.repaint();
    }));
    dialog.close();

    pelmarix::qt::BillOfMaterialsSheet shown(&window);
    shown.setAttribute(Qt::WA_DeleteOnClose, false);
    sheet.push_back(secondsFor([&] {
      shown.controller().setRepresentedObject(text);
      shown.present();
      shown.repaint();
    }));
    shown.close();
  }
  state.counters["widget_ms"] = median(alone) * 1e3;
  state.counters["sheet_ms"] = median(sheet) * 1e3;
  state.counters["ratio"] = median(sheet) / median(alone);
}
BENCHMARK(sheetBesideWidgetAlone)->Unit(benchmark::kMillisecond)->Iterations(20);

}  // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
