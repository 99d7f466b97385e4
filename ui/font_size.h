// The size of the report's text and where it is kept.
#pragma once

#include <algorithm>

#include "platform/user_defaults.h"

namespace pelmarix::ui {

/// In points. The user's steps stay within the bounds; a stored size above them holds until the next step.
inline constexpr double defaultFontSize = 12.0;
inline constexpr double minimumFontSize = 4.0;
inline constexpr double maximumFontSize = 24.0;
inline constexpr double fontSizeStep = 1.0;

inline constexpr const char* fontSizeKey = "fontSize";

/// The size to start with: defaultFontSize where none is stored or one below the minimum.
inline double storedFontSize() {
  const double stored = platform::UserDefaults::standardUserDefaults().doubleForKey(fontSizeKey);
  return stored < minimumFontSize ? defaultFontSize : stored;
}

}  // namespace pelmarix::ui
