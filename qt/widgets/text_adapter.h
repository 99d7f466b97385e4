// The platform's text view over a Qt widget.
#pragma once

#include "platform/controls.h"
#include "qt/widgets/plain_text_view.h"

namespace pelmarix::qt {

class TextAdapter final : public platform::TextView, public platform::TextStorage {
 public:
  /// `widget` isn't owned and outlives the adapter.
  explicit TextAdapter(PlainTextView& widget) : widget_(widget) {}

  platform::SharedText string() const override { return widget_.text(); }
  platform::TextStorage* textStorage() override { return this; }
  void setAttributedString(const platform::AttributedString& text) override;

 private:
  PlainTextView& widget_;
};

}  // namespace pelmarix::qt
