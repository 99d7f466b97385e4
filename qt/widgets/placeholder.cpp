#include "qt/widgets/placeholder.h"

#include <QPainter>
#include <QTextOption>

#include "qt/widgets/palette_colors.h"

namespace pelmarix::qt {

void paintPlaceholder(QAbstractScrollArea& view, const QString& text, const QWidget* action) {
  QPainter painter(view.viewport());
  painter.setPen(placeholderColor(view.palette()));
  const int margin = view.fontMetrics().averageCharWidth() * 2;
  QRect room = view.viewport()->rect().adjusted(margin, 0, -margin, 0);
  if (action != nullptr)
    room.setBottom(view.viewport()->mapFrom(view.parentWidget(), action->pos()).y() - margin);
  // Paths are broken where they must be.
  QTextOption option(action == nullptr ? Qt::AlignCenter : Qt::AlignHCenter | Qt::AlignBottom);
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  painter.drawText(room, text, option);
}

}  // namespace pelmarix::qt
