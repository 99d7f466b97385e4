// The platform's text views and buttons over Qt widgets. No adapter owns its widget.
#pragma once

#include <QCheckBox>
#include <functional>

#include "platform/controls.h"
#include "qt/widgets/plain_text_widget.h"

namespace pelmarix::qt {

class TextAdapter final : public platform::TextView, public platform::TextStorage {
 public:
  explicit TextAdapter(PlainTextWidget& widget) : widget_(widget) {}

  platform::SharedText string() const override { return widget_.text(); }
  platform::TextStorage* textStorage() override { return this; }
  void setAttributedString(const platform::AttributedString& text) override;

 private:
  PlainTextWidget& widget_;
};

class CheckBoxAdapter final : public platform::Button {
 public:
  explicit CheckBoxAdapter(QCheckBox& widget) : widget_(widget) {}

  int state() const override;
  void setState(int state) override;

  /// Has the action sent whenever the user changed the state, as long as `context` lives. A screen reader
  /// that changes it for the user sends no QCheckBox::clicked.
  void setAction(QObject* context, std::function<void()> action);

 private:
  QCheckBox& widget_;
  bool isSettingState_ = false;
};

}  // namespace pelmarix::qt
