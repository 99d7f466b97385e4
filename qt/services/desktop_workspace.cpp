#include "qt/services/desktop_workspace.h"

#include <QProcess>

#include "qt/services/text_conversion.h"

namespace pelmarix::qt {
namespace {

// Programs that open an address in the browser that the user chose, the likeliest first.
QStringList openers() {
#ifdef Q_OS_MACOS
  return {QStringLiteral("/usr/bin/open")};
#else
  return {QStringLiteral("xdg-open"), qEnvironmentVariable("BROWSER"), QStringLiteral("x-www-browser")};
#endif
}

}  // namespace

// Not by QDesktopServices, which opens an address that is as good by RFC 3986 but has other letters: "A" for
// "%41".
void DesktopWorkspace::openURL(const platform::URL& url) {
  if (toQUrl(url).isRelative()) return;  // what doesn't begin with a scheme could be taken for an option
  QProcess browser;
  browser.setArguments({toQString(url.absoluteString())});
  browser.setStandardInputFile(QProcess::nullDevice());
  browser.setStandardOutputFile(QProcess::nullDevice());
  browser.setStandardErrorFile(QProcess::nullDevice());
  for (const QString& program : openers()) {
    browser.setProgram(program);
    if (!program.isEmpty() && browser.startDetached()) return;
  }
}

}  // namespace pelmarix::qt
