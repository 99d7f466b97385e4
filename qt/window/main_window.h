// The main window as seen on screen.
#pragma once

#include <QMainWindow>

#include "ui/px_window.h"

namespace pelmarix::qt {

class MainWindow final : public QMainWindow, public ui::PXWindow {
  Q_OBJECT

 public:
  /// Takes the size that fits the screen it is on.
  MainWindow();

  void setDelegate(platform::WindowDelegate* delegate) override { delegate_ = delegate; }
  void setTitle(const std::string& title) override;

 signals:
  void resized();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  platform::WindowDelegate* delegate_ = nullptr;
};

}  // namespace pelmarix::qt
