// The user's stored preferences, read with typed getters.
#pragma once

#include <string>

namespace pelmarix::platform {

class UserDefaults {
 public:
  static UserDefaults& standardUserDefaults();

  virtual ~UserDefaults() = default;
  /// 0.0 when the key is missing or what is stored is no number. Every double that was set comes back
  /// unchanged, NaN included.
  virtual double doubleForKey(const std::string& key) const = 0;
  virtual void setDoubleForKey(double value, const std::string& key) = 0;
  /// False when the key is missing or what is stored is no truth value.
  virtual bool boolForKey(const std::string& key) const = 0;
  virtual void setBoolForKey(bool value, const std::string& key) = 0;
};

}  // namespace pelmarix::platform
