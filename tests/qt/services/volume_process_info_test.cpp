#include "qt/services/volume_process_info.h"

#include <gtest/gtest.h>

#include <QSysInfo>

#include "posix/posix_file_manager.h"
#include "qt/services/text_conversion.h"
#include "tests/support/temporary_folder.h"

namespace pelmarix::platform {
/// For failure messages and comparisons in tests.
bool operator==(const OperatingSystemVersion& left, const OperatingSystemVersion& right) {
  return left.majorVersion == right.majorVersion && left.minorVersion == right.minorVersion &&
         left.patchVersion == right.patchVersion;
}
}  // namespace pelmarix::platform

namespace pelmarix::qt {
namespace {

/// What is said of a volume whose SystemVersion.plist has this content.
VolumeProcessInfo infoOf(const std::string& systemVersion) {
  const test::TemporaryFolder volume;
  volume.addFile("System/Library/CoreServices/SystemVersion.plist", systemVersion);
  const posix::Volume root(volume.path());
  posix::PosixFileManager files{root};
  return VolumeProcessInfo(files, root);
}

std::string dictionary(const std::string& entries) { return "<plist><dict>" + entries + "</dict></plist>"; }

TEST(VolumeProcessInfo, TellsNoVersionThatIsLongerThanVersionsAre) {
  const auto titleOf = [](const std::string& version) {
    return infoOf(dictionary("<key>ProductVersion</key><string>" + version + "</string>"))
        .operatingSystemVersionString();
  };
  EXPECT_EQ(titleOf(std::string(255, '1')), "Version " + std::string(255, '1'));
  EXPECT_EQ(titleOf(std::string(256, '1')), titleOf(""));
}

TEST(VolumeProcessInfo, TellsVersionAndBuildOfTheVolume) {
  const auto info =
      infoOf(dictionary("<key>ProductBuildVersion</key><string>18G103</string>"
                        "<key>ProductName</key><string>Mac OS X</string>"
                        "<key>ProductVersion</key><string>10.14.6</string>"));
  EXPECT_EQ(info.operatingSystemVersionString(), "Version 10.14.6 (Build 18G103)");
  EXPECT_EQ(info.operatingSystemVersion(), (platform::OperatingSystemVersion{10, 14, 6}));
}

TEST(VolumeProcessInfo, TellsTheVersionAloneWhereTheBuildIsMissing) {
  const auto info = infoOf(dictionary("<key>ProductVersion</key><string>11.2</string>"));
  EXPECT_EQ(info.operatingSystemVersionString(), "Version 11.2");
  EXPECT_EQ(info.operatingSystemVersion(), (platform::OperatingSystemVersion{11, 2, 0}));
}

void expectUnknown(const VolumeProcessInfo& info) {
  EXPECT_EQ(info.operatingSystemVersionString(), "Version unknown");
  EXPECT_EQ(info.operatingSystemVersion(), (platform::OperatingSystemVersion{0, 0, 0}));
}

TEST(VolumeProcessInfo, NeverTellsTheMachinesOwnOfAVolumeWhoseFileTellsNothing) {
  expectUnknown(infoOf(dictionary("<key>ProductBuildVersion</key><string>18G103</string>")));
  expectUnknown(infoOf(dictionary("<key>ProductVersion</key><real>10.14</real>")));
  expectUnknown(infoOf(dictionary("<key>ProductVersion</key><string></string>")));
  expectUnknown(infoOf("<plist><array/></plist>"));
  expectUnknown(infoOf("not a property list"));
  expectUnknown(infoOf(""));
}

TEST(VolumeProcessInfo, NeverTellsTheMachinesOwnOfAVolumeWhoseFileIsMissingOrNoFile) {
  const test::TemporaryFolder folder;
  const posix::Volume volume(folder.path());
  posix::PosixFileManager files{volume};
  expectUnknown(VolumeProcessInfo(files, volume));
  folder.addFolder("System/Library/CoreServices/SystemVersion.plist");
  expectUnknown(VolumeProcessInfo(files, volume));
}

TEST(VolumeProcessInfo, TellsTheMachinesOwnOfTheMachineWithoutTheFile) {
  const test::TemporaryFolder nothing;
  posix::PosixFileManager files{posix::Volume(nothing.path())};
  const VolumeProcessInfo info(files, posix::Volume());
  EXPECT_EQ(info.operatingSystemVersionString(), toUtf8(QSysInfo::prettyProductName()));
  EXPECT_EQ(info.operatingSystemVersion(), versionNumbers(toUtf8(QSysInfo::productVersion())));
}

TEST(VersionNumbers, AreTheFirstThree) {
  EXPECT_EQ(versionNumbers("10.14.6"), (platform::OperatingSystemVersion{10, 14, 6}));
  EXPECT_EQ(versionNumbers("10.14"), (platform::OperatingSystemVersion{10, 14, 0}));
  EXPECT_EQ(versionNumbers("12"), (platform::OperatingSystemVersion{12, 0, 0}));
  EXPECT_EQ(versionNumbers("10.14.6.7"), (platform::OperatingSystemVersion{10, 14, 6}));
}

TEST(VersionNumbers, AreZeroWhereThereIsNoNumber) {
  EXPECT_EQ(versionNumbers(""), (platform::OperatingSystemVersion{0, 0, 0}));
  EXPECT_EQ(versionNumbers("Catalina"), (platform::OperatingSystemVersion{0, 0, 0}));
  EXPECT_EQ(versionNumbers("10..3"), (platform::OperatingSystemVersion{10, 0, 3}));
  EXPECT_EQ(versionNumbers("."), (platform::OperatingSystemVersion{0, 0, 0}));
  EXPECT_EQ(versionNumbers("10.14beta.3"), (platform::OperatingSystemVersion{10, 0, 3}));
  EXPECT_EQ(versionNumbers("-10.+1. 2"), (platform::OperatingSystemVersion{0, 0, 0}));
  EXPECT_EQ(versionNumbers("99999999999.14"), (platform::OperatingSystemVersion{0, 14, 0}));
}

}  // namespace
}  // namespace pelmarix::qt
