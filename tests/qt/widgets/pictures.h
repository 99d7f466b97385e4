// What differs between two pictures of a widget.
#pragma once

#include <QImage>
#include <QRect>
#include <algorithm>

namespace pelmarix::test {

/// The smallest rectangle with every pixel that differs; null when none does. Of pictures of the same
/// size and format.
inline QRect changedPart(const QImage& before, const QImage& after) {
  QRect changed;
  for (int y = 0; y < after.height(); ++y) {
    if (std::equal(before.constScanLine(y), before.constScanLine(y) + before.bytesPerLine(),
                   after.constScanLine(y)))
      continue;
    for (int x = 0; x < after.width(); ++x)
      if (before.pixel(x, y) != after.pixel(x, y)) changed |= QRect(x, y, 1, 1);
  }
  return changed;
}

/// Whether each edge is where it is expected, within two pixels.
inline bool isAbout(const QRect& rect, const QRect& expected) {
  return expected.adjusted(-2, -2, 2, 2).contains(rect) && rect.adjusted(-2, -2, 2, 2).contains(expected);
}

}  // namespace pelmarix::test
