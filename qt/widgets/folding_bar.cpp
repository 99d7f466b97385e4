#include "qt/widgets/folding_bar.h"

#include <algorithm>

namespace pelmarix::qt {

QLayoutItem* FoldingBar::options() const {
  QLayoutItem* const below = grid().itemAtPosition(1, 0);
  return below != nullptr ? below : grid().itemAtPosition(0, 2);
}

QSize FoldingBar::minimumSizeHint() const {
  if (layout() == nullptr) return QWidget::minimumSizeHint();
  const int spacing = grid().horizontalSpacing();
  const int first = grid().itemAtPosition(0, 0)->minimumSize().width() + 3 * spacing +
                    grid().itemAtPosition(0, 3)->minimumSize().width();
  return {std::max(first, options()->minimumSize().width()), layout()->minimumSize().height()};
}

void FoldingBar::resizeEvent(QResizeEvent* /*event*/) {
  QLayout* const moved = options()->layout();
  int needed = 3 * grid().horizontalSpacing();
  for (int item = 0; item < grid().count(); ++item) needed += grid().itemAt(item)->minimumSize().width();
  const bool isFolded = grid().itemAtPosition(1, 0) != nullptr;
  const bool mustFold = width() < needed;
  if (isFolded == mustFold) return;
  grid().removeItem(moved);
  if (mustFold)
    grid().addLayout(moved, 1, 0, 1, 4, Qt::AlignLeft);
  else
    grid().addLayout(moved, 0, 2);
}

}  // namespace pelmarix::qt
