#include "qt/widgets/control_adapters.h"

#include <QScopedValueRollback>
#include <algorithm>
#include <cmath>
#include <utility>

namespace pelmarix::qt {

void TextAdapter::setAttributedString(const platform::AttributedString& text) {
  // Before the text, so that it is laid out once.
  // The settings can hold any number: one that is no size changes nothing, and what no font engine draws is
  // brought to what it does.
  if (text.font && !std::isnan(text.font->pointSize)) {
    constexpr double largestDrawn = 500.0;
    QFont font = widget_.font();
    font.setPointSizeF(std::clamp(text.font->pointSize, 1.0, largestDrawn));
    widget_.setFont(font);
  }
  // The standard text colour is the palette's own: the widget draws in it, and follows when it changes.
  widget_.showText(text.string);
}

int CheckBoxAdapter::state() const {
  switch (widget_.checkState()) {
    case Qt::Checked:
      return platform::stateOn;
    case Qt::PartiallyChecked:
      return platform::stateMixed;
    default:
      return platform::stateOff;
  }
}

void CheckBoxAdapter::setState(int state) {
  const QScopedValueRollback<bool> setting(isSettingState_, true);
  widget_.setCheckState(state == platform::stateOn    ? Qt::Checked
                        : state == platform::stateOff ? Qt::Unchecked
                                                      : Qt::PartiallyChecked);
}

void CheckBoxAdapter::setAction(QObject* context, std::function<void()> action) {
  QObject::connect(&widget_, &QCheckBox::toggled, context, [this, send = std::move(action)] {
    if (!isSettingState_) send();
  });
}

}  // namespace pelmarix::qt
