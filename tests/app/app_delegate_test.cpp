#include "app/app_delegate.h"

#include <cmath>
#include <limits>

#include "tests/app/app_fixture.h"

namespace pelmarix {
namespace {

constexpr double launch = 600'000'000.25;
constexpr double hour = 3600;

class Launch : public test::AppTest {
 protected:
  std::size_t checksAfterLaunch() {
    delegate.applicationDidFinishLaunching();
    return session.requests.size();
  }
  double& stored(const char* key) { return services.userDefaults.doubles[key]; }
  bool has(const char* key) const {
    return services.userDefaults.doubles.contains(key) || services.userDefaults.bools.contains(key);
  }
};

TEST_F(Launch, ChecksForTheFirstTimeAndStoresAllThreePreferences) {
  EXPECT_EQ(checksAfterLaunch(), 1u);
  EXPECT_TRUE(services.userDefaults.bools.contains("noUpdateCheck"));
  EXPECT_FALSE(services.userDefaults.boolForKey("noUpdateCheck"));
  EXPECT_EQ(stored("updateCheckInt"), 43200.0);
  EXPECT_EQ(stored("dateLastUpdateCheck"), launch);
  EXPECT_EQ(services.userDefaults.doubles.size(), 2u);
  EXPECT_EQ(services.userDefaults.bools.size(), 1u);
}

TEST_F(Launch, DoesNotCheckElevenHoursAfterTheLastCheck) {
  stored("dateLastUpdateCheck") = launch - 11 * hour;
  EXPECT_EQ(checksAfterLaunch(), 0u);
  EXPECT_EQ(stored("dateLastUpdateCheck"), launch - 11 * hour);
  EXPECT_EQ(stored("updateCheckInt"), 43200.0);
  EXPECT_TRUE(has("noUpdateCheck"));
}

TEST_F(Launch, DoesNotCheckExactlyOneIntervalAfterTheLastCheck) {
  stored("dateLastUpdateCheck") = launch - 43200.0;
  EXPECT_EQ(checksAfterLaunch(), 0u);
}

TEST_F(Launch, ChecksWhenMoreThanOneIntervalHasPassed) {
  stored("dateLastUpdateCheck") = launch - 43200.25;
  EXPECT_EQ(checksAfterLaunch(), 1u);
  EXPECT_EQ(stored("dateLastUpdateCheck"), launch);
}

TEST_F(Launch, TakesIntervalsBelowOneSecondAsTwelveHours) {
  for (const double interval :
       {0.5, std::nextafter(1.0, 0.0), 0.0, -100.0, -std::numeric_limits<double>::infinity()}) {
    stored("updateCheckInt") = interval;
    stored("dateLastUpdateCheck") = launch - 11 * hour;
    EXPECT_EQ(checksAfterLaunch(), 0u) << interval;
    EXPECT_EQ(stored("updateCheckInt"), 43200.0) << interval;
  }
}

TEST_F(Launch, KeepsAnIntervalOfOneSecond) {
  stored("updateCheckInt") = 1.0;
  stored("dateLastUpdateCheck") = launch - 1.25;
  EXPECT_EQ(checksAfterLaunch(), 1u);
  EXPECT_EQ(stored("updateCheckInt"), 1.0);
  EXPECT_EQ(checksAfterLaunch(), 1u) << "one more launch at the same moment";
}

TEST_F(Launch, WritesIntervalsBackUnchanged) {
  for (const double interval : {0.1 + 1, 43200.000000000007, std::numeric_limits<double>::max(),
                                std::numeric_limits<double>::infinity()}) {
    stored("updateCheckInt") = interval;
    checksAfterLaunch();
    EXPECT_EQ(stored("updateCheckInt"), interval);
  }
}

TEST_F(Launch, NeverChecksWhenTheIntervalIsNotANumberAndWritesItBack) {
  stored("updateCheckInt") = std::nan("");
  EXPECT_EQ(checksAfterLaunch(), 0u);
  EXPECT_TRUE(std::isnan(stored("updateCheckInt")));
  EXPECT_FALSE(has("dateLastUpdateCheck"));
}

TEST_F(Launch, DoesNotCheckUntilTheClockHasPassedALastCheckInTheFutureByTheInterval) {
  stored("dateLastUpdateCheck") = launch + 100;
  EXPECT_EQ(checksAfterLaunch(), 0u);
  clock = [] { return Date{launch + 100 + 43200.0}; };
  EXPECT_EQ(checksAfterLaunch(), 0u);
  EXPECT_EQ(stored("dateLastUpdateCheck"), launch + 100);
  clock = [] { return Date{launch + 100 + 43200.5}; };
  EXPECT_EQ(checksAfterLaunch(), 1u);
}

TEST_F(Launch, DoesNotCheckWhenTheCheckIsSwitchedOff) {
  services.userDefaults.setBoolForKey(true, "noUpdateCheck");
  stored("updateCheckInt") = 2.0;
  EXPECT_EQ(checksAfterLaunch(), 0u);
  EXPECT_EQ(checksAfterLaunch(), 0u);
  EXPECT_FALSE(has("dateLastUpdateCheck"));
  EXPECT_TRUE(services.userDefaults.boolForKey("noUpdateCheck"));
  EXPECT_EQ(stored("updateCheckInt"), 2.0);
}

TEST_F(Launch, StoresTheTimeAtWhichTheCheckHadBeenStarted) {
  clock = [this] { return Date{launch + (session.requests.empty() ? 0 : 3)}; };
  checksAfterLaunch();
  EXPECT_EQ(stored("dateLastUpdateCheck"), launch + 3);
}

TEST_F(Launch, StoresTheTimeOfACheckThatCouldNotBeStarted) {
  bundle.info = platform::InfoDictionary{{"CFBundleName", std::string("Pelmarix")}};
  EXPECT_EQ(checksAfterLaunch(), 0u);
  EXPECT_EQ(services.alerts.size(), 1u);
  EXPECT_EQ(stored("dateLastUpdateCheck"), launch);
}

TEST_F(Launch, StoresTheTimeOfACheckThatFailsLater) {
  checksAfterLaunch();
  session.requests.at(0).completionHandler(std::nullopt, nullptr, "no network");
  runMainQueue();
  EXPECT_EQ(stored("dateLastUpdateCheck"), launch);
  EXPECT_EQ(checksAfterLaunch(), 1u);
}

TEST_F(Launch, AndTheEndWritesNoPreferences) {
  checksAfterLaunch();
  const auto doubles = services.userDefaults.doubles;
  const auto bools = services.userDefaults.bools;
  clock = [] { return Date{launch + 100 * hour}; };
  delegate.applicationWillTerminate();
  EXPECT_EQ(services.userDefaults.doubles, doubles);
  EXPECT_EQ(services.userDefaults.bools, bools);
}

}  // namespace
}  // namespace pelmarix
