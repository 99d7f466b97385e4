#include "qt/window/main_window.h"

#include <QCloseEvent>
#include <QScreen>

#include "qt/services/text_conversion.h"
#include "qt/widgets/visible_text.h"

namespace pelmarix::qt {
namespace {

// Room for two lists side by side with their names whole, and for some lines of the report, in the size of
// the letters; never more than the screen has.
platform::Rect initialContentRect(const QWidget& widget) {
  const QFontMetrics metrics = widget.fontMetrics();
  const QSize wanted(metrics.averageCharWidth() * 196, metrics.lineSpacing() * 54);
  const QSize screen = widget.screen()->availableSize() * 9 / 10;
  const QSize size = wanted.boundedTo(screen);
  return {0, 0, static_cast<double>(size.width()), static_cast<double>(size.height())};
}

}  // namespace

MainWindow::MainWindow()
    : PXWindow(initialContentRect(*this), platform::WindowStyleMask::all, platform::BackingStore::buffered,
               true) {
  resize(static_cast<int>(contentRect().width), static_cast<int>(contentRect().height));
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->setAccepted(delegate_ == nullptr || delegate_->windowShouldClose(*this));
}

void MainWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  emit resized();
}

void MainWindow::setTitle(const std::string& title) {
  // Qt keeps "[*]" for the mark of an unsaved document; twice it stands for itself.
  const QLatin1String mark("[*]");
  setWindowTitle(visible(toQString(title)).replace(mark, QLatin1String("[*][*]")));
  setAccessibleName(toQString(title));
}

}  // namespace pelmarix::qt
