// The system version of the volume that is looked at.
#pragma once

#include <string>
#include <string_view>

#include "platform/file_manager.h"
#include "platform/process_info.h"
#include "posix/volume.h"

namespace pelmarix::qt {

/// Read once, when it is made, from /System/Library/CoreServices/SystemVersion.plist: "Version " with the
/// text of ProductVersion and, where there is one, " (Build " with that of ProductBuildVersion and ")".
/// Texts of more than 255 bytes count as missing. Without a ProductVersion it is "Version unknown" of a
/// volume that was named, else what the machine says of itself.
class VolumeProcessInfo final : public platform::ProcessInfo {
 public:
  /// `volume` is what `files` reads below.
  VolumeProcessInfo(platform::FileManager& files, const posix::Volume& volume);

  std::string operatingSystemVersionString() const override { return versionString_; }
  platform::OperatingSystemVersion operatingSystemVersion() const override { return version_; }
  std::size_t activeProcessorCount() const override;

 private:
  std::string versionString_ = "Version unknown";
  platform::OperatingSystemVersion version_;
};

/// The numbers of a version such as "10.14.6". One that is missing, isn't written in digits alone or is too
/// large for an int is 0; what follows the third is left out.
platform::OperatingSystemVersion versionNumbers(std::string_view version);

}  // namespace pelmarix::qt
