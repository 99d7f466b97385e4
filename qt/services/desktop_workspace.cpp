#include "qt/services/desktop_workspace.h"

#include <QDesktopServices>
#include <QUrl>

#include "qt/services/text_conversion.h"

namespace pelmarix::qt {

bool DesktopWorkspace::openURL(const platform::URL& url) {
  return QDesktopServices::openUrl(QUrl(toQString(url.absoluteString()), QUrl::StrictMode));
}

}  // namespace pelmarix::qt
