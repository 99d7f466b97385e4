// The platform's text views and buttons over Qt widgets. No adapter owns its widget.
#pragma once

#include <QCheckBox>
#include <functional>

#include "platform/controls.h"
#include "qt/plain_text_widget.h"

namespace pelmarix::qt {

class TextAdapter final : public TextView, public TextStorage {
 public:
  explicit TextAdapter(PlainTextWidget& widget) : widget_(widget) {}

  SharedText string() const override { return widget_.text(); }
  TextStorage* textStorage() override { return this; }
  void setAttributedString(const AttributedString& text) override;

 private:
  PlainTextWidget& widget_;
};

class CheckBoxAdapter final : public Button {
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
