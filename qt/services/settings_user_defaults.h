// The user's preferences, where the system keeps those of programs.
#pragma once

#include <QHash>
#include <QSettings>
#include <QVariant>
#include <string>

#include "platform/user_defaults.h"

namespace pelmarix::qt {

/// What the platform's typed getters make of a stored value, whoever stored it. Text that is a decimal
/// number, blanks around it allowed, counts as that number, any other text as 0. Numbers other than 0, "true"
/// and "yes" are true.
double doubleOf(const QVariant& stored);
bool boolOf(const QVariant& stored);

/// Values are written when they are set. A file that can't be read, or holds something else than settings,
/// reads as if every key were missing. What can't be written, also because others keep the file locked for
/// more than a second, is kept for this run, and written with the next value that can be.
///
/// What was stored from outside is read as the platform's own getters read it: text that is a decimal number,
/// blanks around it allowed, is that number, and any other text 0; a number other than 0, "true" and "yes"
/// are true.
class SettingsUserDefaults final : public platform::UserDefaults {
 public:
  /// On a Mac the system's preferences of the bundle; elsewhere the INI file pelmarix/pelmarix.ini in the
  /// user's configuration folder: $XDG_CONFIG_HOME, or ~/.config when that is unset.
  SettingsUserDefaults();

  double doubleForKey(const std::string& key) const override;
  void setDoubleForKey(double value, const std::string& key) override;
  bool boolForKey(const std::string& key) const override;
  void setBoolForKey(bool value, const std::string& key) override;

 private:
  QVariant value(const std::string& key) const;
  void store(const QVariant& value, const std::string& key);

  QSettings settings_;
  QHash<QString, QVariant> unwritten_;
  bool isWritable_ = true;
};

}  // namespace pelmarix::qt
