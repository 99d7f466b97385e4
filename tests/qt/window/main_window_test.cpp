#include "qt/window/main_window.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QScreen>
#include <QWindow>

namespace pelmarix::test {
namespace {

class MainWindow : public testing::Test {
 protected:
  MainWindow() { window.show(); }

  qt::MainWindow window;
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

TEST_F(MainWindow, ShowsItsTitleAsItIs) {
  window.setTitle("Pelmarix \u2013 currently running macOS Version 10.14.6 [*] &a ");
  EXPECT_EQ(window.windowHandle()->title(),
            QStringLiteral("Pelmarix \u2013 currently running macOS Version 10.14.6 [*] &a "));
}

TEST_F(MainWindow, HasASignInItsTitleForWhatCannotBeSeenAndTellsTheTitleAsItIs) {
  window.setTitle("Version \u202e10.14.6\u2069\u2028");
  EXPECT_EQ(window.windowHandle()->title(), QStringLiteral("Version \u21c410.14.6\u21c4\u2424"));
  EXPECT_EQ(QAccessible::queryAccessibleInterface(&window)->text(QAccessible::Name),
            QStringLiteral("Version \u202e10.14.6\u2069\u2028"));
}

TEST_F(MainWindow, ClosesWhenItsDelegateLetsIt) {
  PlainDelegate delegate;
  window.setDelegate(&delegate);
  EXPECT_TRUE(window.close());
  EXPECT_FALSE(window.isVisible());
  EXPECT_EQ(delegate.askedBy, &window);
}

TEST_F(MainWindow, StaysOpenWhenItsDelegateRefuses) {
  PlainDelegate delegate;
  delegate.answer = false;
  window.setDelegate(&delegate);
  EXPECT_FALSE(window.close());
  EXPECT_TRUE(window.isVisible());
}

TEST_F(MainWindow, ClosesWithoutADelegate) {
  PlainDelegate delegate;
  window.setDelegate(&delegate);
  window.setDelegate(nullptr);
  EXPECT_TRUE(window.close());
  EXPECT_EQ(delegate.askedBy, nullptr);
}

TEST_F(MainWindow, FitsTheScreen) {
  const QSize screen = window.screen()->availableSize();
  EXPECT_EQ(window.width(), static_cast<int>(window.contentRect().width));
  EXPECT_EQ(window.contentRect().x, 0);
  EXPECT_EQ(window.contentRect().y, 0);
  EXPECT_LE(window.width(), screen.width());
  EXPECT_LE(window.height(), screen.height());
  // Lists and report have room: much of a small screen is taken.
  EXPECT_GE(window.width(), screen.width() / 2);
  EXPECT_GE(window.height(), screen.height() / 2);
}

}  // namespace
}  // namespace pelmarix::test
