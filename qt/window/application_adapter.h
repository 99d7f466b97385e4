// The running application over Qt's.
#pragma once

#include <QAction>
#include <QMenu>
#include <map>

#include "platform/application.h"

namespace pelmarix::qt {

class MenuItemAdapter final : public platform::MenuItem {
 public:
  /// `action` isn't owned and outlives the adapter.
  explicit MenuItemAdapter(QAction& action) : action_(action) {}
  void setState(int state) override;
  void setTitle(const std::string& title) override;

 private:
  QAction& action_;
};

class MenuAdapter final : public platform::Menu {
 public:
  /// `menu` isn't owned and outlives the adapter.
  explicit MenuAdapter(QMenu& menu) : menu_(menu) {}
  platform::MenuItem* itemWithTitle(const std::string& title) override;

 private:
  QMenu& menu_;
  std::map<QAction*, MenuItemAdapter> items_;
};

class ApplicationAdapter final : public platform::Application {
 public:
  /// `helpMenu` isn't owned and outlives the application.
  explicit ApplicationAdapter(QMenu& helpMenu) : helpMenu_(helpMenu) {}

  /// Ends every event loop once the running action has returned, those of modal alerts included.
  void terminate(platform::Object* sender) override;
  platform::Menu* helpMenu() override { return &helpMenu_; }

  /// True from the first call of terminate on: nothing is to be shown or started any more.
  bool isTerminating() const { return isTerminating_; }

 private:
  MenuAdapter helpMenu_;
  bool isTerminating_ = false;
};

}  // namespace pelmarix::qt
