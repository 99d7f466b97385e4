// What a screen reader meets of a text.
#pragma once

namespace pelmarix::qt {

class PlainTextView;

/// From now on a screen reader that asks for a PlainTextView gets its text, by UTF-16 offsets, whatever part
/// it asks for.
void installAccessibleTexts();

void tellTextChanged(PlainTextView& view);
void tellSelectionChanged(PlainTextView& view);

}  // namespace pelmarix::qt
