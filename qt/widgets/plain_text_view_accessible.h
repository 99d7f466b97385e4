// What a screen reader meets of a text.
#pragma once

#include <QString>

#include "qt/widgets/text_index.h"

namespace pelmarix::qt {

class PlainTextView;

/// From now on a screen reader that asks for a PlainTextView gets its text, by UTF-16 offsets, whatever part
/// it asks for.
void installAccessibleTexts();

/// What is told of a text that comes or goes. The bus doesn't carry texts of any size: who listens is told of
/// the beginning and asks for what it wants.
QString spokenBeginning(const TextIndex& text);

/// Tells that the view has another text than the one that began so.
void tellTextChanged(PlainTextView& view, const QString& before);
void tellSelectionChanged(PlainTextView& view);

}  // namespace pelmarix::qt
