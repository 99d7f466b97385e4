// What the running system says of itself. Away from a Mac that is the system of the volume that is looked at.
#pragma once

#include <cstddef>
#include <string>

namespace pelmarix::platform {

struct OperatingSystemVersion {
  int majorVersion = 0;
  int minorVersion = 0;
  int patchVersion = 0;
};

class ProcessInfo {
 public:
  static ProcessInfo& processInfo();

  virtual ~ProcessInfo() = default;
  /// For people, for example "Version 10.14.6 (Build 18G103)".
  virtual std::string operatingSystemVersionString() const = 0;
  virtual OperatingSystemVersion operatingSystemVersion() const = 0;
  /// How many processors this program may use on the machine that it runs on; at least 1.
  virtual std::size_t activeProcessorCount() const = 0;
};

}  // namespace pelmarix::platform
