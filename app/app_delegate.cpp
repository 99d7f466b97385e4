#include "app/app_delegate.h"

#include "platform/services.h"
#include "platform/user_defaults.h"

namespace pelmarix {
namespace {

constexpr const char* noUpdateCheckKey = "noUpdateCheck";
constexpr const char* updateCheckIntervalKey = "updateCheckInt";
constexpr const char* lastUpdateCheckKey = "dateLastUpdateCheck";

constexpr double shortestInterval = 1.0;
constexpr double usualInterval = 43200.0;

}  // namespace

void AppDelegate::applicationDidFinishLaunching() { performLaunchTasks(); }

void AppDelegate::applicationWillTerminate() {}

void AppDelegate::performLaunchTasks() {
  platform::UserDefaults& defaults = platform::UserDefaults::standardUserDefaults();
  const bool skip = defaults.boolForKey(noUpdateCheckKey);
  const double last = defaults.doubleForKey(lastUpdateCheckKey);
  double interval = defaults.doubleForKey(updateCheckIntervalKey);
  // An interval that is not a number stays: no time is longer than it, so it switches the check off.
  if (interval < shortestInterval) interval = usualInterval;

  const double now = platform::currentDate().timeIntervalSinceReferenceDate;
  if (now - last > interval && !skip) {
    checkForUpdate();
    defaults.setDoubleForKey(platform::currentDate().timeIntervalSinceReferenceDate, lastUpdateCheckKey);
  }
  defaults.setBoolForKey(skip, noUpdateCheckKey);
  defaults.setDoubleForKey(interval, updateCheckIntervalKey);
}

}  // namespace pelmarix
