// What core tests install in place of the machine and the toolkit: real services where the standard library
// has them, recorders for the rest.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/alert.h"
#include "platform/services.h"
#include "platform/user_defaults.h"

namespace pelmarix::test {

/// An alert as the user saw it.
struct ShownAlert {
  std::string messageText;
  std::string informativeText;
  platform::AlertStyle style = {};  ///< none: an alert has to be given one
  std::vector<std::string> buttons;
  friend bool operator==(const ShownAlert&, const ShownAlert&) = default;
};

inline ShownAlert errorAlert(std::string message, std::string informative) {
  return {std::move(message), std::move(informative), platform::AlertStyle::critical, {"OK"}};
}

class MemoryUserDefaults final : public platform::UserDefaults {
 public:
  double doubleForKey(const std::string& key) const override {
    const auto found = doubles.find(key);
    return found == doubles.end() ? 0.0 : found->second;
  }
  void setDoubleForKey(double value, const std::string& key) override { doubles[key] = value; }
  bool boolForKey(const std::string& key) const override {
    const auto found = bools.find(key);
    return found != bools.end() && found->second;
  }
  void setBoolForKey(bool value, const std::string& key) override { bools[key] = value; }

  std::map<std::string, double> doubles;
  std::map<std::string, bool> bools;
};

/// Installs itself for its lifetime. A test sets the services that its subject needs beyond alerts and
/// defaults.
class TestServices {
 public:
  TestServices() {
    services.userDefaults = &userDefaults;
    services.isValidAddress = [](const std::string& text) { return text.find(' ') == std::string::npos; };
    services.tellSaved = [this](const std::string& path) { savedFiles.push_back(path); };
    services.makeAlert = [this] { return std::make_unique<RecordingAlert>(*this); };
    previous_ = platform::installServices(&services);
  }
  ~TestServices() { platform::installServices(previous_); }
  TestServices(const TestServices&) = delete;
  TestServices& operator=(const TestServices&) = delete;

  platform::Services services;
  MemoryUserDefaults userDefaults;
  /// Every alert shown, in order.
  std::vector<ShownAlert> alerts;
  /// The files that the user was told of, in order.
  std::vector<std::string> savedFiles;
  /// The user's answer to an alert; called while it is up.
  std::function<int(const ShownAlert&)> answer = [](const ShownAlert&) {
    return platform::alertFirstButtonReturn;
  };

 private:
  class RecordingAlert final : public platform::Alert {
   public:
    explicit RecordingAlert(TestServices& services) : services_(services) {}
    void setMessageText(const std::string& text) override { alert_.messageText = text; }
    void setInformativeText(const std::string& text) override { alert_.informativeText = text; }
    void setAlertStyle(platform::AlertStyle style) override { alert_.style = style; }
    void addButtonWithTitle(const std::string& title) override { alert_.buttons.push_back(title); }
    int runModal() override {
      services_.alerts.push_back(alert_);
      return services_.answer(alert_);
    }

   private:
    TestServices& services_;
    ShownAlert alert_;
  };

  const platform::Services* previous_ = nullptr;
};

}  // namespace pelmarix::test
