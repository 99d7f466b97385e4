#include <gmock/gmock.h>

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <cstdlib>
#include <filesystem>
#include <fstream>

int main(int argc, char** argv) {
  // A test has this program started once more, as the program does itself. Whoever waits sees the file whole.
  if (const char* const file = std::getenv("PELMARIX_TEST_STARTED_AGAIN"); file != nullptr) {
    const std::string unfinished = std::string(file) + "~";
    std::ofstream(unfinished, std::ios::binary) << std::getenv("PELMARIX_VOLUME");
    std::filesystem::rename(unfinished, file);
    return EXIT_SUCCESS;
  }
  // No display is needed, and nothing of the user's is read or written.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QTemporaryDir home;
  qputenv("HOME", home.path().toUtf8());
  qputenv("XDG_CONFIG_HOME", home.filePath(QStringLiteral("config")).toUtf8());
  qputenv("XDG_DATA_HOME", home.filePath(QStringLiteral("data")).toUtf8());
  qputenv("XDG_RUNTIME_DIR", home.path().toUtf8());
  testing::InitGoogleMock(&argc, argv);
  const QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  // As in the program: Qt's file dialog stores nothing.
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
  return RUN_ALL_TESTS();
}
