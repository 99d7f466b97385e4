#include "qt/services/settings_user_defaults.h"

#include <QStandardPaths>
#include <QString>
#include <QVariant>

#include "qt/services/text_conversion.h"

namespace pelmarix::qt {
namespace {

#ifdef __APPLE__
constexpr QSettings::Format format = QSettings::NativeFormat;
QString settingsFile() {
  return QStandardPaths::writableLocation(QStandardPaths::HomeLocation) +
         QStringLiteral("/Library/Preferences/" PELMARIX_BUNDLE_IDENTIFIER ".plist");
}
#else
constexpr QSettings::Format format = QSettings::IniFormat;
QString settingsFile() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
         QStringLiteral("/pelmarix/pelmarix.ini");
}
#endif

// Nothing stored, or no number, is 0.
double number(const QVariant& value) {
  bool isNumber = false;
  const double result = value.toDouble(&isNumber);
  return isNumber ? result : 0.0;
}

}  // namespace

SettingsUserDefaults::SettingsUserDefaults() : settings_(settingsFile(), format) {}

double SettingsUserDefaults::doubleForKey(const std::string& key) const {
  return number(settings_.value(toQString(key)));
}

void SettingsUserDefaults::setDoubleForKey(double value, const std::string& key) {
  settings_.setValue(toQString(key), value);
  settings_.sync();
}

bool SettingsUserDefaults::boolForKey(const std::string& key) const {
  const QVariant value = settings_.value(toQString(key));
  const QString text = value.toString().toLower();
  return text == QStringLiteral("true") || text == QStringLiteral("yes") || number(value) != 0.0;
}

void SettingsUserDefaults::setBoolForKey(bool value, const std::string& key) {
  settings_.setValue(toQString(key), value);
  settings_.sync();
}

}  // namespace pelmarix::qt
