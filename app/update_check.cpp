#include <any>
#include <string_view>
#include <utility>

#include "app/addresses.h"
#include "app/app_delegate.h"
#include "base/fatal.h"
#include "platform/alert.h"
#include "platform/application.h"
#include "platform/bundle.h"
#include "platform/controls.h"
#include "platform/services.h"
#include "platform/text.h"
#include "platform/workspace.h"
#include "plist/document.h"

namespace pelmarix {
namespace {

constexpr const char* errorMessage = "An error occurred:";
constexpr const char* versionKey = "CFBundleShortVersionString";
constexpr std::string_view nameInList = "Pelmarix";

/// An answer that may hold a list. The media types are compared letter by letter: a server that means a list
/// says so in exactly one of these two ways.
bool isAcceptable(const platform::URLResponse* response) {
  const auto* http = dynamic_cast<const platform::HTTPURLResponse*>(response);
  if (http == nullptr || http->statusCode() < 200 || http->statusCode() > 299) return false;
  return http->mimeType() == "text/xml" || http->mimeType() == "text/plain";
}

std::string_view requiredString(plist::Value entry, std::string_view key) {
  const plist::Value value = required(entry.find(key), "an entry of the update list lacks a key");
  return required(value.string(), "a value in the update list is not a string");
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
  if (alert->runModal() != platform::alertSecondButtonReturn) return;
  platform::Workspace::sharedWorkspace().openURL(
      required(platform::URL::fromString(address), "the update list holds an address that is not valid"));
}

}  // namespace

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

  const platform::URL address =
      required(platform::URL::fromString(updateListAddress), "the update list's address is not valid");
  platform::URLSession::sharedSession()
      .dataTaskWithURLCompletionHandler(
          address,
          [this, runningVersion](auto body, const auto& response, const auto& error) {
            handleUpdateResponse(runningVersion, std::move(body), response, error);
          })
      ->resume();
}

void AppDelegate::handleUpdateResponse(const std::string& runningVersion, std::optional<std::string> body,
                                       const std::shared_ptr<const platform::URLResponse>& response,
                                       const std::optional<std::string>& error) {
  if (error || !isAcceptable(response.get())) return;
  platform::dispatchAsyncToMainQueue(
      [this, runningVersion, body = std::move(body)] { processUpdateList(body, runningVersion); });
}

void AppDelegate::processUpdateList(const std::optional<std::string>& body,
                                    const std::string& runningVersion) {
  if (!body) fatalStop("the update list's answer has no body");
  const Result<plist::Document, plist::Error> list = plist::Document::decode(*body);
  if (!list) {
    platform::showErrorAlert(errorMessage, "Error in update Property List.");
    return;
  }
  const plist::Value root = list->root();
  if (root.type() != plist::Type::array) fatalStop("the update list is not an array");
  if (root.count() < 1) {
    platform::showErrorAlert(errorMessage, "Update Property List has no entries.");
    return;
  }
  for (const plist::Value entry : root.elements()) {
    if (entry.type() != plist::Type::dictionary) fatalStop("an entry of the update list is not a dictionary");
    if (!platform::textEquals(requiredString(entry, "AppName"), nameInList)) continue;
    markHelpMenu();
    const std::string version(requiredString(entry, "Version"));
    const std::string address(requiredString(entry, "URL"));
    if (platform::textEquals(version, runningVersion)) continue;
    if (platform::textContains(address, downloadHostPrefix)) offerUpdate(version, runningVersion, address);
  }
}

}  // namespace pelmarix
