#include "qt/widgets/text_adapter.h"

#include <algorithm>
#include <cmath>

namespace pelmarix::qt {

void TextAdapter::setAttributedString(const platform::AttributedString& text) {
  // Before the text, so that it is laid out once. The settings can hold any number: NaN changes nothing, and
  // a size that no font engine draws becomes the nearest that it does.
  if (text.font && !std::isnan(text.font->pointSize)) {
    constexpr double largestDrawn = 500.0;
    QFont font = widget_.font();
    font.setPointSizeF(std::clamp(text.font->pointSize, 1.0, largestDrawn));
    widget_.setFont(font);
  }
  // The standard text colour is the palette's own: the widget draws in it, and follows when it changes.
  widget_.showText(text.string);
}

}  // namespace pelmarix::qt
