#include "app/addresses.h"
#include "app/app_delegate.h"
#include "platform/fatal.h"
#include "platform/process_info.h"
#include "platform/workspace.h"

namespace pelmarix {
namespace {

constexpr int minorVersionOfSierra = 12;

void openPage(const char* address) {
  Workspace::sharedWorkspace().openURL(required(URL::fromString(address), "a page's address is not valid"));
}

}  // namespace

void AppDelegate::openSupport(Object* /*sender*/) { openPage(supportPageAddress); }

// The major version is left aside on purpose: there is no page for systems after 10.15, and those with a
// small minor version get the older one.
void AppDelegate::openUpdates(Object* /*sender*/) {
  const int minorVersion = ProcessInfo::processInfo().operatingSystemVersion().minorVersion;
  openPage(minorVersion < minorVersionOfSierra ? olderSystemUpdatesPageAddress
                                               : newerSystemUpdatesPageAddress);
}

}  // namespace pelmarix
