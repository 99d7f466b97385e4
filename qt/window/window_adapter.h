// The main window's class as seen on screen.
#pragma once

#include <QMainWindow>
#include <functional>
#include <utility>

#include "ui/px_window.h"

namespace pelmarix::qt {

class WindowWidget final : public QMainWindow {
 public:
  using QMainWindow::QMainWindow;

  /// Asked before the window closes; false keeps it open.
  void setShouldClose(std::function<bool()> shouldClose) { shouldClose_ = std::move(shouldClose); }

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  std::function<bool()> shouldClose_;
};

class WindowAdapter final : public ui::PXWindow {
 public:
  /// `widget` isn't owned and outlives the adapter. It takes the size that fits the screen it is on.
  explicit WindowAdapter(WindowWidget& widget);

  void setDelegate(platform::WindowDelegate* delegate) override { delegate_ = delegate; }
  void setTitle(const std::string& title) override;

 private:
  WindowWidget& widget_;
  platform::WindowDelegate* delegate_ = nullptr;
};

}  // namespace pelmarix::qt
