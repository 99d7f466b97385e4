// A listing of 100,000 lines on screen: the program's sheet beside the toolkit's own widget for text. The
// display is in memory unless QT_QPA_PLATFORM names another.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDialog>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QVBoxLayout>
#include <QWidget>
#include <string>

#include "bench/paired_times.h"
#include "platform/text.h"
#include "qt/window/bill_of_materials_sheet.h"

namespace pelmarix::bench {
namespace {

std::string listing() {
  std::string lines;
  for (int line = 0; line < 100'000; ++line)
    lines += "./Applications/Example.app/Contents/Resources/Table " + std::to_string(line) +
             ".dat\t189789\tMon Dec 28 11:09:55 2020\n";
  return lines;
}

void sheetBesidePlainTextEdit(benchmark::State& state) {
  const platform::SharedText text = platform::shareText(listing());
  const QString sameText = QString::fromStdString(*text);
  QWidget window;
  window.resize(1000, 800);
  window.show();
  Times plainTextEdit;
  Times sheet;
  for (auto _ : state) {
    QDialog dialog(&window);
    QVBoxLayout layout(&dialog);
    QPlainTextEdit widget;
    layout.addWidget(&widget);
    dialog.resize(window.size() * 9 / 10);
    widget.setReadOnly(true);
    widget.setLineWrapMode(QPlainTextEdit::NoWrap);
    widget.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    plainTextEdit.take([&] {
      widget.setPlainText(sameText);
      dialog.open();
      dialog.repaint();
    });
    dialog.close();

    qt::BillOfMaterialsSheet shown(&window);
    shown.setAttribute(Qt::WA_DeleteOnClose, false);
    sheet.take([&] {
      shown.controller().setRepresentedObject(text);
      shown.present();
      shown.repaint();
    });
    shown.close();
  }
  state.counters["plain_text_edit_ms"] = plainTextEdit.median() * 1e3;
  state.counters["sheet_ms"] = sheet.median() * 1e3;
  state.counters["ratio"] = sheet.median() / plainTextEdit.median();
}
BENCHMARK(sheetBesidePlainTextEdit)->Unit(benchmark::kMillisecond)->Iterations(20);

}  // namespace
}  // namespace pelmarix::bench

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
