#include "qt/services/desktop_workspace.h"

#include <QDesktopServices>
#include <QUrl>

#include "qt/services/text_conversion.h"

namespace pelmarix::qt {

void DesktopWorkspace::openURL(const platform::URL& url) {
  QDesktopServices::openUrl(QUrl(toQString(url.absoluteString()), QUrl::StrictMode));
}

}  // namespace pelmarix::qt
