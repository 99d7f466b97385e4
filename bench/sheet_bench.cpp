// A listing of a million lines on screen: the program's sheet beside the toolkit's own widget for text. The
// display is in memory unless QT_QPA_PLATFORM names another.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <QAbstractScrollArea>
#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <QWidget>
#include <cstring>
#include <functional>
#include <map>
#include <string>

#include "bench/paired_times.h"
#include "bench/plain_text_widget.h"
#include "platform/text.h"
#include "qt/widgets/plain_text_view.h"
#include "qt/window/bill_of_materials_sheet.h"

namespace pelmarix::bench {
namespace {

std::string listing(int lines) {
  std::string text;
  for (int line = 0; line < lines; ++line)
    text += "./Applications/Example.app/Table " + std::to_string(100'000 + line) + "\t1\tMon Dec 28 2020\n";
  return text;
}

/// A dialog with the toolkit's widget, as the sheet is with the program's.
class ToolkitSheet final : public QDialog {
 public:
  explicit ToolkitSheet(QWidget* window) : QDialog(window), layout_(this) {
    layout_.addWidget(&widget);
    resize(window->size() * 9 / 10);
    widget.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  }
  PlainTextWidget widget;

 private:
  QVBoxLayout layout_;
};

class Measured {
 public:
  explicit Measured(std::string name) : name_(std::move(name)) {}

  void take(const std::string& action, QAbstractScrollArea& text, const std::function<void()>& work) {
    times_[action].take([&] {
      work();
      text.viewport()->repaint();
    });
  }
  void keys(const std::string& action, QAbstractScrollArea& text, Qt::Key key,
            Qt::KeyboardModifiers modifiers) {
    take(action, text, [&] {
      QKeyEvent press(QEvent::KeyPress, key, modifiers);
      QApplication::sendEvent(&text, &press);
    });
  }
  /// What is done with the text, once it is there.
  template <typename Widget, typename Find>
  void use(Widget& text, Find find) {
    keys("page_down", text, Qt::Key_PageDown, {});
    take("find_next", text, [&] { find(text, "example"); });
    take("find_nothing", text, [&] { find(text, "exbmple"); });
    keys("end", text, Qt::Key_End, Qt::ControlModifier);
    keys("select_all", text, Qt::Key_A, Qt::ControlModifier);
    keys("copy", text, Qt::Key_C, Qt::ControlModifier);
    QApplication::clipboard()->clear();
  }
  void tell(benchmark::State& state) const {
    for (const auto& [action, times] : times_)
      state.counters[name_ + "_" + action + "_ms"] = times.median() * 1e3;
  }

 private:
  std::string name_;
  std::map<std::string, Times> times_;
};

double megabytesInUse() {
  const struct mallinfo2 memory = mallinfo2();
  return static_cast<double>(memory.uordblks + memory.hblkhd) / 1e6;
}

void sheetBesideToolkitsWidget(benchmark::State& state) {
  const platform::SharedText text = platform::shareText(listing(static_cast<int>(state.range(0))));
  QWidget window;
  window.resize(1000, 800);
  window.show();
  Measured toolkit("toolkit");
  Measured own("sheet");
  Times memmemPass;
  double toolkitMegabytes = 0;
  double ownMegabytes = 0;
  for (auto _ : state) {
    {
      ToolkitSheet sheet(&window);
      const double before = megabytesInUse();
      toolkit.take("show", sheet.widget, [&] {
        sheet.widget.showText(text);
        sheet.open();
      });
      toolkitMegabytes = megabytesInUse() - before;
      toolkit.use(sheet.widget, [](PlainTextWidget& widget, const char* sought) {
        widget.selectMatch(QLatin1String(sought));
      });
    }
    qt::BillOfMaterialsSheet sheet(&window);
    sheet.setAttribute(Qt::WA_DeleteOnClose, false);
    auto& view = *sheet.findChild<qt::PlainTextView*>();
    const double before = megabytesInUse();
    own.take("show", view, [&] {
      sheet.controller().setRepresentedObject(text);
      sheet.present();
    });
    ownMegabytes = megabytesInUse() - before;
    own.use(view, [](qt::PlainTextView& shown, const char* sought) {
      shown.selectMatch(QLatin1String(sought), qt::SearchStart::pastSelection, qt::SearchDirection::forward);
    });
    memmemPass.take([&] {
      for (const char* const letterCase : {"exbmple", "EXBMPLE"})
        benchmark::DoNotOptimize(memmem(text->data(), text->size(), letterCase, std::strlen(letterCase)));
    });
  }
  toolkit.tell(state);
  own.tell(state);
  state.counters["memmem_of_both_cases_ms"] = memmemPass.median() * 1e3;
  state.counters["text_MB"] = static_cast<double>(text->size()) / 1e6;
  state.counters["toolkit_MB"] = toolkitMegabytes;
  state.counters["sheet_MB"] = ownMegabytes;
}
BENCHMARK(sheetBesideToolkitsWidget)->Arg(1'000'000)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
}  // namespace pelmarix::bench
