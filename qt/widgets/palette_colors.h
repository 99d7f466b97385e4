// Colours that are made of those of the desktop's palette.
#pragma once

#include <QPalette>

namespace pelmarix::qt {

/// A tint of the colour of selections that leaves text readable on either side of it, light or dark: of what
/// marks a match of a search, and of a selection that the keyboard isn't at.
inline QColor tintOfHighlight(const QPalette& palette) {
  QColor color = palette.color(QPalette::Highlight);
  color.setAlphaF(0.35F);
  return color;
}

/// The same palette for what hasn't the keyboard: a selection is duller.
inline QPalette withoutFocus(QPalette palette) {
  palette.setColor(QPalette::Highlight, tintOfHighlight(palette));
  palette.setColor(QPalette::HighlightedText, palette.color(QPalette::Text));
  return palette;
}

/// Of what stands where there is nothing yet. Not the palette's own, which on some desktops is dark on dark.
inline QColor placeholderColor(const QPalette& palette) {
  QColor color = palette.color(QPalette::Text);
  color.setAlphaF(0.6F);
  return color;
}

/// Of what only orders what stands on it: lines, and every second stripe.
inline QColor faintColor(const QPalette& palette) {
  QColor color = palette.color(QPalette::Text);
  color.setAlphaF(0.08F);
  return color;
}

}  // namespace pelmarix::qt
