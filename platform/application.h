// The running application, its menus, and the routine that everything starts from.
#pragma once

#include <string>

#include "platform/object.h"

namespace pelmarix::platform {

class MenuItem {
 public:
  virtual ~MenuItem() = default;
  /// One of stateOff, stateOn, stateMixed (platform/controls.h).
  virtual void setState(int state) = 0;
  virtual void setTitle(const std::string& title) = 0;
};

class Menu {
 public:
  virtual ~Menu() = default;
  /// Null when no item has exactly this title. The menu owns its items.
  virtual MenuItem* itemWithTitle(const std::string& title) = 0;
};

class Application {
 public:
  static Application& sharedApplication();

  virtual ~Application() = default;
  /// Ends the application once the running action has returned.
  virtual void terminate(Object* sender) = 0;
  /// Null when there is no Help menu.
  virtual Menu* helpMenu() = 0;
};

/// Loads the interface file, creates what it names, connects it and runs the application until it terminates.
/// Of the arguments only the program's name counts. Defined by the toolkit's own library.
void applicationMain(int argc, char** argv);

}  // namespace pelmarix::platform
