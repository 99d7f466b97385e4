// What the desktop does for the program.
#pragma once

#include "platform/url.h"

namespace pelmarix::platform {

class Workspace {
 public:
  static Workspace& sharedWorkspace();

  virtual ~Workspace() = default;
  /// Opens the address in the user's default browser. False when that was refused.
  virtual bool openURL(const URL& url) = 0;
};

}  // namespace pelmarix::platform
