#include "qt/widgets/check_box_adapter.h"

#include <QScopedValueRollback>
#include <utility>

namespace pelmarix::qt {

int CheckBoxAdapter::state() const {
  const Qt::CheckState state = widget_.checkState();
  return state == Qt::Checked     ? platform::stateOn
         : state == Qt::Unchecked ? platform::stateOff
                                  : platform::stateMixed;
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
