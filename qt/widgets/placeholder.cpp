#include "qt/widgets/placeholder.h"

#include <QPainter>

#include "qt/widgets/palette_colors.h"

namespace pelmarix::qt {

void paintPlaceholder(QAbstractScrollArea& view, const QString& text) {
  QPainter painter(view.viewport());
  painter.setPen(placeholderColor(view.palette()));
  const int margin = view.fontMetrics().averageCharWidth() * 2;
  painter.drawText(view.viewport()->rect().adjusted(margin, margin, -margin, -margin),
                   Qt::AlignCenter | Qt::TextWordWrap, text);
}

}  // namespace pelmarix::qt
