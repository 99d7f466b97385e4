// The platform's button over a Qt check box.
#pragma once

#include <QCheckBox>
#include <functional>

#include "platform/controls.h"

namespace pelmarix::qt {

/// Off or on: a mixed state counts as off.
class CheckBoxAdapter final : public platform::Button {
 public:
  /// `widget` isn't owned and outlives the adapter.
  explicit CheckBoxAdapter(QCheckBox& widget) : widget_(widget) {}

  int state() const override { return widget_.isChecked() ? platform::stateOn : platform::stateOff; }
  void setState(int state) override;

  /// Has the action sent whenever the user changed the state, as long as `context` lives. A screen reader
  /// that changes it for the user sends no QCheckBox::clicked.
  void setAction(QObject* context, std::function<void()> action);

 private:
  QCheckBox& widget_;
  bool isSettingState_ = false;
};

}  // namespace pelmarix::qt
