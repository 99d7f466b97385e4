#include <gmock/gmock.h>

#include <cmath>
#include <string>
#include <vector>

#include "tests/ui/timeline_fixture.h"

namespace pelmarix::ui {
namespace {

using TimelineOfLists = test::TimelineLists;
using test::secondsOf;
using test::secondsPerDay;
using testing::ElementsAre;
using testing::IsEmpty;

using history_type::securityData;
using history_type::securityUpdate;
using history_type::systemInstall;

// Bands.

MATCHER_P3(band, name, left, right, "") {
  return arg.name == name && std::abs(arg.left - left) < 1e-6 && std::abs(arg.right - right) < 1e-6;
}

TEST_F(TimelineOfLists, DrawsAGroupUntilTheNextOneBegins) {
  addGroup("macOS Sierra 10.12");
  addEntry(0, systemInstall);
  addEntry(900'000, securityData);
  addGroup("macOS Mojave 10.14");
  addEntry(600'000, systemInstall);
  addEntry(1e6, securityData);
  EXPECT_THAT(picture().bands,
              ElementsAre(band("macOS Sierra 10.12", 0, 600), band("macOS Mojave 10.14", 600, 1000)));
}

TEST_F(TimelineOfLists, DrawsGroupsInTheOrderOfTime) {
  addGroup("later");
  addEntry(600'000, systemInstall);
  addEntry(1e6, securityData);
  addGroup("earlier");
  addEntry(300'000, systemInstall);
  addEntry(0, securityData);
  EXPECT_THAT(picture().bands, ElementsAre(band("earlier", 300, 600), band("later", 600, 1000)));
}

TEST_F(TimelineOfLists, DrawsNoGroupWithoutEntries) {
  addEnds();
  addGroup("macOS 10.15 10.15");
  EXPECT_THAT(picture().bands, ElementsAre(band("macOS Mojave 10.14", 0, 1000)));
}

TEST_F(TimelineOfLists, CutsGroupsAtTheEdgesAndLeavesOutWhatIsTooNarrow) {
  for (const double seconds : {0.0, 300'000.0, 300'999.0, 600'000.0, 800'000.0, 1e6}) {
    addGroup("from " + std::to_string(static_cast<int>(seconds)));
    addEntry(seconds, systemInstall);
  }
  const auto bandsFrom = [this](double begin, double end) {
    return timeline().picture(scaleOf({begin, end}), nullptr).bands;
  };
  EXPECT_THAT(bandsFrom(0, 1e6), ElementsAre(band("from 0", 0, 300), band("from 300999", 300.999, 600),
                                             band("from 600000", 600, 800), band("from 800000", 800, 1000)));
  EXPECT_THAT(bandsFrom(500'000, 700'000),
              ElementsAre(band("from 300999", 0, 500), band("from 600000", 500, 1000)));
}

TEST_F(TimelineOfLists, DrawsAGroupThatIsOneUnitWide) {
  for (const double seconds : {0.0, 1000.0, 1e6}) {
    addGroup("from " + std::to_string(static_cast<int>(seconds)));
    addEntry(seconds, systemInstall);
  }
  EXPECT_THAT(picture().bands, ElementsAre(band("from 0", 0, 1), band("from 1000", 1, 1000)));
}

TEST_F(TimelineOfLists, GivesOnlyTheBeginningOfAVeryLongName) {
  addGroup(std::string(200, 'x'));
  addEntry(0, systemInstall);
  addGroup(std::string(1'000'000, 'x'));
  addEntry(500'000, systemInstall);
  addGroup(std::string(198, 'x') + "\u20AC");
  addEntry(1e6, systemInstall);
  addGroup(std::string(201, '\x80'));
  addEntry(1.2e6, systemInstall);
  addGroup(std::string(199, 'x') + "\u00E9");
  addEntry(1.5e6, systemInstall);
  addEntry(2e6, systemInstall);
  const auto bands = picture().bands;
  EXPECT_EQ(bands.at(0).name, std::string(200, 'x'));
  EXPECT_EQ(bands.at(1).name, std::string(200, 'x') + "\u2026");
  EXPECT_EQ(bands.at(2).name, std::string(198, 'x') + "\u2026") << "no part of a letter";
  EXPECT_EQ(bands.at(3).name, "\u2026") << "not UTF-8";
  EXPECT_EQ(bands.at(4).name, std::string(199, 'x') + "\u2026");
}

TEST_F(TimelineOfLists, ShadesEverySecondGroupWhereverTheSpanBegins) {
  for (const double seconds : {0.0, 400'000.0, 1e6}) {
    addGroup("macOS Mojave");
    addEntry(seconds, systemInstall);
  }
  EXPECT_FALSE(picture().bands[0].isSecond);
  EXPECT_TRUE(picture().bands[1].isSecond);
  EXPECT_TRUE(timeline().picture(scaleOf({500'000, 600'000}), nullptr).bands[0].isSecond);
}

TEST_F(TimelineOfLists, ShadesTheGroupsOfOneReleaseAlike) {
  double seconds = 0;
  for (const char* version :
       {"10.1.5", "10.14", "10.14.1", "10.14.1", "10.15.2", "10..1", "10..2", "11.1", "11.1"}) {
    addGroup("macOS");
    addEntry(seconds, systemInstall, "macOS", version);
    seconds += 100'000;
  }
  std::string shades;
  for (const platform::TimelineBand& drawn : picture().bands) shades += drawn.isSecond ? '#' : '.';
  EXPECT_EQ(shades, ".###.##.") << "the last begins at the end";
}

TEST_F(TimelineOfLists, DrawsTheGroupOfAnOutlierUpToTheNext) {
  addGroup("macOS Sierra 10.12");
  addEntry(secondsOf(1904, 1, 1), systemInstall);
  addGroup("macOS Mojave 10.14");
  addEntry(500'000, systemInstall);
  for (const double seconds : {0.0, 1e6}) addEntry(seconds, securityData);
  EXPECT_THAT(picture().bands,
              ElementsAre(band("macOS Sierra 10.12", 0, 500), band("macOS Mojave 10.14", 500, 1000)));
}

// Gaps.

MATCHER_P3(gap, words, left, right, "") {
  return arg.words == words && std::abs(arg.left - left) < 1e-6 && std::abs(arg.right - right) < 1e-6;
}

class TimelineGaps : public TimelineOfLists {
 protected:
  void addDays(std::int64_t type, const std::vector<double>& days) {
    for (const double day : days) addEntry(day * secondsPerDay, type);
  }
};

TEST_F(TimelineGaps, AreBetweenEntriesOfSecurityDataThatFollowEachOther) {
  addDays(systemInstall, {0, 300, 1000});
  addDays(securityData, {500, 200, 1000, 714});
  EXPECT_THAT(picture().gaps, ElementsAre(gap("300 days without security data", 200, 500),
                                          gap("214 days without security data", 500, 714),
                                          gap("286 days without security data", 714, 1000)));
}

TEST_F(TimelineGaps, ReachFromTheLastSecurityDataToTheLastEntryOfAnyKind) {
  addDays(securityData, {0, 20});
  addReceipt(100 * secondsPerDay);
  EXPECT_THAT(picture().gaps, ElementsAre(gap("80 days without security data", 200, 1000)));
}

TEST_F(TimelineGaps, AreTheLongestThreeInTheOrderOfTime) {
  addDays(securityData, {0, 200, 250, 550, 600, 700, 1000});
  EXPECT_THAT(picture().gaps, ElementsAre(gap("200 days without security data", 0, 200),
                                          gap("300 days without security data", 250, 550),
                                          gap("300 days without security data", 700, 1000)));
}

TEST_F(TimelineGaps, AreTheEarlierOfEquallyLongOnes) {
  addDays(securityData, {0, 250, 500, 750, 1000});
  EXPECT_THAT(picture().gaps, ElementsAre(gap("250 days without security data", 0, 250),
                                          gap("250 days without security data", 250, 500),
                                          gap("250 days without security data", 500, 750)));
}

TEST_F(TimelineGaps, LastAtLeastThirtyDaysOfWhichOnlyWholeOnesAreTold) {
  addDays(securityData, {0, 29.999, 59.999, 91.5, 100});
  EXPECT_THAT(picture().gaps, ElementsAre(gap("30 days without security data", 299.99, 599.99),
                                          gap("31 days without security data", 599.99, 915)));
  histories.clear();
  addDays(securityData, {0, 30, 59, 100});
  EXPECT_THAT(picture().gaps, ElementsAre(gap("30 days without security data", 0, 300),
                                          gap("41 days without security data", 590, 1000)));
}

TEST_F(TimelineGaps, AreNoneWithoutSecurityData) {
  addDays(systemInstall, {0, 1000});
  EXPECT_THAT(picture().gaps, IsEmpty());
}

TEST_F(TimelineGaps, KeepToTheBulk) {
  addDays(securityData, {0, 10, 100, 5000});
  addDays(securityUpdate, {-9000});
  EXPECT_THAT(picture().gaps, ElementsAre(gap("90 days without security data", 100, 1000)));
}

TEST_F(TimelineGaps, AreCutAtTheEdges) {
  addDays(securityData, {0, 500, 1000});
  const auto gapsFrom = [this](double begin, double end) {
    return timeline().picture(scaleOf({begin * secondsPerDay, end * secondsPerDay}), nullptr).gaps;
  };
  EXPECT_THAT(gapsFrom(400, 600), ElementsAre(gap("500 days without security data", 0, 500),
                                              gap("500 days without security data", 500, 1000)));
  EXPECT_THAT(gapsFrom(500, 600), ElementsAre(gap("500 days without security data", 0, 1000)));
  EXPECT_THAT(gapsFrom(400, 500), ElementsAre(gap("500 days without security data", 0, 1000)));
}

}  // namespace
}  // namespace pelmarix::ui
