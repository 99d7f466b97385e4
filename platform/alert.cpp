#include "platform/alert.h"

namespace pelmarix::platform {

void showErrorAlert(const std::string& messageText, const std::string& informativeText) {
  const std::unique_ptr<Alert> alert = Alert::make();
  alert->setMessageText(messageText);
  alert->setInformativeText(informativeText);
  alert->setAlertStyle(AlertStyle::critical);
  alert->addButtonWithTitle("OK");
  alert->runModal();
}

}  // namespace pelmarix::platform
