#include "qt/widgets/text_adapter.h"

#include <cmath>

namespace pelmarix::qt {

void TextAdapter::setAttributedString(const platform::AttributedString& text) {
  // Before the text, so that it is laid out once. The settings can hold any number; NaN changes nothing.
  if (text.font && !std::isnan(text.font->pointSize)) widget_.setPointSize(text.font->pointSize);
  // The standard text colour is the palette's own: the widget draws in it, and follows when it changes.
  widget_.showText(text.string);
}

}  // namespace pelmarix::qt
