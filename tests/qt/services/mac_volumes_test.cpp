#include "qt/services/mac_volumes.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "tests/support/temporary_folder.h"

namespace pelmarix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MacVolumes : public testing::Test {
 protected:
  /// A folder with an install history in it.
  qt::MacVolume addMac(const std::string& path, const std::string& name) const {
    folder.addFile(path + "/Library/Receipts/InstallHistory.plist");
    return addOther(path, name);
  }
  qt::MacVolume addOther(const std::string& path, const std::string& name) const {
    return {QString::fromStdString(name), QString::fromStdString(folder.addFolder(path))};
  }
  static std::vector<std::string> names(const QList<qt::MacVolume>& volumes) {
    std::vector<std::string> result;
    for (const qt::MacVolume& volume : volumes) result.push_back(volume.name.toStdString());
    return result;
  }

  TemporaryFolder folder;
};

TEST_F(MacVolumes, AreThoseThatHoldAnInstallHistory) {
  const QList<qt::MacVolume> volumes{addOther("root", ""), addMac("a", "Old Mac"), addOther("usb", "Photos"),
                                     addMac("b", "Old Mac")};
  EXPECT_THAT(names(qt::withInstallHistory(volumes)), ElementsAre("Old Mac", "Old Mac"));
  EXPECT_THAT(qt::withInstallHistory({volumes[0], volumes[2]}), IsEmpty());
}

TEST_F(MacVolumes, ComeWithTheSystemThatHasNoHistoryOfItsOwn) {
  const QList<qt::MacVolume> volumes{addOther("m/Macintosh HD", "Macintosh HD"),
                                     addOther("m/Photos", "Photos"),
                                     addMac("m/Macintosh HD - Data", "Macintosh HD - Data")};
  EXPECT_THAT(names(qt::withInstallHistory(volumes)), ElementsAre("Macintosh HD", "Macintosh HD - Data"));
}

TEST_F(MacVolumes, ArePartnersWhereTheyLieSideBySideOrAreNamedSo) {
  const QList<qt::MacVolume> volumes{{QStringLiteral("Mac"), QStringLiteral("/media/Mac")},
                                     {QStringLiteral("Mac - Data"), QStringLiteral("/mnt/1")},
                                     {QStringLiteral("Mac - Data"), QStringLiteral("/media/Mac - Data")},
                                     {QStringLiteral("Work"), QStringLiteral("/mnt/2")},
                                     {QStringLiteral("Work - Data"), QStringLiteral("/mnt/3")},
                                     {QStringLiteral("Data"), QStringLiteral("/mnt/Data")}};
  EXPECT_EQ(qt::partnerOf(volumes, 0), 2) << "the one beside it";
  EXPECT_EQ(qt::partnerOf(volumes, 2), 0);
  EXPECT_EQ(qt::partnerOf(volumes, 3), 4) << "by its name";
  EXPECT_EQ(qt::partnerOf(volumes, 4), 3);
  EXPECT_EQ(qt::partnerOf(volumes, 5), std::nullopt);
  EXPECT_TRUE(qt::areSystemAndData(volumes[0], volumes[2]));
  EXPECT_TRUE(qt::areSystemAndData(volumes[3], volumes[4]));
  EXPECT_FALSE(qt::areSystemAndData(volumes[4], volumes[3]));
}

}  // namespace
}  // namespace pelmarix::test
