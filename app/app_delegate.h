// The application's delegate: what happens at launch, the update check, and the links of the Help menu.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/object.h"
#include "platform/url_session.h"

namespace pelmarix {

/// Keeps nothing itself: its state is in the user defaults, under three keys.
///
///   noUpdateCheck        bool, set from outside only: true switches the update check off
///   updateCheckInt       seconds, set from outside only: the least time between two checks; below 1.0, and
///                        where it is missing, 43200.0 (12 hours) is used and stored
///   dateLastUpdateCheck  seconds since 2001-01-01 00:00:00 UTC: when the last check was started
///
/// It must outlive the URL session's last call and the main queue's last block. All operations but
/// handleUpdateResponse belong on the main thread.
class AppDelegate : public platform::Object {
 public:
  void applicationDidFinishLaunching();
  void applicationWillTerminate();

  /// Checks for an update when the last check is longer ago than the interval, and writes the preferences
  /// back. The check's answer is handled later.
  void performLaunchTasks();

  /// Asks the maker's server for the update list and doesn't wait for it. Without an information dictionary
  /// nothing is asked; one without a version gives an alert, which blocks until it is dismissed; a version
  /// that is not text stops the program.
  void checkForUpdate();

  /// What the server answered, on the session's background thread. A list is handed to the main queue; any
  /// other answer ends the check silently, one of more than 256 KiB too.
  void handleUpdateResponse(const std::string& runningVersion, std::optional<std::string> body,
                            const std::shared_ptr<const platform::URLResponse>& response,
                            const std::optional<std::string>& error);

  /// Looks for this program in the list, no further than a list of 256 KiB can go, marks the Help menu when
  /// it is there, and offers each of its versions that is not the running one. The list is the maker's own
  /// and trusted: one that breaks the form stops the program, and so does a missing body.
  void processUpdateList(const std::optional<std::string>& body, const std::string& runningVersion);

  /// Opens the support page in the user's browser. A browser that can't be opened is not reported.
  void openSupport(platform::Object* sender);

  /// Opens the page about system updates that suits the running system.
  void openUpdates(platform::Object* sender);
};

}  // namespace pelmarix
