// What the desktop does for the program.
#pragma once

#include "platform/workspace.h"

namespace pelmarix::qt {

class DesktopWorkspace final : public Workspace {
 public:
  bool openURL(const URL& url) override;
};

}  // namespace pelmarix::qt
