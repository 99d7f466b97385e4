#include "qt/services/desktop_workspace.h"

#include <QDesktopServices>

#include "qt/services/text_conversion.h"

namespace pelmarix::qt {

void DesktopWorkspace::openURL(const platform::URL& url) { QDesktopServices::openUrl(toQUrl(url)); }

}  // namespace pelmarix::qt
