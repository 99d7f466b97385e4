#include "platform/url.h"

#include <gtest/gtest.h>

namespace pelmarix {
namespace {

TEST(URL, KeepsAValidAddressAsItStands) {
  const std::string text = "https://downloads.example/a/b.zip?x=1&y=%C3%A9#top";
  ASSERT_TRUE(platform::URL::fromString(text));
  EXPECT_EQ(platform::URL::fromString(text)->absoluteString(), text);
}

TEST(URL, IsNotMadeOfAnEmptyText) { EXPECT_FALSE(platform::URL::fromString("")); }

TEST(URL, IsNotMadeOfTextWithCharactersOutsideTheSyntax) {
  for (const char* text : {"https://a.example/b c", "https://a.example/<b>", "https://a.example/{b}", "a\nb",
                           "a\\b", "https://a.example/\xC3\xA9", "\"a\"", "a|b", "a^b", "a`b"})
    EXPECT_FALSE(platform::URL::fromString(text)) << text;
  EXPECT_FALSE(platform::URL::fromString(std::string("a\0b", 3)));
}

TEST(URL, IsNotMadeOfTextWithABrokenPercentEscape) {
  for (const char* text : {"a%", "a%4", "a%4g", "a%g4", "100%"})
    EXPECT_FALSE(platform::URL::fromString(text)) << text;
  EXPECT_TRUE(platform::URL::fromString("a%4A"));
}

}  // namespace
}  // namespace pelmarix
