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
  friend bool operator==(const Rect&, const Rect&) = default;
};

/// What a window's frame offers; values are combined with "|".
using WindowStyleMask = unsigned;
inline constexpr WindowStyleMask windowStyleTitled = 1U << 0U;
inline constexpr WindowStyleMask windowStyleClosable = 1U << 1U;
inline constexpr WindowStyleMask windowStyleMiniaturizable = 1U << 2U;
inline constexpr WindowStyleMask windowStyleResizable = 1U << 3U;

/// How the window's content is kept; toolkits of today know only the one.
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
  /// With `defer` the window takes up no resource of the window system until it is shown.
  Window(const Rect& contentRect, WindowStyleMask styleMask, BackingStore backing, bool defer)
      : contentRect_(contentRect), styleMask_(styleMask), backing_(backing), defer_(defer) {}

  const Rect& contentRect() const { return contentRect_; }
  WindowStyleMask styleMask() const { return styleMask_; }
  BackingStore backing() const { return backing_; }
  bool isDeferred() const { return defer_; }

  /// The delegate isn't owned; null takes it away.
  virtual void setDelegate(WindowDelegate* delegate) = 0;
  virtual void setTitle(const std::string& title) = 0;

 private:
  Rect contentRect_;
  WindowStyleMask styleMask_;
  BackingStore backing_;
  bool defer_;
};

}  // namespace pelmarix::platform
