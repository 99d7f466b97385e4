#include "history/loader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/memory_file_manager.h"
#include "tests/support/property_list_text.h"
#include "tests/support/test_services.h"

namespace pelmarix {
namespace {

using test::EntryText;
using testing::ElementsAre;
using testing::IsEmpty;

const test::ShownAlert unreadableHistory =
    test::errorAlert("An error occurred in your last action:", "Couldn't read install history.");

/// A group as a text: its name, then each child's type and name.
std::vector<std::string> outlined(const std::vector<std::shared_ptr<History>>& groups) {
  std::vector<std::string> texts;
  for (const auto& group : groups) {
    std::string text = group->name + " =";
    for (const auto& child : group->children)
      text += " " + std::to_string(child->type) + " " + child->name + ";";
    texts.push_back(text);
  }
  return texts;
}

class Loader : public testing::Test {
 protected:
  Loader() {
    services.services.fileManager = &fileManager;
    services.services.composedForm = [](std::string_view text) {
      // The canonical equivalents that these tests use.
      std::string composed(text);
      const auto replaceAll = [&](std::string_view from, std::string_view to) {
        for (std::size_t at; (at = composed.find(from)) != std::string::npos;)
          composed.replace(at, from.size(), to);
      };
      replaceAll("\u212A", "K");
      replaceAll("U\u0308", "\u00DC");
      return composed;
    };
  }

  std::vector<std::string> load(const std::vector<EntryText>& entries) {
    return loadFile(test::installHistory(entries));
  }
  std::vector<std::string> loadFile(const std::string& contents) {
    fileManager.files["/Library/Receipts/InstallHistory.plist"] = contents;
    return outlined(readInstallHistory());
  }

  test::TestServices services;
  test::MemoryFileManager fileManager;
};

TEST_F(Loader, OfAnEmptyListGivesNoGroupAndNoMessage) {
  EXPECT_THAT(load({}), IsEmpty());
  EXPECT_THAT(services.alerts, IsEmpty());
}

TEST_F(Loader, OfNothingThatIsKeptGivesOneEmptyGroup) {
  EXPECT_THAT(load({{"Example Writer"}, {"Example Painter"}}), ElementsAre("Listing 0 ="));
}

TEST_F(Loader, WithoutASystemInstallKeepsEverythingInOneGroup) {
  EXPECT_THAT(load({{"MRTConfigData"}, {"Example Writer"}, {"Security Update 2019-001"}}),
              ElementsAre("Listing 0 = 2 MRTConfigData; 1 Security Update 2019-001;"));
}

TEST_F(Loader, DropsWhatCameBeforeTheFirstSystemInstall) {
  EXPECT_THAT(load({{"XProtectPlistConfigData", "1", "config-data"},
                    {"Security Update 2019-001"},
                    {"macOS Mojave", "10.14"}}),
              ElementsAre("macOS Mojave 10.14 = 0 macOS Mojave;"));
}

TEST_F(Loader, StartsAGroupWithEverySystemInstall) {
  EXPECT_THAT(load({{"macOS Mojave", "10.14"},
                    {"MRTConfigData"},
                    {"macOS 10.14.1", "10.14.1"},
                    {"Rosetta", "1", "critical-update"}}),
              ElementsAre("macOS Mojave 10.14 = 0 macOS Mojave; 2 MRTConfigData;",
                          "macOS 10.14.1 10.14.1 = 0 macOS 10.14.1; 3 Rosetta;"));
}

TEST_F(Loader, KeepsTheOrderOfTheFileWhateverTheDates) {
  EXPECT_THAT(load({{"macOS 10.15", "b", "", "2020-01-01T00:00:00Z"},
                    {"macOS 10.14", "a", "", "2019-01-01T00:00:00Z"}}),
              ElementsAre("macOS 10.15 b = 0 macOS 10.15;", "macOS 10.14 a = 0 macOS 10.14;"));
}

TEST_F(Loader, CarriesNameVersionAndDateIntoTheItem) {
  fileManager.files["/Library/Receipts/InstallHistory.plist"] =
      test::installHistory({{"macOS Mojave", "10.14", "", "2019-03-26T10:11:12Z"}});
  const auto groups = readInstallHistory();
  ASSERT_EQ(groups.size(), 1u);
  ASSERT_EQ(groups[0]->children.size(), 1u);
  EXPECT_EQ(groups[0]->children[0]->name, "macOS Mojave");
  EXPECT_EQ(groups[0]->children[0]->version, "10.14");
  EXPECT_EQ(groups[0]->children[0]->installDate, Date{575287872});
}

TEST_F(Loader, TakesEachOfTheSixSecurityDataNames) {
  for (const char* name :
       {"Gatekeeper Configuration Data", "MRTConfigData", "MRT Configuration Data", "XProtectPlistConfigData",
        "Incompatible Kernel Extension Configuration Data", "TCC Configuration Data"})
    EXPECT_THAT(load({{name}}), ElementsAre("Listing 0 = 2 " + std::string(name) + ";"));
}

TEST_F(Loader, TakesEachOfTheNineSystemMarkersAnywhereInTheName) {
  // The seventh holds the sixth, which takes whatever it would.
  for (const char* marker : {"OS X El Capitan U", "macOS Sierra U", "macOS 10.13", "macOS High Sierra ",
                             "macOS Mojave", "macOS 10.14", "macOS 10.14.1", "macOS 10.15", "Catalina"}) {
    const std::string name = "My " + std::string(marker) + "x";
    EXPECT_THAT(load({{name, "7"}}), ElementsAre(name + " 7 = 0 " + name + ";"));
  }
}

TEST_F(Loader, WantsTheMarkersWhole) {
  for (const char* name :
       {"OS X El Capitan", "macOS Sierra", "macOS High Sierra", "macOS 10.12", "macOS mojave"})
    EXPECT_THAT(load({{name}}), ElementsAre("Listing 0 =")) << name;
}

TEST_F(Loader, TakesContentTypesWhole) {
  EXPECT_THAT(load({{"a", "1", "critical-update"}, {"b", "1", "config-data"}}),
              ElementsAre("Listing 0 = 3 a; 4 b;"));
  EXPECT_THAT(load({{"a", "1", "critical-updates"}, {"b", "1", "Config-data"}, {"c", "1", "x config-data"}}),
              ElementsAre("Listing 0 ="));
}

TEST_F(Loader, KnowsSecurityDataBeforeConfigurationData) {
  EXPECT_THAT(load({{"TCC Configuration Data", "1", "config-data"}}),
              ElementsAre("Listing 0 = 2 TCC Configuration Data;"));
}

TEST_F(Loader, KnowsASecurityUpdateBeforeASystemInstall) {
  EXPECT_THAT(load({{"Security Update 2020-001 (macOS Mojave)"}}),
              ElementsAre("Listing 0 = 1 Security Update 2020-001 (macOS Mojave);"));
}

TEST_F(Loader, KnowsASystemInstallBeforeACriticalUpdate) {
  EXPECT_THAT(load({{"macOS 10.15.1", "10.15.1", "critical-update"}}),
              ElementsAre("macOS 10.15.1 10.15.1 = 0 macOS 10.15.1;"));
}

TEST_F(Loader, DistinguishesUpperAndLowerCaseAndWholeNames) {
  EXPECT_THAT(load({{"mrtconfigdata"}, {"security update"}, {"MRTConfigData "}}), ElementsAre("Listing 0 ="));
  EXPECT_THAT(load({{"My macOS Mojave Installer", "1"}}),
              ElementsAre("My macOS Mojave Installer 1 = 0 My macOS Mojave Installer;"));
}

TEST_F(Loader, DropsLaterSystemReleasesUnlessTheirContentTypeTakesThem) {
  EXPECT_THAT(load({{"macOS Big Sur"}, {"macOS Big Sur", "1", "config-data"}}),
              ElementsAre("Listing 0 = 4 macOS Big Sur;"));
}

TEST_F(Loader, TakesCanonicallyEquivalentSpellingsForTheSameText) {
  EXPECT_THAT(load({{"Incompatible \u212Aernel Extension Configuration Data"}}),
              ElementsAre("Listing 0 = 2 Incompatible \u212Aernel Extension Configuration Data;"));
  EXPECT_THAT(load({{"macOS Sierra U\u0308"}, {"macOS Sierra \u00DC"}}), ElementsAre("Listing 0 ="));
}

TEST_F(Loader, OfAMissingFileShowsOneAlertAndGivesNothing) {
  EXPECT_THAT(outlined(readInstallHistory()), IsEmpty());
  EXPECT_THAT(services.alerts, ElementsAre(unreadableHistory));
}

TEST_F(Loader, OfAFileThatDoesNotDecodeShowsOneAlertAndGivesNothing) {
  const std::string entry = "<dict>" + test::key("date", test::date("2019-03-26T10:11:12Z")) +
                            test::key("displayName", test::string("macOS Mojave"));
  const std::string good = entry + test::key("displayVersion", test::string("1")) + "</dict>";
  for (const std::string& contents :
       {std::string("no property list"), std::string(), test::propertyList("<dict/>"),
        test::propertyList("<array>" + good + entry + "</dict></array>"),
        test::propertyList("<array>" + good + entry + test::key("displayVersion", "<true/>") +
                           "</dict></array>")}) {
    services.alerts.clear();
    EXPECT_THAT(loadFile(contents), IsEmpty());
    EXPECT_THAT(services.alerts, ElementsAre(unreadableHistory)) << contents;
  }
}

TEST_F(Loader, BuildsFreshObjectsAtEachCall) {
  load({{"macOS Mojave"}});
  EXPECT_NE(readInstallHistory()[0], readInstallHistory()[0]);
}

}  // namespace
}  // namespace pelmarix
