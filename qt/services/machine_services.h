// The services of the machine, ready to be installed.
#pragma once

#include "platform/services.h"
#include "posix/posix_file_manager.h"
#include "qt/services/desktop_workspace.h"
#include "qt/services/main_queue.h"
#include "qt/services/property_list_bundle.h"
#include "qt/services/settings_user_defaults.h"
#include "qt/services/volume_process_info.h"

namespace pelmarix::qt {

/// All services but the application, alerts, save panels and the URL session, which belong to the windows and
/// to the network. To be made on the main thread when there is a QCoreApplication.
class MachineServices {
 public:
  MachineServices();
  MachineServices(const MachineServices&) = delete;
  MachineServices& operator=(const MachineServices&) = delete;

  /// Points into this object, whose owner adds what is missing and installs it.
  platform::Services& services() { return services_; }
  MainQueue& mainQueue() { return mainQueue_; }
  const posix::Volume& volume() const { return volume_; }

 private:
  PropertyListBundle bundle_;
  posix::Volume volume_ = posix::Volume::fromEnvironment();
  posix::PosixFileManager fileManager_;
  MainQueue mainQueue_;
  VolumeProcessInfo processInfo_;
  SettingsUserDefaults userDefaults_;
  DesktopWorkspace workspace_;
  platform::Services services_;
};

}  // namespace pelmarix::qt
