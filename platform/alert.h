// Alerts: a message, a text that informs, buttons; shown modally.
#pragma once

#include <memory>
#include <string>

namespace pelmarix::platform {

enum class AlertStyle { informational = 1, critical = 2 };

/// What Alert::runModal returns for the first button; each further one is one more.
inline constexpr int alertFirstButtonReturn = 1000;
inline constexpr int alertSecondButtonReturn = 1001;

class Alert {
 public:
  /// A new alert of the installed toolkit.
  static std::unique_ptr<Alert> make();

  virtual ~Alert() = default;
  virtual void setMessageText(const std::string& text) = 0;
  virtual void setInformativeText(const std::string& text) = 0;
  virtual void setAlertStyle(AlertStyle style) = 0;
  /// Adds a button after those that are there; the first is the default.
  virtual void addButtonWithTitle(const std::string& title) = 0;
  /// Blocks until the user has dismissed the alert. Returns alertFirstButtonReturn plus the position of the
  /// chosen button in the order of adding; an alert closed in another way, or by the end of the program,
  /// counts as the first.
  virtual int runModal() = 0;
};

/// The alert that reports a failure: critical style, one button "OK". Blocks until dismissed.
void showErrorAlert(const std::string& messageText, const std::string& informativeText);

/// The message text of failures in the main window's work.
inline constexpr const char* lastActionErrorMessage = "An error occurred in your last action:";

}  // namespace pelmarix::platform
