// Colours that are made of those of the desktop's palette.
#pragma once

#include <QPalette>

namespace pelmarix::qt {

/// Of what marks a match of a search: a tint of the colour of selections that leaves text readable on either
/// side of it, light or dark.
inline QColor matchMarkColor(const QPalette& palette) {
  QColor color = palette.color(QPalette::Highlight);
  color.setAlphaF(0.35F);
  return color;
}

/// Of what stands where there is nothing yet. Not the palette's own, which on some desktops is dark on dark.
inline QColor placeholderColor(const QPalette& palette) {
  QColor color = palette.color(QPalette::Text);
  color.setAlphaF(0.6F);
  return color;
}

}  // namespace pelmarix::qt
