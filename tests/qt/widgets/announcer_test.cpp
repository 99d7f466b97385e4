#include "qt/widgets/announcer.h"

#include <gtest/gtest.h>

#include <QAccessible>

namespace pelmarix::test {
namespace {

TEST(Announcer, IsANotificationThatIsNeverSeen) {
  QWidget window;
  qt::Announcer announcer(&window);
  window.show();
  announcer.announce(QStringLiteral("1 of 2"));
  const QAccessibleInterface& accessible = *QAccessible::queryAccessibleInterface(&announcer);
  EXPECT_EQ(accessible.role(), QAccessible::Notification);
  EXPECT_EQ(accessible.text(QAccessible::Name), QStringLiteral("1 of 2"));
  EXPECT_FALSE(announcer.isVisible());
}

}  // namespace
}  // namespace pelmarix::test
