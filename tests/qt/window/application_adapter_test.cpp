#include "qt/window/application_adapter.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QTimer>

#include "platform/controls.h"

namespace pelmarix::test {
namespace {

TEST(MenuAdapter, FindsAnItemByItsWholeTitle) {
  QMenu qtMenu;
  QAction* item = qtMenu.addAction(QStringLiteral("&Update not checked"));
  qtMenu.addSeparator();
  qtMenu.addAction(QStringLiteral("Save && close"));
  qt::MenuAdapter menu(qtMenu);
  ASSERT_NE(menu.itemWithTitle("Update not checked"), nullptr);
  EXPECT_EQ(menu.itemWithTitle("Update not"), nullptr);
  EXPECT_EQ(menu.itemWithTitle(""), nullptr);
  EXPECT_NE(menu.itemWithTitle("Save & close"), nullptr);
  EXPECT_EQ(menu.itemWithTitle("Update not checked"), menu.itemWithTitle("Update not checked"));

  menu.itemWithTitle("Update not checked")->setState(platform::stateOn);
  EXPECT_TRUE(item->isCheckable());
  EXPECT_TRUE(item->isChecked());
  menu.itemWithTitle("Update not checked")->setTitle("Checked & done");
  EXPECT_EQ(menu.itemWithTitle("Update not checked"), nullptr);
  ASSERT_NE(menu.itemWithTitle("Checked & done"), nullptr);
  menu.itemWithTitle("Checked & done")->setState(platform::stateOff);
  EXPECT_FALSE(item->isChecked());
}

TEST(ApplicationAdapter, EndsAllEventLoopsOnceTheActionHasReturned) {
  QMenu helpMenu;
  qt::ApplicationAdapter application(helpMenu);
  EXPECT_FALSE(application.isTerminating());
  bool actionReturned = false;
  QTimer::singleShot(0, [&] {
    QEventLoop inner;
    QTimer::singleShot(0, [&] {
      application.terminate(nullptr);
      actionReturned = true;
    });
    inner.exec();
  });
  EXPECT_EQ(QApplication::exec(), 0);
  EXPECT_TRUE(actionReturned);
  EXPECT_TRUE(application.isTerminating());
}

}  // namespace
}  // namespace pelmarix::test
