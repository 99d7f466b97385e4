// What a list or a text says as long as there is nothing in it.
#pragma once

#include <QAbstractScrollArea>

namespace pelmarix::qt {

/// In the middle of the view, in lines as long as it is wide; above `action`, a sibling of the view, where
/// there is one.
void paintPlaceholder(QAbstractScrollArea& view, const QString& text, const QWidget* action = nullptr);

}  // namespace pelmarix::qt
