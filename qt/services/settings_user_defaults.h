// The user's preferences in a settings file.
#pragma once

#include <QSettings>
#include <string>

#include "platform/user_defaults.h"

namespace pelmarix::qt {

/// Values are written when they are set. A file that can't be read, or holds something else than settings,
/// reads as if every key were missing; one that can't be written keeps nothing beyond this run.
///
/// Truth values set from outside may be "true", "yes" or a number other than 0; numbers may be written in any
/// form that the C locale reads.
class SettingsUserDefaults final : public platform::UserDefaults {
 public:
  /// On a Mac the property list of the bundle's identifier in ~/Library/Preferences; elsewhere the INI file
  /// pelmarix/pelmarix.ini in the user's configuration folder: $XDG_CONFIG_HOME, or ~/.config when that is
  /// unset.
  SettingsUserDefaults();

  double doubleForKey(const std::string& key) const override;
  void setDoubleForKey(double value, const std::string& key) override;
  bool boolForKey(const std::string& key) const override;
  void setBoolForKey(bool value, const std::string& key) override;

 private:
  QSettings settings_;
};

}  // namespace pelmarix::qt
