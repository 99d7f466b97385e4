#include "qt/widgets/quiet_application.h"

#include <QDir>
#include <QIcon>
#include <QLoggingCategory>
#include <clocale>

namespace pelmarix::qt {

std::unique_ptr<QApplication> makeApplication(int& argc, char** argv) {
  // What Qt misses in a session concerns no user. QT_LOGGING_RULES brings its warnings back.
  QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
#ifdef Q_OS_MACOS
  return std::make_unique<QApplication>(argc, argv);
#else
  // A locale whose name is no language's is remarked on by the library for fonts, too.
  if (std::setlocale(LC_CTYPE, "") == nullptr) qputenv("FC_LANG", "C");
  // Where the session has no folder of its own, Qt would make one among the temporary files, and leave it.
  const QByteArray temporaryFolder = qgetenv("TMPDIR");
  qputenv("TMPDIR", "/dev/null");
  auto application = std::make_unique<QApplication>(argc, argv);
  if (temporaryFolder.isNull())
    qunsetenv("TMPDIR");
  else
    qputenv("TMPDIR", temporaryFolder);
  // On Wayland desktops find the icon by this name, where the program is installed. On X11 they are given it.
  QApplication::setDesktopFileName(QStringLiteral(PELMARIX_BUNDLE_IDENTIFIER));
  QIcon icon;
  const QDir sizes(QStringLiteral(":/icon"));
  for (const QString& file : sizes.entryList()) icon.addFile(sizes.filePath(file));
  QApplication::setWindowIcon(icon);
  return application;
#endif
}

}  // namespace pelmarix::qt
