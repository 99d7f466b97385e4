// Alerts as message boxes.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/alert.h"
#include "qt/services/main_queue.h"

class QWidget;

namespace pelmarix::qt {

/// A text of more than 10,000 characters is cut.
class MessageAlert final : public platform::Alert {
 public:
  /// `parent`, null for none, is the window that the alert belongs to; one that goes while the alert is up
  /// takes it along. `mainQueue` outlives the alert and waits while that is up, so that no answer of the
  /// network comes over it. `isTerminating` tells that the program is ending: then nothing is shown.
  MessageAlert(QWidget* parent, MainQueue& mainQueue, std::function<bool()> isTerminating);

  void setMessageText(const std::string& text) override { messageText_ = text; }
  void setInformativeText(const std::string& text) override { informativeText_ = text; }
  void setAlertStyle(platform::AlertStyle style) override { style_ = style; }
  void addButtonWithTitle(const std::string& title) override { buttons_.push_back(title); }
  int runModal() override;

 private:
  QWidget* parent_;
  MainQueue& mainQueue_;
  std::function<bool()> isTerminating_;
  std::string messageText_;
  std::string informativeText_;
  platform::AlertStyle style_ = platform::AlertStyle::informational;
  std::vector<std::string> buttons_;
};

}  // namespace pelmarix::qt
