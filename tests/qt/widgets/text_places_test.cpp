#include "qt/widgets/text_places.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace pelmarix::qt {
namespace {

TextIndex indexOf(std::string text) { return TextIndex(platform::shareText(std::move(text))); }

TEST(TextPlaces, AreBesideWholeCharactersAlsoWhereTheToolkitStopsWithin) {
  const TextIndex text = indexOf("\U000111E1b");
  EXPECT_EQ(nextPlace(text, 0, TextUnit::character), 4U);
  EXPECT_EQ(nextPlace(text, 4, TextUnit::character), 5U);
  EXPECT_EQ(previousPlace(text, 5, TextUnit::character), 4U);
  EXPECT_EQ(previousPlace(text, 4, TextUnit::character), 0U);
}

TEST(TextPlaces, AreNoFartherThanAThousandBytesInAWordWithoutAnEnd) {
  const TextIndex text = indexOf(std::string(5000, 'x'));
  EXPECT_EQ(nextPlace(text, 2000, TextUnit::word), 2000U + 1024);
  EXPECT_EQ(previousPlace(text, 2000, TextUnit::word), 2000U - 1024);
  EXPECT_EQ(unitAround(text, 2000, TextUnit::word), (TextRange{2000 - 1024, 2000 + 1024}));
  EXPECT_EQ(previousPlace(text, 1024, TextUnit::word), 0U);
  EXPECT_EQ(nextPlace(text, 4000, TextUnit::word), 5000U);
  EXPECT_EQ(unitAround(text, 2000, TextUnit::line), (TextRange{0, 5000}));
}

}  // namespace
}  // namespace pelmarix::qt
