// Columns of a text whose lines have tabs between their fields.
#pragma once

#include <QFont>
#include <QList>
#include <QTextOption>

#include "qt/widgets/text_index.h"

namespace pelmarix::qt {

/// Where tabs stop for each column to be as wide as its fields, of ten thousand lines at most that are spread
/// over the text. Fields that are much wider than the usual ones stick out of theirs instead of moving the
/// columns of all. `types` are those of the columns after the first, of which the last begins at its stop.
/// ASCII letters are taken to be of one width, as in the fonts in which columns are shown.
QList<QTextOption::Tab> tabStops(const TextIndex& text, const QList<QTextOption::TabType>& types,
                                 const QFont& font);

}  // namespace pelmarix::qt
