// Searching in texts of any length, upper and lower case alike.
#pragma once

#include <QStringView>

namespace pelmarix::qt {

/// Where `sought` first begins in `text`, at `from` or later; -1 when it is nowhere, and when it is empty.
/// No-break spaces count as blanks. In tens of megabytes several times as fast as the toolkit's own search.
qsizetype indexOfIgnoringCase(QStringView text, QStringView sought, qsizetype from = 0);

/// Where `sought` last begins in `text`; -1 when it is nowhere, and when it is empty.
qsizetype lastIndexOfIgnoringCase(QStringView text, QStringView sought);

}  // namespace pelmarix::qt
