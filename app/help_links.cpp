#include "app/addresses.h"
#include "app/app_delegate.h"
#include "base/fatal.h"
#include "platform/process_info.h"
#include "platform/workspace.h"

namespace pelmarix {
namespace {

constexpr int minorVersionOfSierra = 12;

void openPage(const char* address) {
  platform::Workspace::sharedWorkspace().openURL(
      required(platform::URL::fromString(address), "a page's address is not valid"));
}

}  // namespace

void AppDelegate::openSupport(platform::Object* /*sender*/) { openPage(supportPageAddress); }

// The major version is left aside on purpose: there is no page for systems after 10.15, and those with a
// small minor version get the older one.
void AppDelegate::openUpdates(platform::Object* /*sender*/) {
  const int minorVersion = platform::ProcessInfo::processInfo().operatingSystemVersion().minorVersion;
  openPage(minorVersion < minorVersionOfSierra ? olderSystemUpdatesPageAddress
                                               : newerSystemUpdatesPageAddress);
}

}  // namespace pelmarix
