// Closing the main window while a dialog is in front of it.
#pragma once

#include <QAbstractNativeEventFilter>
#include <QWidget>
#include <cstdint>

namespace pelmarix::qt {

/// Closes a window when the window manager asks for it, also while an alert or a sheet blocks the window: Qt
/// drops what is asked of a blocked window. Knows X11; on other displays it does nothing, and on macOS it
/// isn't built.
class CloseRequests final : public QAbstractNativeEventFilter {
 public:
  /// `window` isn't owned and outlives the filter.
  explicit CloseRequests(QWidget& window);

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

 private:
  QWidget& window_;
  // The numbers that the display has given to the names of the protocol. 0 stands for none.
  std::uint32_t protocols_ = 0;
  std::uint32_t deleteWindow_ = 0;
};

}  // namespace pelmarix::qt
