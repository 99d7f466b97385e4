// Rows of a table or outline as text, for copying and dragging.
#pragma once

#include <QModelIndexList>

class QMimeData;

namespace pelmarix::qt {

/// One line for each row that an index belongs to, in the order in which a view shows them: the texts of all
/// its cells, separated by tabs. A tab or line end inside a cell is a blank here. Of models with at most two
/// levels. Null for no rows; owned by the caller.
QMimeData* rowsAsMimeData(const QModelIndexList& indexes);

/// Of the same rows the texts in one column alone, without the blanks around them and with a line feed
/// between two.
QString cellsAsText(const QModelIndexList& indexes, int column);

}  // namespace pelmarix::qt
