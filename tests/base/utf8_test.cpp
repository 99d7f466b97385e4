#include "base/utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pelmarix {
namespace {

TEST(IsValidUtf8, OfWellFormedTextOfEveryLength) {
  for (const char* text : {"", "a", "plain ASCII that is longer than eight bytes", "\u007F", "\u0080",
                           "\u07FF", "\u0800", "\uD7FF", "\uE000", "\uFFFD", "\U00010000", "\U0010FFFF",
                           "1234567\u00E9\u20AC\U0001F600 and on and on"})
    EXPECT_TRUE(isValidUtf8(text)) << text;
  EXPECT_TRUE(isValidUtf8(std::string("a\0b", 3)));
}

TEST(IsValidUtf8, NotOfOverlongFormsSurrogatesAndWhatLiesAboveUnicode) {
  for (const char* bytes :
       {"\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xE0\x9F\xBF", "\xF0\x80\x80\x80", "\xF0\x8F\xBF\xBF",
        "\xED\xA0\x80", "\xED\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"})
    EXPECT_FALSE(isValidUtf8(bytes));
}

TEST(IsValidUtf8, NotOfStrayOrMissingContinuations) {
  for (const char* bytes : {"\x80", "a\xBF", "\xC3", "\xC3\x28", "\xE2\x82", "\xE2\x28\xA1", "\xE2\x82\x28",
                            "\xF0\x9F\x98", "\xF0\x9F\x98\x28", "12345678\xC3"})
    EXPECT_FALSE(isValidUtf8(bytes));
}

TEST(FindInvalidUtf8, FindsTheFirstByteOfWhatIsNotWellFormed) {
  for (const std::string_view bytes : {"\x80", "\xC1\xBF", "\xC3", "\xE0\x9F\xBF", "\xE2\x82", "\xED\xA0\x80",
                                       "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80"}) {
    const std::string text = "a\u00E9" + std::string(bytes) + "b";
    EXPECT_EQ(findInvalidUtf8(text.data(), text.data() + text.size()), text.data() + 3) << text;
  }
}

TEST(FindInvalidUtf8, LooksNoFurtherThanTheEnd) {
  const std::string_view text = "a\U0001F600";
  for (std::size_t size = 2; size < text.size(); ++size)
    EXPECT_EQ(findInvalidUtf8(text.data(), text.data() + size), text.data() + 1) << size;
  const std::vector<char> block(3, 'a');  // with nothing behind it
  EXPECT_EQ(findInvalidUtf8(block.data(), block.data() + block.size()), block.data() + block.size());
}

TEST(FindNonAscii, FindsTheFirstAtEveryPlaceOfTextsOfEveryLength) {
  for (std::size_t length = 0; length < 34; ++length) {
    const std::string plain(length, '\x7F');
    EXPECT_EQ(findNonAscii(plain.data(), plain.data() + length), plain.data() + length);
    for (std::size_t place = 0; place < length; ++place) {
      std::string text = plain;
      text[place] = '\x80';
      text[length - 1] = '\xFF';
      EXPECT_EQ(findNonAscii(text.data(), text.data() + length), text.data() + place);
    }
  }
}

}  // namespace
}  // namespace pelmarix
