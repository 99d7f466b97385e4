#include <gmock/gmock.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/ui/timeline_fixture.h"
#include "ui/timeline.h"

namespace pelmarix::ui {
namespace {

using platform::Object;
using platform::TimelineDirection;
using platform::TimelineMark;
using platform::TimelineScale;
using test::secondsOf;
using test::secondsPerDay;

using history_type::configurationData;
using history_type::criticalUpdate;
using history_type::securityData;
using history_type::securityUpdate;
using history_type::systemInstall;

class TimelineInWords : public test::TimelineLists {
 protected:
  std::string wordsOfMark(std::size_t index, const Object* selected = nullptr) const {
    return timeline().inWords(picture(selected).marks.at(index), selected);
  }
};

TEST_F(TimelineInWords, TellFirstAndLastDateCountsAndTheLongestGap) {
  addEntry(secondsOf(2015, 11, 2), systemInstall);
  addEntry(secondsOf(2017, 11, 2), systemInstall);
  addEntry(secondsOf(2018, 1, 1), securityUpdate);
  addEntry(secondsOf(2019, 1, 1), criticalUpdate);
  for (const int month : {1, 2, 3, 10}) addEntry(secondsOf(2020, month, 1), securityData);
  addEntry(secondsOf(2020, 10, 1), configurationData);
  addReceipt(secondsOf(2021, 2, 28));
  EXPECT_EQ(
      timeline().inWords(),
      "From 2015-11-02 to 2021-02-28. 2 system installs, 1 security update, 4 entries of security data, "
      "1 critical update, 1 entry of configuration data, 1 receipt. "
      "Longest gap: 214 days without security data, 2020-03-01 to 2020-10-01.");
  EXPECT_EQ(
      timeline(true).inWords(),
      "From 2015-11-02 to 2021-02-28. 2 system installs, 1 security update, 4 entries of security data, "
      "1 critical update, 1 receipt. "
      "Longest gap: 214 days without security data, 2020-03-01 to 2020-10-01.");
}

TEST_F(TimelineInWords, TellOneDateOnce) {
  addEntry(secondsOf(2019, 3, 26), securityData);
  addReceipt(secondsOf(2019, 3, 26, 1));
  addReceipt(secondsOf(2019, 3, 26, 86399));
  EXPECT_EQ(timeline().inWords(), "On 2019-03-26. 1 entry of security data, 2 receipts.");
}

TEST_F(TimelineInWords, TellTheEarlierOfTwoGapsOfALength) {
  for (const double day : {0, 40, 80}) addEntry(day * secondsPerDay, securityData);
  EXPECT_THAT(timeline().inWords(),
              testing::EndsWith("Longest gap: 40 days without security data, 2001-01-01 to 2001-02-10."));
}

TEST_F(TimelineInWords, TellOfOutliers) {
  addEntry(secondsOf(1904, 1, 1), securityData);
  addEntry(secondsOf(1905, 1, 1), systemInstall);
  for (int day = 1; day <= 40; ++day) addEntry(secondsOf(2019, 1, day), securityUpdate);
  addReceipt(secondsOf(2040, 2, 6));
  EXPECT_EQ(timeline().inWords(),
            "From 2019-01-01 to 2019-02-09. 1 system install, 40 security updates, 1 entry of security data, "
            "1 receipt. 2 of them long before that, 1904-01-01 to 1905-01-01. "
            "1 of them long after that, 2040-02-06.");
}

TEST_F(TimelineInWords, TellAMarkAsTheListsTellTheirRows) {
  addEntry(secondsOf(2019, 3, 26, 36672), systemInstall, "macOS Mojave", "10.14");
  addEntry(secondsOf(2020, 3, 26), securityData, "MRTConfigData", "");
  addReceipt(secondsOf(2019, 3, 26), "com.example.office");
  EXPECT_EQ(wordsOfMark(0), "macOS Mojave, system install or upgrade, 10.14, 2019-03-26 10:11:12 +0000");
  EXPECT_EQ(wordsOfMark(1), "MRTConfigData, security data, 2020-03-26 00:00:00 +0000");
  EXPECT_EQ(wordsOfMark(2), "com.example.office, receipt, 2019-03-26 00:00:00 +0000");
}

TEST_F(TimelineInWords, TellOfAMarkOfSeveralHowManyFromWhenToWhenAndOneOfThem) {
  Object* const first = addEntry(secondsOf(2019, 3, 26, 36672), securityData, "MRTConfigData", "1.35");
  Object* const second = addEntry(secondsOf(2019, 3, 27), securityData, "XProtectPlistConfigData", "2103");
  addEntry(secondsOf(2021, 3, 26), systemInstall);
  const std::string lead = "2 entries of security data, 2019-03-26 to 2019-03-27: ";
  const std::string wordsOfFirst = "MRTConfigData, security data, 1.35, 2019-03-26 10:11:12 +0000";
  EXPECT_EQ(wordsOfMark(1), lead + wordsOfFirst);
  EXPECT_EQ(wordsOfMark(1, first), lead + wordsOfFirst);
  EXPECT_EQ(wordsOfMark(1, second),
            lead + "XProtectPlistConfigData, security data, 2103, 2019-03-27 00:00:00 +0000");
}

TEST_F(TimelineInWords, TellADateThatNoAxisReachesAsTheListsDo) {
  addEntry(1e200, securityData, "MRTConfigData", "1");
  EXPECT_EQ(wordsOfMark(0), "MRTConfigData, security data, 1, " + description(Date{1e200}));
}

TEST_F(TimelineInWords, AreEmptyForAMarkThatIsThereNoMore) {
  addEntry(0, configurationData);
  EXPECT_EQ(timeline(true).inWords(picture().marks.at(0), nullptr), "");
}

class TimelineNeighbours : public test::TimelineLists {
 protected:
  Object* beside(const Object* item, TimelineDirection direction) const {
    return timeline().itemBeside(scaleOf(timeline().span()), item, direction);
  }
  Object* leftOf(const Object* item) const { return beside(item, TimelineDirection::left); }
  Object* rightOf(const Object* item) const { return beside(item, TimelineDirection::right); }
  Object* above(const Object* item) const { return beside(item, TimelineDirection::up); }
  Object* below(const Object* item) const { return beside(item, TimelineDirection::down); }
};

TEST_F(TimelineNeighbours, BeginWithTheFirstMarkOfTheFirstLane) {
  addEntry(0, securityData);
  addEntry(500'000, securityUpdate);
  Object* const first = addEntry(100'000, securityUpdate);
  for (const auto direction :
       {TimelineDirection::left, TimelineDirection::right, TimelineDirection::up, TimelineDirection::down}) {
    EXPECT_EQ(beside(nullptr, direction), first);
    EXPECT_EQ(beside(histories[0].get(), direction), first);
  }
}

TEST_F(TimelineNeighbours, AreTheMarksOfTheLane) {
  addEnds();
  Object* const first = addEntry(100'000, securityData);
  Object* const second = addEntry(200'000, securityData);
  Object* const joined = addEntry(201'000, securityData);
  Object* const third = addEntry(300'000, securityData);
  EXPECT_EQ(rightOf(first), second);
  EXPECT_EQ(rightOf(second), third);
  EXPECT_EQ(rightOf(joined), third);
  EXPECT_EQ(rightOf(third), nullptr);
  EXPECT_EQ(leftOf(third), second);
  EXPECT_EQ(leftOf(joined), first);
  EXPECT_EQ(leftOf(second), first);
  EXPECT_EQ(leftOf(first), nullptr);
}

TEST_F(TimelineNeighbours, AreTheNearestMarksOfTheNextLaneThatHasAny) {
  addEntry(0, systemInstall);
  Object* const end = addEntry(1e6, systemInstall);
  addEntry(200'000, criticalUpdate);
  Object* const near = addEntry(700'000, criticalUpdate);
  Object* const receipt = addReceipt(650'000);
  EXPECT_EQ(below(end), near);
  EXPECT_EQ(below(near), receipt);
  EXPECT_EQ(below(receipt), nullptr);
  EXPECT_EQ(above(receipt), near);
  EXPECT_EQ(above(near), end);
  EXPECT_EQ(above(end), nullptr);
  Object* const earlier = addReceipt(300'000);
  Object* const between = addEntry(475'000, criticalUpdate);
  EXPECT_EQ(below(between), earlier) << "of two that are as near";
}

TEST_F(TimelineNeighbours, LeadThroughAllLanesAndBack) {
  for (const auto type : {systemInstall, securityUpdate, criticalUpdate, securityData, configurationData})
    addEntry(1000, type);
  std::vector<Object*> lanes{beside(nullptr, TimelineDirection::down)};
  while (Object* const next = below(lanes.back())) lanes.push_back(next);
  EXPECT_EQ(lanes.size(), 5);
  EXPECT_EQ(below(lanes.back()), nullptr);
  Object* const receipt = addReceipt(1000);
  EXPECT_EQ(below(lanes.back()), receipt);
  EXPECT_EQ(below(receipt), nullptr);
  for (Object* item = receipt; !lanes.empty(); lanes.pop_back()) EXPECT_EQ(item = above(item), lanes.back());
  EXPECT_EQ(above(beside(nullptr, TimelineDirection::up)), nullptr);
}

TEST_F(TimelineNeighbours, CountFromWhereTheSelectedMarkStands) {
  addEnds();
  addEntry(500'000, securityUpdate);
  Object* const joined = addEntry(509'000, securityUpdate);
  Object* const near = addEntry(495'000, securityData);
  addEntry(505'100, securityData);  // nearer to the selected entry itself
  EXPECT_EQ(below(joined), near);
}

TEST_F(TimelineNeighbours, ReachMarksOutsideTheBulkAndOutOfView) {
  Object* const early = addEntry(secondsOf(1904, 1, 1), systemInstall);
  addEnds();
  Object* const first = histories[0]->children[1].get();
  Object* const second = histories[0]->children[2].get();
  const TimelineScale narrow = scaleOf({0, 1000});
  EXPECT_EQ(leftOf(first), early);
  EXPECT_EQ(timeline().itemBeside(narrow, early, TimelineDirection::right), first);
  EXPECT_EQ(timeline().itemBeside(narrow, first, TimelineDirection::right), second);
}

}  // namespace
}  // namespace pelmarix::ui
