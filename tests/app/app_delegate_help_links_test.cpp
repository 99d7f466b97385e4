#include <string>
#include <vector>

#include "app/addresses.h"
#include "tests/app/app_fixture.h"

namespace pelmarix {
namespace {

class HelpLinks : public test::AppTest {
 protected:
  std::string pageForSystem(int major, int minor, int patch) {
    processInfo.version = {major, minor, patch};
    workspace.opened.clear();
    delegate.openUpdates(nullptr);
    return workspace.opened.size() == 1 ? workspace.opened.front() : "not one page";
  }
};

TEST_F(HelpLinks, OpenTheSupportPage) {
  delegate.openSupport(nullptr);
  EXPECT_EQ(workspace.opened, std::vector<std::string>{supportPageAddress});
}

TEST_F(HelpLinks, OpenTheOlderPageAboutUpdatesBelowMinorVersion12) {
  EXPECT_EQ(pageForSystem(10, 11, 6), olderSystemUpdatesPageAddress);
}

TEST_F(HelpLinks, OpenTheNewerPageAboutUpdatesFromMinorVersion12On) {
  EXPECT_EQ(pageForSystem(10, 12, 0), newerSystemUpdatesPageAddress);
  EXPECT_EQ(pageForSystem(10, 15, 7), newerSystemUpdatesPageAddress);
}

TEST_F(HelpLinks, DoNotLookAtTheMajorVersion) {
  for (const auto& [major, minor] : {std::pair{11, 0}, {11, 2}, {12, 6}, {13, 4}})
    EXPECT_EQ(pageForSystem(major, minor, 0), olderSystemUpdatesPageAddress);
  EXPECT_EQ(pageForSystem(9, 12, 0), newerSystemUpdatesPageAddress);
}

TEST(Addresses, AreOfDifferentPages) {
  EXPECT_STRNE(olderSystemUpdatesPageAddress, newerSystemUpdatesPageAddress);
}

}  // namespace
}  // namespace pelmarix
