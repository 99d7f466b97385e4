#include "history/history.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <type_traits>

namespace pelmarix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::shared_ptr<HistoryItem> item(std::string name, std::string version, std::int64_t type) {
  return std::make_shared<HistoryItem>(std::move(name), std::move(version), Date{575287872}, type);
}

TEST(History, StartsWithoutChildren) { EXPECT_THAT(History("macOS Mojave 10.14").children, IsEmpty()); }

TEST(History, AndItsItemsAreMadeFromEveryFieldOnly) {
  EXPECT_FALSE(std::is_default_constructible_v<History>);
  EXPECT_FALSE(std::is_default_constructible_v<HistoryItem>);
  EXPECT_FALSE(std::is_copy_constructible_v<HistoryItem>);
}

TEST(HistoryType, IsNamedInWords) {
  EXPECT_EQ(history_type::name(0), "system install or upgrade");
  EXPECT_EQ(history_type::name(1), "security update");
  EXPECT_EQ(history_type::name(2), "security data");
  EXPECT_EQ(history_type::name(3), "critical update");
  EXPECT_EQ(history_type::name(4), "configuration data");
  EXPECT_EQ(history_type::name(5), "");
  EXPECT_EQ(history_type::name(-1), "");
}

TEST(HistoryItem, TellsItsKindAndItsVersionIfItHasOne) {
  EXPECT_EQ(kindAndVersion(*item("macOS Mojave", "10.14", 0)), "system install or upgrade, 10.14");
  EXPECT_EQ(kindAndVersion(*item("Fonts", "", 4)), "configuration data");
}

TEST(HistoryCsv, HasARecordForEachEntryBelowTheTitles) {
  auto mojave = std::make_shared<History>("macOS Mojave 10.14");
  mojave->children = {item("macOS Mojave", "10.14", 0), item("Fonts, \"all\"", "", 4)};
  auto catalina = std::make_shared<History>("macOS 10.15 Update 10.15");
  catalina->children = {item("MRTConfigData", "1.50", 2)};
  EXPECT_EQ(csvText({mojave, std::make_shared<History>("Listing 0"), catalina}),
            "Group,Kind,Name,Version,Date\r\n"
            "macOS Mojave 10.14,system install or upgrade,macOS Mojave,10.14,2019-03-26 10:11:12 +0000\r\n"
            "macOS Mojave 10.14,configuration data,\"Fonts, \"\"all\"\"\",,2019-03-26 10:11:12 +0000\r\n"
            "macOS 10.15 Update 10.15,security data,MRTConfigData,1.50,2019-03-26 10:11:12 +0000\r\n");
}

TEST(HistoryCsv, OfNoHistoryIsTheTitles) { EXPECT_EQ(csvText({}), "Group,Kind,Name,Version,Date\r\n"); }

TEST(ReportLines, WriteNameVersionAndDateOfEachItemInOrder) {
  History group("macOS Mojave 10.14");
  group.children = {item("macOS Mojave", "10.14", 0), item("Security Update 2019-001", "10.14.3", 1)};
  EXPECT_THAT(group.reportLines(false),
              ElementsAre("macOS Mojave: 10.14 2019-03-26 10:11:12 +0000\n",
                          "Security Update 2019-001: 10.14.3 2019-03-26 10:11:12 +0000\n"));
}

TEST(ReportLines, OfAGroupWithoutChildrenAreAnEmptyList) {
  EXPECT_THAT(History("a").reportLines(true), IsEmpty());
  EXPECT_THAT(History("a").reportLines(false), IsEmpty());
}

TEST(ReportLines, LeaveSkippedConfigurationDataItsPlaceWithAnEmptyString) {
  History group("a");
  group.children = {item("Core Suggestions", "1", 4), item("macOS Mojave", "10.14", 0),
                    item("Fonts", "2", 4)};
  EXPECT_THAT(group.reportLines(true),
              ElementsAre("", "macOS Mojave: 10.14 2019-03-26 10:11:12 +0000\n", ""));
}

TEST(ReportLines, OfNothingButSkippedConfigurationDataAreEmptyStrings) {
  History group("a");
  group.children = {item("b", "1", 4), item("c", "2", 4)};
  EXPECT_THAT(group.reportLines(true), ElementsAre("", ""));
}

TEST(ReportLines, WriteConfigurationDataLikeAnyOtherWhenItIsNotSkipped) {
  History group("a");
  group.children = {item("Core Suggestions", "1", 4)};
  EXPECT_THAT(group.reportLines(false), ElementsAre("Core Suggestions: 1 2019-03-26 10:11:12 +0000\n"));
}

TEST(ReportLines, WriteEveryOtherTypeWhetherConfigurationDataIsSkippedOrNot) {
  History group("a");
  for (const std::int64_t type : {0, 1, 2, 3}) group.children.push_back(item("n", "v", type));
  EXPECT_EQ(group.reportLines(true), group.reportLines(false));
  EXPECT_EQ(group.reportLines(true), std::vector<std::string>(4, "n: v 2019-03-26 10:11:12 +0000\n"));
}

TEST(ReportLines, OfAnEmptyVersionHaveTwoBlanksBeforeTheDate) {
  History group("a");
  group.children = {item("Safari", "", 0)};
  EXPECT_THAT(group.reportLines(false), ElementsAre("Safari:  2019-03-26 10:11:12 +0000\n"));
}

}  // namespace
}  // namespace pelmarix
