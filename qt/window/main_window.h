// The main window as seen on screen.
#pragma once

#include <QMainWindow>

#include "ui/px_window.h"

namespace pelmarix::qt {

class MainWindow final : public QMainWindow, public ui::PXWindow {
 public:
  /// Takes the size that fits the screen it is on.
  MainWindow();

  void setDelegate(platform::WindowDelegate* delegate) override { delegate_ = delegate; }
  void setTitle(const std::string& title) override;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  platform::WindowDelegate* delegate_ = nullptr;
};

}  // namespace pelmarix::qt
