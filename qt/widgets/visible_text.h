// Characters that can't be seen, as what stands for them on screen.
#pragma once

#include <QString>

namespace pelmarix::qt {

/// What is drawn for a text: a sign for each control character that has a picture in Unicode but line feed
/// and tab, for line and paragraph separators, for what Qt keeps for its own use, and for the controls of
/// writing direction, which would turn around what stands beside them. One UTF-16 unit for one: a place in
/// the text is the same place on screen.
QString visible(QStringView text);

/// The same for what stands in one line: signs for line feed and tab, too.
QString visibleInOneLine(QStringView text);

}  // namespace pelmarix::qt
