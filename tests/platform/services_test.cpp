#include "platform/services.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/background_task.h"
#include "platform/file_manager.h"
#include "platform/save_panel.h"
#include "platform/task.h"
#include "platform/text.h"
#include "tests/support/fatal_stop.h"
#include "tests/support/test_services.h"

namespace pelmarix {
namespace {

TEST(ServicesDeathTest, AskingBeforeAnyAreInstalledStopsTheProgram) {
  EXPECT_FATAL_STOP(platform::currentDate());
}

TEST(ServicesDeathTest, AskingForOneThatIsNotInstalledStopsTheProgram) {
  test::TestServices services;
  EXPECT_FATAL_STOP(platform::FileManager::defaultManager());
  EXPECT_FATAL_STOP(platform::currentDate());
}

TEST(Services, AreThoseInstalledLast) {
  test::TestServices outer;
  outer.services.currentDate = [] { return Date{1}; };
  {
    test::TestServices inner;
    inner.services.currentDate = [] { return Date{2}; };
    EXPECT_EQ(platform::currentDate(), Date{2});
  }
  EXPECT_EQ(platform::currentDate(), Date{1});
}

TEST(Services, MakeWhatIsMadeAnew) {
  test::TestServices services;
  std::string made;
  services.services.makePipe = [&] { return made += "pipe ", nullptr; };
  services.services.makeTask = [&] { return made += "task ", nullptr; };
  services.services.makeBackgroundTask = [&] { return made += "background task ", nullptr; };
  services.services.makeSavePanel = [&] { return made += "save panel", nullptr; };
  platform::Pipe::make();
  platform::Task::make();
  platform::BackgroundTask::make();
  platform::SavePanel::make();
  EXPECT_EQ(made, "pipe task background task save panel");
}

TEST(Services, TakeWhatTheyAreTold) {
  test::TestServices services;
  std::vector<std::function<void()>> dispatched;
  std::string told;
  services.services.dispatchAsyncToMainQueue = [&](auto block) { dispatched.push_back(std::move(block)); };
  services.services.tellSaved = [&](const std::string& path) { told += path; };
  platform::dispatchAsyncToMainQueue([&] { told += ", run"; });
  platform::tellSaved("/report.txt");
  ASSERT_EQ(dispatched.size(), 1U);
  dispatched[0]();
  EXPECT_EQ(told, "/report.txt, run");
}

/// Composes the two letters that these tests use.
class Text : public testing::Test {
 protected:
  Text() {
    services.services.composedForm = [this](std::string_view text) {
      ++compositions;
      std::string composed(text);
      for (const auto& [other, letter] : {std::pair("U\xCC\x88", "\xC3\x9C"), std::pair("\xE2\x84\xAA", "K")})
        for (std::size_t at; (at = composed.find(other)) != std::string::npos;)
          composed.replace(at, std::string_view(other).size(), letter);
      return composed;
    };
    services.services.foldedForm = [](std::string_view text) { return "folded " + std::string(text); };
  }
  test::TestServices services;
  int compositions = 0;
};

TEST_F(Text, IsEqualWhenItsSpellingsAreCanonicallyEquivalent) {
  EXPECT_TRUE(platform::textEquals("U\xCC\x88", "\xC3\x9C"));
  EXPECT_TRUE(platform::textEquals("K", "\xE2\x84\xAA"));  // the sign of the unit
  EXPECT_FALSE(platform::textEquals("U", "\xC3\x9C"));
  EXPECT_FALSE(platform::textEquals("u", "U"));
}

TEST_F(Text, DoesNotHoldALiteralWhoseLastLetterIsAccentedThere) {
  EXPECT_TRUE(platform::textContains("macOS Sierra U", "macOS Sierra U"));
  EXPECT_TRUE(platform::textContains("\xC3\xA9 macOS Sierra Update", "macOS Sierra U"));
  EXPECT_FALSE(platform::textContains("macOS Sierra U\xCC\x88", "macOS Sierra U"));
}

TEST_F(Text, OfPlainAsciiIsComparedWithoutAskingForItsComposedForm) {
  EXPECT_FALSE(platform::textEquals("MRTConfigData ", "MRTConfigData"));
  EXPECT_TRUE(platform::textContains("My macOS Mojave Installer", "macOS Mojave"));
  EXPECT_EQ(compositions, 0);
}

TEST_F(Text, OfPlainAsciiIsFoldedWithoutAskingForIt) {
  EXPECT_EQ(platform::folded("@AZ[`az{ 0"), "@az[`az{ 0");
  EXPECT_EQ(platform::folded("\xC3\x9C"), "folded \xC3\x9C");
}

TEST_F(Text, ThatIsTheSameToTheLastByteIsEqualWithoutAskingForItsComposedForm) {
  EXPECT_TRUE(platform::textEquals("\xC3\x9C", "\xC3\x9C"));
  EXPECT_EQ(compositions, 0);
}

TEST_F(Text, IsFoldedByThePlatformWhereItIsNotAsciiAlone) {
  std::vector<std::string> asked;
  services.services.foldedForm = [&](std::string_view text) {
    asked.emplace_back(text);
    return "<" + std::string(text) + ">";
  };
  EXPECT_EQ(platform::folded("A/Z[@"), "a/z[@");
  EXPECT_EQ(asked, std::vector<std::string>{});
  EXPECT_EQ(platform::folded("\u00C9A/bE\u0301\u0302CD\u00E9"), "<\u00C9>a/b<e\u0301\u0302>c<d\u00E9>");
  EXPECT_EQ(platform::folded(""), "");
}

}  // namespace
}  // namespace pelmarix
