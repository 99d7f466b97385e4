#include "qt/window/close_requests.h"

#include <gtest/gtest.h>

#include <QWidget>

namespace pelmarix::qt {
namespace {

// Under a real window manager they are seen end to end.
TEST(CloseRequests, LeaveAWindowAloneOnADisplayWithoutAWindowManager) {
  QWidget window;
  const CloseRequests requests(window);
  window.show();
  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(window.close());
  EXPECT_FALSE(window.isVisible());
}

}  // namespace
}  // namespace pelmarix::qt
