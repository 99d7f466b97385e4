// Colours that are made of those of the desktop's palette.
#pragma once

#include <QPalette>
#include <algorithm>
#include <array>
#include <cmath>

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

/// Colours of kinds, from 0 to 5: hues around that of selections, as dark or as light as lets them and what
/// is written on them in the colour of the ground be read. The last is grey.
inline QColor colorOfKind(const QPalette& palette, int kind) {
  constexpr std::array<double, 6> turns{0, 0.2, 0.83, 0.42, 0.55, 0};
  const bool isDark = palette.color(QPalette::Base).lightnessF() < 0.5F;
  const double hue = std::max(static_cast<double>(palette.color(QPalette::Highlight).hslHueF()), 0.0);
  const double turned = std::fmod(hue + turns.at(static_cast<std::size_t>(kind)), 1);
  return QColor::fromHslF(static_cast<float>(turned), kind == 5 ? 0.0F : 0.5F, isDark ? 0.68F : 0.34F);
}

}  // namespace pelmarix::qt
