// How a match of a search is marked.
#pragma once

#include <QPalette>

namespace pelmarix::qt {

/// A tint of the colour of selections that leaves text readable on either side of it, light or dark.
inline QColor matchMarkColor(const QPalette& palette) {
  QColor color = palette.color(QPalette::Highlight);
  color.setAlphaF(0.35F);
  return color;
}

}  // namespace pelmarix::qt
