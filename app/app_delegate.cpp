#include "app/app_delegate.h"

#include <any>
#include <string_view>
#include <utility>

#include "app/addresses.h"
#include "base/budget.h"
#include "base/fatal.h"
#include "platform/alert.h"
#include "platform/application.h"
#include "platform/bundle.h"
#include "platform/controls.h"
#include "platform/process_info.h"
#include "platform/services.h"
#include "platform/text.h"
#include "platform/user_defaults.h"
#include "platform/workspace.h"
#include "plist/document.h"

namespace pelmarix {
namespace {

constexpr const char* noUpdateCheckKey = "noUpdateCheck";
constexpr const char* updateCheckIntervalKey = "updateCheckInt";
constexpr const char* lastUpdateCheckKey = "dateLastUpdateCheck";

constexpr double shortestInterval = 1.0;
constexpr double usualInterval = 43200.0;

constexpr const char* errorMessage = "An error occurred:";
constexpr const char* versionKey = "CFBundleShortVersionString";
constexpr std::string_view nameInList = "Pelmarix";

// The list is read while the window waits: a larger one is none, and no more is looked at in it than so much
// would hold (a binary list can name one entry of many keys, or one long text, in a million places).
constexpr std::size_t maximumListSize = std::size_t{256} << 10U;

constexpr int minorVersionOfSierra = 12;

// The maker's addresses are trusted: one that is not valid stops the program.
platform::URL urlOf(const std::string& address) {
  const std::optional<platform::URL> url = platform::URL::fromString(address);
  if (!url) fatalStop("an address is not valid");
  return *url;
}

void openPage(const std::string& address) { platform::Workspace::sharedWorkspace().openURL(urlOf(address)); }

// An answer that may hold a list. The media types are compared letter by letter: a server that means a list
// says so in exactly one of these two ways.
bool isAcceptable(const platform::URLResponse* response) {
  const auto* http = dynamic_cast<const platform::HTTPURLResponse*>(response);
  if (http == nullptr || http->statusCode() < 200 || http->statusCode() > 299) return false;
  return http->mimeType() == "text/xml" || http->mimeType() == "text/plain";
}

std::string_view stringUnder(std::string_view key, plist::Value entry) {
  const std::optional<plist::Value> value = entry.find(key);
  if (!value) fatalStop("an entry of the update list lacks a key");
  const std::optional<std::string_view> text = value->string();
  if (!text) fatalStop("a value in the update list is not a string");
  return *text;
}

void markHelpMenu() {
  platform::Menu* const helpMenu = platform::Application::sharedApplication().helpMenu();
  if (helpMenu == nullptr) return;
  platform::MenuItem* const item = helpMenu->itemWithTitle("Update not checked");
  if (item == nullptr) return;
  item->setState(platform::stateOn);
  item->setTitle("Checked for update");
}

void offerUpdate(const std::string& version, const std::string& runningVersion, const std::string& address) {
  const std::unique_ptr<platform::Alert> alert = platform::Alert::make();
  alert->setMessageText("An update to this app to version " + version + " is available.");
  alert->setInformativeText("You are currently running Pelmarix version " + runningVersion +
                            ".\nPlease choose whether to download this update now in your default browser.");
  alert->setAlertStyle(platform::AlertStyle::informational);
  alert->addButtonWithTitle("Ignore");
  alert->addButtonWithTitle("Download");
  if (alert->runModal() == platform::alertSecondButtonReturn) openPage(address);
}

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

void AppDelegate::checkForUpdate() {
  const std::optional<platform::InfoDictionary> info = platform::Bundle::mainBundle().infoDictionary();
  if (!info || info->empty()) return;
  const auto version = info->find(versionKey);
  if (version == info->end()) {
    platform::showErrorAlert(errorMessage, "Can't check for updates:\nNo app version string found.");
    return;
  }
  const auto& runningVersion =
      required(std::any_cast<std::string>(&version->second), "the bundle's version is not a string");

  platform::URLSession::sharedSession()
      .dataTaskWithURLCompletionHandler(
          urlOf(updateListAddress),
          [this, runningVersion](auto body, const auto& response, const auto& error) {
            handleUpdateResponse(runningVersion, std::move(body), response, error);
          })
      ->resume();
}

void AppDelegate::handleUpdateResponse(const std::string& runningVersion, std::optional<std::string> body,
                                       const std::shared_ptr<const platform::URLResponse>& response,
                                       const std::optional<std::string>& error) {
  if (error || !isAcceptable(response.get()) || (body && body->size() > maximumListSize)) return;
  platform::dispatchAsyncToMainQueue(
      [this, runningVersion, body = std::move(body)] { processUpdateList(body, runningVersion); });
}

void AppDelegate::processUpdateList(const std::optional<std::string>& body,
                                    const std::string& runningVersion) {
  if (!body) fatalStop("the update list's answer has no body");
  const auto list = plist::Document::decode(*body);
  if (!list) {
    platform::showErrorAlert(errorMessage, "Error in update Property List.");
    return;
  }
  const plist::Value root = list->root();
  if (root.type() != plist::Type::array) fatalStop("the update list is not an array");
  if (root.count() == 0) {
    platform::showErrorAlert(errorMessage, "Update Property List has no entries.");
    return;
  }
  Budget budget(maximumListSize);
  for (const plist::Value entry : root.elements()) {
    if (entry.type() != plist::Type::dictionary) fatalStop("an entry of the update list is not a dictionary");
    if (!budget.spend(entry.count() * costOfKey)) return;
    const std::string_view name = stringUnder("AppName", entry);
    if (!budget.spend(name.size())) return;
    if (!platform::textEquals(name, nameInList)) continue;
    markHelpMenu();
    const std::string version(stringUnder("Version", entry));
    const std::string address(stringUnder("URL", entry));
    if (!budget.spend(version.size() + address.size())) return;
    if (platform::textEquals(version, runningVersion)) continue;
    if (platform::textContains(address, downloadHostPrefix)) offerUpdate(version, runningVersion, address);
  }
}

void AppDelegate::openSupport(platform::Object* /*sender*/) { openPage(supportPageAddress); }

void AppDelegate::openUpdates(platform::Object* /*sender*/) {
  // The major version is left aside on purpose: there is no page for systems after 10.15, and those with a
  // small minor version get the older one.
  const int minorVersion = platform::ProcessInfo::processInfo().operatingSystemVersion().minorVersion;
  openPage(minorVersion < minorVersionOfSierra ? olderSystemUpdatesPageAddress
                                               : newerSystemUpdatesPageAddress);
}

}  // namespace pelmarix
