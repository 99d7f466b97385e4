#include "qt/widgets/elided_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace pelmarix::qt {

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

QSize ElidedLabel::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() * 10, QLabel::minimumSizeHint().height()};
}

QString ElidedLabel::shownText() const {
  return fontMetrics().elidedText(text(), Qt::ElideMiddle, contentsRect().width());
}

bool ElidedLabel::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QLabel::event(event);
  // As rich text, so that it wraps and no markup in it takes effect.
  const QString tip =
      shownText() == text() ? QString() : QStringLiteral("<p>%1</p>").arg(text().toHtmlEscaped());
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), tip, this);
  return true;
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  style()->drawItemText(&painter, contentsRect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                        shownText(), foregroundRole());
}

}  // namespace pelmarix::qt
