#include "platform/url.h"

#include <gtest/gtest.h>

#include "tests/support/test_services.h"

namespace pelmarix {
namespace {

TEST(URL, KeepsAValidAddressAsItStands) {
  const test::TestServices services;
  const std::string text = "https://downloads.example/a/b.zip?x=1&y=%C3%A9#top";
  ASSERT_TRUE(platform::URL::fromString(text));
  EXPECT_EQ(platform::URL::fromString(text)->absoluteString(), text);
}

TEST(URL, IsNotMadeOfWhatThePlatformTakesForNoAddress) {
  test::TestServices services;
  std::vector<std::string> asked;
  services.services.isValidAddress = [&](const std::string& text) {
    asked.push_back(text);
    return false;
  };
  EXPECT_FALSE(platform::URL::fromString("https://host:99999/"));
  EXPECT_EQ(asked, std::vector<std::string>{"https://host:99999/"});
}

}  // namespace
}  // namespace pelmarix
