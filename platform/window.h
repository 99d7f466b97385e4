// Windows.
#pragma once

#include <string>

#include "platform/object.h"

namespace pelmarix::platform {

/// In points (device-independent pixels).
struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
};

/// What a window's frame offers: a title, and to close, miniaturize and resize the window.
enum class WindowStyleMask { all = 15 };

/// How the window's content is kept.
enum class BackingStore { buffered = 2 };

class Window;

class WindowDelegate {
 public:
  virtual ~WindowDelegate() = default;
  /// Asked when the user closes the window; false keeps it open.
  virtual bool windowShouldClose(Window& sender) = 0;
};

class Window : public Object {
 public:
  /// Toolkits of today frame and keep every window alike, and make none before it is shown: the first
  /// argument alone is a choice.
  Window(const Rect& contentRect, WindowStyleMask /*styleMask*/, BackingStore /*backing*/, bool /*defer*/)
      : contentRect_(contentRect) {}

  const Rect& contentRect() const { return contentRect_; }

  /// The delegate isn't owned; null takes it away.
  virtual void setDelegate(WindowDelegate* delegate) = 0;
  virtual void setTitle(const std::string& title) = 0;

 private:
  Rect contentRect_;
};

}  // namespace pelmarix::platform
