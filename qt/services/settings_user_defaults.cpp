#include "qt/services/settings_user_defaults.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QStandardPaths>
#include <QString>
#include <chrono>
#include <cmath>

#include "qt/services/text_conversion.h"

namespace pelmarix::qt {
namespace {

#ifdef __APPLE__

// By organization and application QSettings asks the system, which knows them by the bundle's identifier. By
// a file's name it doesn't.
QSettings openSettings() {
  return {QSettings::NativeFormat, QSettings::UserScope, QStringLiteral(PELMARIX_ORGANIZATION_DOMAIN),
          QStringLiteral("Pelmarix")};
}

bool canBeWritten(const QSettings& /*settings*/, std::chrono::milliseconds /*patience*/) { return true; }

#else

// Opening a FIFO waits until somebody else does.
bool isFileOrMissing(const QString& path) {
  const QFileInfo info(path);
  return info.isFile() || !info.exists();
}

QSettings openSettings() {
  const QString file = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                       QStringLiteral("/pelmarix/pelmarix.ini");
  // Below something that is no folder there is no file, and none can be made.
  return {isFileOrMissing(file) ? file : QStringLiteral("/dev/null/pelmarix.ini"), QSettings::IniFormat};
}

// The desktops' rules want it to be this user's alone.
void makeFolder(const QString& path) {
  if (QFileInfo::exists(path)) return;
  makeFolder(QFileInfo(path).path());
  QDir().mkdir(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

// QSettings writes under a lock, for which it waits as long as there is one, be it for good. So it is tried
// first whether that can be had.
bool canBeWritten(const QSettings& settings, std::chrono::milliseconds patience) {
  const QString file = settings.fileName();
  if (!isFileOrMissing(file)) return false;
  makeFolder(QFileInfo(file).path());
  const QFileInfo lockFile(file + QStringLiteral(".lock"));
  if (!lockFile.exists() && !lockFile.isSymLink()) return true;
  if (!lockFile.isFile()) return false;
  QLockFile lock(lockFile.filePath());
  lock.setStaleLockTime(std::chrono::seconds(1));
  return lock.tryLock(patience);
}

#endif

}  // namespace

double doubleOf(const QVariant& stored) {
  const double number = stored.toDouble();
  const bool isText = stored.typeId() == QMetaType::QString || stored.typeId() == QMetaType::QByteArray;
  return isText && !std::isfinite(number) ? 0.0 : number;
}

bool boolOf(const QVariant& stored) {
  const QString text = stored.toString().toLower();
  return text == QStringLiteral("true") || text == QStringLiteral("yes") || doubleOf(stored) != 0.0;
}

SettingsUserDefaults::SettingsUserDefaults() : settings_(openSettings()) {}

double SettingsUserDefaults::doubleForKey(const std::string& key) const { return doubleOf(value(key)); }

void SettingsUserDefaults::setDoubleForKey(double value, const std::string& key) {
  // A file has numbers as text, of which none is a NaN: where one is stored by its type, it stays as it is.
  if (std::isnan(value) && std::isnan(doubleForKey(key))) return;
  store(value, key);
}

bool SettingsUserDefaults::boolForKey(const std::string& key) const { return boolOf(value(key)); }

void SettingsUserDefaults::setBoolForKey(bool value, const std::string& key) { store(value, key); }

QVariant SettingsUserDefaults::value(const std::string& key) const {
  const QString name = toQString(key);
  return unwritten_.contains(name) ? unwritten_.value(name) : settings_.value(name);
}

void SettingsUserDefaults::store(const QVariant& value, const std::string& key) {
  unwritten_[toQString(key)] = value;
  // Once is enough to wait in vain.
  isWritable_ = canBeWritten(settings_, std::chrono::seconds(isWritable_ ? 1 : 0));
  if (!isWritable_) return;
  for (auto entry = unwritten_.cbegin(); entry != unwritten_.cend(); ++entry)
    settings_.setValue(entry.key(), entry.value());
  unwritten_.clear();
  settings_.sync();
}

}  // namespace pelmarix::qt
