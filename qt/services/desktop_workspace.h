// What the desktop does for the program.
#pragma once

#include "platform/workspace.h"

namespace pelmarix::qt {

class DesktopWorkspace final : public platform::Workspace {
 public:
  void openURL(const platform::URL& url) override;
};

}  // namespace pelmarix::qt
