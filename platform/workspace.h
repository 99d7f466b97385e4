// What the desktop does for the program.
#pragma once

#include "platform/url.h"

namespace pelmarix::platform {

class Workspace {
 public:
  static Workspace& sharedWorkspace();

  virtual ~Workspace() = default;
  /// Opens the address in the user's default browser, every byte as it stands. One without a scheme opens
  /// nothing. A browser that can't be opened is not reported.
  virtual void openURL(const URL& url) = 0;
};

}  // namespace pelmarix::platform
