#include "lsbom/field_formats.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>

namespace pelmarix::lsbom {
namespace {

std::string timeOf(std::uint32_t seconds) {
  const auto form = classicTime(seconds);
  return {form.data(), form.size()};
}

TEST(SymbolicMode, HasALetterForEachBitOfItsOwn) {
  const std::string all = "-rwxrwxrwx";
  for (std::size_t place = 1; place < all.size(); ++place) {
    const auto bit = static_cast<std::uint16_t>(1 << (9 - place));
    std::string alone = "----------";
    std::string others = all;
    std::swap(alone[place], others[place]);
    EXPECT_EQ(symbolicMode(static_cast<std::uint16_t>(0100000 | bit)), alone);
    EXPECT_EQ(symbolicMode(static_cast<std::uint16_t>(0100777 & ~bit)), others);
  }
}

TEST(SymbolicMode, NamesTheType) {
  EXPECT_EQ(symbolicMode(0040555), "dr-xr-xr-x");
  EXPECT_EQ(symbolicMode(0100644), "-rw-r--r--");
  EXPECT_EQ(symbolicMode(0120755), "lrwxr-xr-x");
  EXPECT_EQ(symbolicMode(0060640), "brw-r-----");
  EXPECT_EQ(symbolicMode(0020666), "crw-rw-rw-");
  EXPECT_EQ(symbolicMode(0010600), "prw-------");
  EXPECT_EQ(symbolicMode(0140777), "srwxrwxrwx");
  EXPECT_EQ(symbolicMode(0000000), "?---------");
}

TEST(SymbolicMode, ShowsSetIdAndStickyBitsInThePlaceOfExecution) {
  EXPECT_EQ(symbolicMode(0107777), "-rwsrwsrwt");
  EXPECT_EQ(symbolicMode(0107666), "-rwSrwSrwT");
  EXPECT_EQ(symbolicMode(0104755), "-rwsr-xr-x");
  EXPECT_EQ(symbolicMode(0041777), "drwxrwxrwt");
}

TEST(GroupedNumber, PutsACommaEveryThreeDigits) {
  EXPECT_EQ(groupedNumber(0), "0");
  EXPECT_EQ(groupedNumber(999), "999");
  EXPECT_EQ(groupedNumber(1000), "1,000");
  EXPECT_EQ(groupedNumber(123456), "123,456");
  EXPECT_EQ(groupedNumber(4294967295), "4,294,967,295");
}

TEST(ClassicTime, IsInUtc) {
  EXPECT_EQ(timeOf(1538021007), "Thu Sep 27 04:03:27 2018");
  EXPECT_EQ(timeOf(0), "Thu Jan  1 00:00:00 1970");
  EXPECT_EQ(timeOf(951827696), "Tue Feb 29 12:34:56 2000");
  EXPECT_EQ(timeOf(498790800), "Tue Oct 22 01:00:00 1985");
  EXPECT_EQ(timeOf(1704067199), "Sun Dec 31 23:59:59 2023");
  EXPECT_EQ(timeOf(4294967295), "Sun Feb  7 06:28:15 2106");
}

TEST(ClassicTime, BeginsTheNextDayAfterItsLastSecond) {
  EXPECT_EQ(timeOf(1538006400), "Thu Sep 27 00:00:00 2018");
  EXPECT_EQ(timeOf(1538092799), "Thu Sep 27 23:59:59 2018");
  EXPECT_EQ(timeOf(1538092800), "Fri Sep 28 00:00:00 2018");
}

}  // namespace
}  // namespace pelmarix::lsbom
