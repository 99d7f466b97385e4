#include "qt/window/window_adapter.h"

#include <QCloseEvent>
#include <QScreen>

#include "qt/services/text_conversion.h"

namespace pelmarix::qt {
namespace {

/// Room for two lists side by side and some lines of the report, in the size of the letters; never more than
/// the screen has.
platform::Rect initialContentRect(const QWidget& widget) {
  const QFontMetrics metrics = widget.fontMetrics();
  const QSize wanted(metrics.averageCharWidth() * 150, metrics.lineSpacing() * 46);
  const QSize screen = widget.screen()->availableSize() * 9 / 10;
  const QSize size = wanted.boundedTo(screen);
  return {0, 0, static_cast<double>(size.width()), static_cast<double>(size.height())};
}

}  // namespace

void WindowWidget::closeEvent(QCloseEvent* event) { event->setAccepted(!shouldClose_ || shouldClose_()); }

WindowAdapter::WindowAdapter(WindowWidget& widget)
    : PXWindow(initialContentRect(widget), platform::WindowStyleMask::all, platform::BackingStore::buffered,
               true),
      widget_(widget) {
  widget_.resize(static_cast<int>(contentRect().width), static_cast<int>(contentRect().height));
  widget_.setShouldClose([this] { return delegate_ == nullptr || delegate_->windowShouldClose(*this); });
}

void WindowAdapter::setTitle(const std::string& title) {
  // Qt keeps "[*]" for the mark of an unsaved document; twice it stands for itself.
  const QLatin1String mark("[*]");
  widget_.setWindowTitle(toQString(title).replace(mark, QLatin1String("[*][*]")));
}

}  // namespace pelmarix::qt
