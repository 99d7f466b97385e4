#include "qt/window/window_adapter.h"

#include <gtest/gtest.h>

#include <QScreen>
#include <QWindow>

namespace pelmarix::test {
namespace {

class WindowAdapter : public testing::Test {
 protected:
  WindowAdapter() { widget.show(); }

  qt::WindowWidget widget;
  qt::WindowAdapter window{widget};
};

/// Answers as a test wants, and notes who asks.
class PlainDelegate final : public platform::WindowDelegate {
 public:
  bool windowShouldClose(platform::Window& sender) override {
    askedBy = &sender;
    return answer;
  }
  bool answer = true;
  platform::Window* askedBy = nullptr;
};

TEST_F(WindowAdapter, ShowsItsTitleAsItIs) {
  window.setTitle("Pelmarix \u2013 currently running macOS Version 10.14.6 [*] &a ");
  EXPECT_EQ(widget.windowHandle()->title(),
            QStringLiteral("Pelmarix \u2013 currently running macOS Version 10.14.6 [*] &a "));
}

TEST_F(WindowAdapter, ClosesWhenItsDelegateLetsIt) {
  PlainDelegate delegate;
  window.setDelegate(&delegate);
  EXPECT_TRUE(widget.close());
  EXPECT_FALSE(widget.isVisible());
  EXPECT_EQ(delegate.askedBy, &window);
}

TEST_F(WindowAdapter, StaysOpenWhenItsDelegateRefuses) {
  PlainDelegate delegate;
  delegate.answer = false;
  window.setDelegate(&delegate);
  EXPECT_FALSE(widget.close());
  EXPECT_TRUE(widget.isVisible());
}

TEST_F(WindowAdapter, ClosesWithoutADelegate) {
  PlainDelegate delegate;
  window.setDelegate(&delegate);
  window.setDelegate(nullptr);
  EXPECT_TRUE(widget.close());
  EXPECT_EQ(delegate.askedBy, nullptr);
}

TEST_F(WindowAdapter, FitsTheScreen) {
  const QSize screen = widget.screen()->availableSize();
  EXPECT_EQ(widget.width(), static_cast<int>(window.contentRect().width));
  EXPECT_LE(widget.width(), screen.width());
  EXPECT_LE(widget.height(), screen.height());
}

}  // namespace
}  // namespace pelmarix::test
