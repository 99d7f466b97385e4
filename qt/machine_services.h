// The services of the machine, ready to be installed.
#pragma once

#include "platform/services.h"
#include "qt/bundle.h"
#include "qt/file_manager.h"
#include "qt/main_queue.h"
#include "qt/process_info.h"
#include "qt/user_defaults.h"
#include "qt/workspace.h"

namespace pelmarix::qt {

/// All services but the application, alerts, save panels and the URL session, which belong to the windows and
/// to the network. To be made on the main thread when there is a QCoreApplication.
class MachineServices {
 public:
  MachineServices();
  MachineServices(const MachineServices&) = delete;
  MachineServices& operator=(const MachineServices&) = delete;

  /// Points into this object, whose owner adds what is missing and installs it.
  Services& services() { return services_; }
  MainQueue& mainQueue() { return mainQueue_; }

 private:
  PropertyListBundle bundle_;
  PosixFileManager fileManager_;
  MainQueue mainQueue_;
  VolumeProcessInfo processInfo_;
  SettingsUserDefaults userDefaults_;
  DesktopWorkspace workspace_;
  Services services_;
};

}  // namespace pelmarix::qt
