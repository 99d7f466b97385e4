// Buttons with a state, and text views.
#pragma once

#include <optional>

#include "platform/object.h"
#include "platform/text.h"

namespace pelmarix::platform {

/// The states of check boxes and menu items.
inline constexpr int stateOff = 0;
inline constexpr int stateOn = 1;
inline constexpr int stateMixed = -1;

class Button : public Object {
 public:
  virtual int state() const = 0;
  /// Doesn't send the button's action.
  virtual void setState(int state) = 0;
};

enum class Color {
  text,  ///< the toolkit's standard colour of text, which follows light and dark appearance
};

/// The system's own font at a size in points.
struct SystemFont {
  double pointSize;
  friend bool operator==(const SystemFont&, const SystemFont&) = default;
};

/// Text with the attributes of all of it; an absent attribute is left to the view that shows it.
struct AttributedString {
  SharedText string;
  std::optional<Color> foregroundColor;
  std::optional<SystemFont> font;
};

/// What a text view shows.
class TextStorage {
 public:
  virtual ~TextStorage() = default;
  /// Replaces the whole content. Of a text that is shown already only what its attributes change is laid out
  /// anew.
  virtual void setAttributedString(const AttributedString& text) = 0;
};

class TextView : public Object {
 public:
  /// The text as it was put in, byte for byte; empty at first.
  virtual SharedText string() const = 0;
  /// Null when the view has none.
  virtual TextStorage* textStorage() = 0;
};

/// Containers that an interface file connects and the program doesn't use.
class View : public Object {};
class ScrollView : public View {};
class ClipView : public View {};

}  // namespace pelmarix::platform
