#include "sample/install_history.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace pelmarix::sample {
namespace {

using testing::IsSupersetOf;
using testing::SizeIs;

constexpr double day = 86400;

struct Entry {
  double seconds = 0;
  std::string name;
  std::optional<std::string> contentType;
};

std::vector<Entry> entriesOf(const PropertyList& root) {
  std::vector<Entry> entries;
  for (const PropertyList& item : std::get<Array>(root.value)) {
    Entry entry;
    for (const auto& [key, value] : std::get<Dictionary>(item.value)) {
      if (key == "date") entry.seconds = std::get<Date>(value.value).timeIntervalSinceReferenceDate;
      if (key == "displayName") entry.name = std::get<std::string>(value.value);
      if (key == "contentType") entry.contentType = std::get<std::string>(value.value);
    }
    entries.push_back(entry);
  }
  return entries;
}

std::set<std::string> namesOf(const std::vector<Entry>& entries) {
  std::set<std::string> names;
  for (const Entry& entry : entries) names.insert(entry.name);
  return names;
}

TEST(SampleInstallHistory, HasAsManyEntriesAsAskedFor) {
  for (const std::size_t count : {0U, 1U, 20U, 60U, 400U, 1000U}) {
    EXPECT_THAT(entriesOf(installHistory(count)), SizeIs(count));
  }
}

TEST(SampleInstallHistory, ListsEntriesOldestFirst) {
  double last = 0;
  for (const Entry& entry : entriesOf(installHistory(1000))) {
    EXPECT_LE(last, entry.seconds);
    last = entry.seconds;
  }
}

TEST(SampleInstallHistory, BeginsWithElCapitanAndComesToCatalina) {
  const std::vector<Entry> entries = entriesOf(installHistory(400));
  EXPECT_EQ(entries.front().name, "OS X El Capitan");
  EXPECT_THAT(namesOf(entries), IsSupersetOf({"OS X El Capitan Update", "macOS Sierra Update",
                                              "macOS High Sierra 10.13.6 Update", "macOS Mojave",
                                              "macOS 10.14.1", "macOS Catalina", "macOS 10.15.7 Update"}));
}

TEST(SampleInstallHistory, HoldsSecurityUpdatesAndAllSixKindsOfSecurityData) {
  EXPECT_THAT(namesOf(entriesOf(installHistory(400))),
              IsSupersetOf({"Security Update 2018-001", "Gatekeeper Configuration Data", "MRTConfigData",
                            "MRT Configuration Data", "XProtectPlistConfigData",
                            "Incompatible Kernel Extension Configuration Data", "TCC Configuration Data"}));
}

TEST(SampleInstallHistory, HoldsCriticalUpdatesConfigurationDataAndEntriesWithoutAType) {
  std::set<std::optional<std::string>> types;
  for (const Entry& entry : entriesOf(installHistory(400))) types.insert(entry.contentType);
  const std::set<std::optional<std::string>> expected = {"critical-update", "config-data", std::nullopt};
  EXPECT_EQ(types, expected);
}

TEST(SampleInstallHistory, HasMonthsWithoutSecurityDataAndThenABurstOfConfigurationData) {
  const std::set<std::string> securityData = {"Gatekeeper Configuration Data",
                                              "MRTConfigData",
                                              "MRT Configuration Data",
                                              "XProtectPlistConfigData",
                                              "Incompatible Kernel Extension Configuration Data",
                                              "TCC Configuration Data"};
  for (const std::size_t count : {400U, 100'000U}) {
    double last = 0;
    double longest = 0;
    double endOfLongest = 0;
    std::vector<double> configuration;
    for (const Entry& entry : entriesOf(installHistory(count))) {
      if (securityData.contains(entry.name)) {
        if (last != 0 && entry.seconds - last > longest) {
          longest = entry.seconds - last;
          endOfLongest = entry.seconds;
        }
        last = entry.seconds;
      } else if (entry.contentType == "config-data") {
        configuration.push_back(entry.seconds);
      }
    }
    EXPECT_GT(longest, 200 * day);
    EXPECT_LT(longest, 270 * day);
    // Between its first month and its end.
    std::erase_if(configuration, [=](double seconds) {
      return seconds < endOfLongest - longest + 30 * day || seconds >= endOfLongest;
    });
    ASSERT_THAT(configuration, SizeIs(testing::Gt(10U)));
    EXPECT_LT(configuration.back() - configuration.front(), day);
  }
}

}  // namespace
}  // namespace pelmarix::sample
