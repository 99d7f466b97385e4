#include "qt/widgets/check_box_adapter.h"

#include <QScopedValueRollback>
#include <utility>

namespace pelmarix::qt {

void CheckBoxAdapter::setState(int state) {
  const QScopedValueRollback<bool> setting(isSettingState_, true);
  widget_.setChecked(state == platform::stateOn);
}

void CheckBoxAdapter::setAction(QObject* context, std::function<void()> action) {
  QObject::connect(&widget_, &QCheckBox::toggled, context, [this, send = std::move(action)] {
    if (!isSettingState_) send();
  });
}

}  // namespace pelmarix::qt
