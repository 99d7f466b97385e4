#include "qt/workspace.h"

#include <QDesktopServices>
#include <QUrl>

#include "qt/text_conversion.h"

namespace pelmarix::qt {

bool DesktopWorkspace::openURL(const URL& url) {
  return QDesktopServices::openUrl(QUrl(toQString(url.absoluteString()), QUrl::StrictMode));
}

}  // namespace pelmarix::qt
