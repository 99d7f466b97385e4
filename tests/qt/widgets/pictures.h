// What differs between two pictures of a widget.
#pragma once

#include <QImage>
#include <QRect>

namespace pelmarix::test {

/// The smallest rectangle with every pixel that differs; null when none does. Of pictures of the same size.
inline QRect changedPart(const QImage& before, const QImage& after) {
  QRect changed;
  for (int y = 0; y < after.height(); ++y)
    for (int x = 0; x < after.width(); ++x)
      if (before.pixel(x, y) != after.pixel(x, y)) changed |= QRect(x, y, 1, 1);
  return changed;
}

/// Whether each edge is where it is expected, within two pixels.
inline bool isAbout(const QRect& rect, const QRect& expected) {
  return expected.adjusted(-2, -2, 2, 2).contains(rect) && rect.adjusted(-2, -2, 2, 2).contains(expected);
}

}  // namespace pelmarix::test
