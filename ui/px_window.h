// The main window's class, as the interface file names it.
#pragma once

#include "platform/window.h"

namespace pelmarix::ui {

/// A window like any other; the toolkit's own library derives from it what is seen on screen.
class PXWindow : public Window {
 public:
  PXWindow(const Rect& contentRect, WindowStyleMask styleMask, BackingStore backing, bool defer)
      : Window(contentRect, styleMask, backing, defer) {}
};

}  // namespace pelmarix::ui
