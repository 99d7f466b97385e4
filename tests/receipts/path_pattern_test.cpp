#include "receipts/path_pattern.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/test_services.h"

namespace pelmarix {
namespace {

class Pattern : public testing::Test {
 protected:
  Pattern() {
    // Enough of Unicode for one letter in two cases and two spellings.
    services.services.foldedForm = [](std::string_view text) {
      std::string form;
      for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string_view rest = text.substr(i);
        const bool isComposed = rest.starts_with("\u00E9") || rest.starts_with("\u00C9");
        const bool isDecomposed = rest.starts_with("e\u0301") || rest.starts_with("E\u0301");
        if (isComposed || isDecomposed) {
          form += "\u00E9";
          i += isComposed ? 1 : 2;
        } else {
          form += text[i] >= 'A' && text[i] <= 'Z' ? static_cast<char>(text[i] + 32) : text[i];
        }
      }
      return form;
    };
  }
  static bool matches(const std::string& text, const std::string& path) {
    return PathPattern(text).matches(path);
  }
  static bool isNarrower(const std::string& text, const std::string& wider) {
    return PathPattern(text).isNarrowerThan(PathPattern(wider));
  }
  test::TestServices services;
};

TEST_F(Pattern, MatchesWhereItsTextStandsAnywhereInAPath) {
  for (const char* text : {"/Library/Fonts/A b.ttf", "/Lib", "brary/Fo", "A b.ttf", " ", ".", "f"})
    EXPECT_TRUE(matches(text, "/Library/Fonts/A b.ttf")) << text;
  for (const char* text : {"Fonts/Library", "A  b", "ttfs", "\t", "[a]"})
    EXPECT_FALSE(matches(text, "/Library/Fonts/A b.ttf")) << text;
}

TEST_F(Pattern, MatchesNothingWhenItIsEmpty) {
  EXPECT_TRUE(PathPattern("").isEmpty());
  EXPECT_FALSE(matches("", "/a"));
  EXPECT_FALSE(matches("", ""));
}

TEST_F(Pattern, TakesUpperAndLowerCaseAndBothSpellingsOfALetterAlike) {
  EXPECT_TRUE(matches("LIBRARY/fonts", "/Library/Fonts/a"));
  for (const char* text : {"caf\u00E9", "CAF\u00C9", "cafe\u0301", "CAFE\u0301"})
    for (const char* path : {"/Caf\u00E9", "/cAFE\u0301"}) EXPECT_TRUE(matches(text, path)) << text << path;
  EXPECT_FALSE(matches("cafe", "/caf\u00E9"));
  EXPECT_FALSE(matches("caf\u00E9", "/cafe"));
}

TEST_F(Pattern, BeginsAtTheRootWithASlashInFront) {
  for (const char* text : {"/usr/bin", "./usr/bin"}) {
    EXPECT_TRUE(matches(text, "/usr/bin/a")) << text;
    EXPECT_FALSE(matches(text, "/opt/usr/bin/a")) << text;
    EXPECT_FALSE(matches(text, "usr/bin/a")) << text;
    EXPECT_FALSE(matches(text, "x/usr/bin/a")) << text;
  }
  EXPECT_TRUE(matches("usr/bin", "/opt/usr/bin/a"));
  EXPECT_TRUE(matches("/", "/a"));
  EXPECT_TRUE(matches("/*.so", "/a.so"));
  EXPECT_FALSE(matches("/*.so", "/a/b.so"));
}

TEST_F(Pattern, HasAStarForAnyCharactersButASlash) {
  EXPECT_TRUE(matches("lib*.so", "/usr/lib/libc.so"));
  EXPECT_TRUE(matches("lib*.so", "/usr/lib.so"));
  EXPECT_FALSE(matches("lib*.so", "/usr/lib/c.so"));
  EXPECT_TRUE(matches("a*b*c", "/a1b2c"));
  EXPECT_FALSE(matches("a*b*c", "/a1b/2c"));
  EXPECT_TRUE(matches("*", "/a"));
  EXPECT_TRUE(matches("**b", "/a/b"));
  EXPECT_TRUE(matches("*.kext/*/MacOS", "/a/x.kext/Contents/MacOS/x"));
  EXPECT_FALSE(matches("*.kext/*/MacOS", "/a/x.kext/y/Contents/MacOS/x"));
  EXPECT_TRUE(matches("a*", "/a*"));
}

TEST_F(Pattern, FindsALaterPlaceWhereAnEarlierOneFails) {
  EXPECT_TRUE(matches("a*c", "/ab/ac"));
  EXPECT_TRUE(matches("x/a*c", "/x/ab/x/abc"));
  EXPECT_TRUE(matches("a/a*b", "/a/a/a/ab"));
  EXPECT_TRUE(matches("aa*b", "/aaa/aab"));
  EXPECT_FALSE(matches("a*c", "/ab/bc/ab"));
}

TEST_F(Pattern, HasAQuestionMarkForOneCharacterButASlash) {
  EXPECT_TRUE(matches("libc.?o", "/libc.so"));
  EXPECT_FALSE(matches("libc?so", "/libcso"));
  EXPECT_FALSE(matches("a?b", "/a/b"));
  EXPECT_TRUE(matches("caf?.txt", "/caf\u00E9.txt"));
  EXPECT_TRUE(matches("caf?.txt", "/cafe\u0301.txt"));
  EXPECT_FALSE(matches("caf??.txt", "/caf\u00E9.txt"));
  EXPECT_TRUE(matches("???", "/abc"));
  EXPECT_FALSE(matches("????", "/abc"));
  EXPECT_TRUE(matches("?b", "/a\u00E9b"));
}

TEST_F(Pattern, TakesNoLongerForManyStarsAndManyPlaces) {
  std::string path;
  for (int i = 0; i < 40; ++i) path += "/" + std::string(100, 'a');
  std::string text;
  for (int i = 0; i < 50; ++i) text += "a*";
  EXPECT_TRUE(matches(text, path));
  EXPECT_FALSE(matches(text + "b", path));
}

TEST_F(Pattern, IsNarrowerThanTheTextThatWasTypedOn) {
  EXPECT_TRUE(isNarrower("fonts", "font"));
  EXPECT_TRUE(isNarrower("FONTS", "on"));
  EXPECT_TRUE(isNarrower("font*s", "font*"));
  EXPECT_TRUE(isNarrower("/usr", "/us"));
  EXPECT_TRUE(isNarrower("/usr", "usr"));
  EXPECT_TRUE(isNarrower("a", "a"));
  EXPECT_FALSE(isNarrower("font", "fonts"));
  EXPECT_FALSE(isNarrower("x/usr", "/usr"));
  EXPECT_FALSE(isNarrower("a", ""));
  EXPECT_FALSE(isNarrower("", "a"));
  EXPECT_FALSE(isNarrower("e\u0301", "e"));
}

TEST_F(Pattern, NarrowsNothingAway) {
  // Whatever matches the longer text matches the shorter one.
  const std::string letters = "ab/*?";
  std::vector<std::string> texts = {""};
  for (std::size_t i = 0; texts.size() < 156; ++i)
    for (const char letter : letters) texts.push_back(texts[i] + letter);
  for (const std::string& text : texts) {
    for (const std::string& wider : texts) {
      if (!isNarrower(text, wider)) continue;
      for (const char* path : {"/a", "/ab/a", "/b/ba/ab", "a/b", "/aab/b/a", "b"})
        EXPECT_FALSE(matches(text, path) && !matches(wider, path)) << text << " " << wider << " " << path;
    }
  }
}

}  // namespace
}  // namespace pelmarix
