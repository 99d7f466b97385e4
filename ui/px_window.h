// The main window's class, as the interface file names it.
#pragma once

#include "platform/window.h"

namespace pelmarix::ui {

/// A window like any other; the toolkit's own library derives from it what is seen on screen.
class PXWindow : public platform::Window {
 public:
  using Window::Window;  // passes all four arguments on unchanged
};

}  // namespace pelmarix::ui
