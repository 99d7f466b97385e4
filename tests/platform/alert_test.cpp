#include "platform/alert.h"

#include <gtest/gtest.h>

#include "tests/support/test_services.h"

namespace pelmarix {
namespace {

TEST(ErrorAlert, IsCriticalWithOneOkButton) {
  test::TestServices services;
  platform::showErrorAlert("An error occurred:", "The reason.");
  ASSERT_EQ(services.alerts.size(), 1u);
  EXPECT_EQ(services.alerts[0], test::errorAlert("An error occurred:", "The reason."));
  EXPECT_EQ(static_cast<int>(services.alerts[0].style), 2);
}

}  // namespace
}  // namespace pelmarix
