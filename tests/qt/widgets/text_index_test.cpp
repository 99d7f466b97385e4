#include "qt/widgets/text_index.h"

#include <gtest/gtest.h>

#include <string>

namespace pelmarix::qt {
namespace {

TextIndex indexOf(const std::string& text) { return TextIndex(platform::shareText(text)); }

TEST(TextIndex, EndsLinesAtLineFeeds) {
  const TextIndex index = indexOf("\n\nab\nc");
  ASSERT_EQ(index.lineCount(), 4U);
  EXPECT_EQ(index.line(0), (TextRange{0, 0}));
  EXPECT_EQ(index.line(1), (TextRange{1, 1}));
  EXPECT_EQ(index.line(2), (TextRange{2, 4}));
  EXPECT_EQ(index.line(3), (TextRange{5, 6}));
  EXPECT_EQ(index.lineAt(4), 2U);
  EXPECT_EQ(index.lineAt(5), 3U);
  EXPECT_EQ(index.lineAt(6), 3U);
}

TEST(TextIndex, HasOneEmptyLineForNoTextAndAfterTheLastLineFeed) {
  EXPECT_EQ(indexOf("").lineCount(), 1U);
  EXPECT_EQ(indexOf("").line(0), (TextRange{0, 0}));
  EXPECT_EQ(indexOf("a\n").lineCount(), 2U);
  EXPECT_EQ(indexOf("a\n").line(1), (TextRange{2, 2}));
}

TEST(TextIndex, CountsUtf16UnitsThereAndBack) {
  const TextIndex index = indexOf("a\u00e9\u20ac\U0001f600b");  // of 1, 2, 3, 4 and 1 bytes
  const std::size_t places[] = {0, 1, 3, 6, 10, 11};
  const std::size_t units[] = {0, 1, 2, 3, 5, 6};
  for (std::size_t i = 0; i < std::size(places); ++i) {
    EXPECT_EQ(index.utf16Before(places[i]), units[i]);
    EXPECT_EQ(index.placeAfterUtf16(units[i]), places[i]);
  }
  EXPECT_EQ(index.placeAfterUtf16(4), 6U) << "inside an emoji";
  EXPECT_EQ(index.placeAfterUtf16(1000), 11U);
  EXPECT_EQ(index.placeAt(9), 6U);
  EXPECT_EQ(index.placeAt(1000), 11U);
}

TEST(TextIndex, KnowsLinesAndUnitsOfTextsOfManyBlocks) {
  for (const std::size_t lines : {1U, 100U, 1023U, 1024U, 1025U, 5000U}) {
    for (const std::string line :
         {"\n", "\u20ac\n", "\U0001f600\U0001f600 and more than that, to make it longer\n"}) {
      std::string text;
      for (std::size_t i = 0; i < lines; ++i) text += line;
      const TextIndex index = indexOf(text);
      const std::size_t unitsOfLine = utf16Length(line);
      ASSERT_EQ(index.lineCount(), lines + 1);
      for (std::size_t i = 0; i < lines; ++i) {
        const std::size_t begin = i * line.size();
        ASSERT_EQ(index.line(i), (TextRange{begin, begin + line.size() - 1}));
        ASSERT_EQ(index.lineAt(begin), i);
        ASSERT_EQ(index.lineAt(begin + line.size() - 1), i);
        ASSERT_EQ(index.utf16Before(begin), i * unitsOfLine);
        ASSERT_EQ(index.placeAfterUtf16(i * unitsOfLine), begin);
      }
      ASSERT_EQ(index.line(lines), (TextRange{text.size(), text.size()}));
    }
  }
}

TEST(TextIndex, HandlesOneLineOfFiftyMegabytes) {
  std::string line;
  line.resize(50'000'000, 'x');
  const TextIndex index = indexOf(line + "\nend");
  EXPECT_EQ(index.line(0), (TextRange{0, line.size()}));
  EXPECT_EQ(index.line(1), (TextRange{line.size() + 1, line.size() + 4}));
  EXPECT_EQ(index.lineAt(line.size() / 2), 0U);
}

}  // namespace
}  // namespace pelmarix::qt
