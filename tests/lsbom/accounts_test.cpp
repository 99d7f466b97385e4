#include "lsbom/accounts.h"

#include <gtest/gtest.h>

namespace pelmarix::lsbom {
namespace {

TEST(Accounts, FindsNamesById) {
  const Accounts accounts("root:*:0:0:System Administrator:/var/root:/bin/sh\nadmin:*:80:root");
  ASSERT_NE(accounts.name(0), nullptr);
  EXPECT_EQ(*accounts.name(0), "root");
  ASSERT_NE(accounts.name(80), nullptr);
  EXPECT_EQ(*accounts.name(80), "admin");
  EXPECT_EQ(accounts.name(501), nullptr);
}

TEST(Accounts, TakesNegativeIdsAsTheLargest) {
  const Accounts accounts("nobody:*:-2:-2::/var/empty:/usr/bin/false\n");
  ASSERT_NE(accounts.name(4294967294), nullptr);
  EXPECT_EQ(*accounts.name(4294967294), "nobody");
}

TEST(Accounts, TakesIdsDownToTheLowestAndUpToTheHighest) {
  const Accounts accounts("lowest:*:-2147483648:\nhighest:*:4294967295:\n");
  ASSERT_NE(accounts.name(2147483648), nullptr);
  EXPECT_EQ(*accounts.name(2147483648), "lowest");
  ASSERT_NE(accounts.name(4294967295), nullptr);
  EXPECT_EQ(*accounts.name(4294967295), "highest");
}

TEST(Accounts, ReadsNoFurtherThanTheLinesReach) {
  constexpr std::string_view more = "staff:*:201\n";
  const Accounts accounts(more.substr(0, more.size() - 2));
  ASSERT_NE(accounts.name(20), nullptr);
  EXPECT_EQ(*accounts.name(20), "staff");
  EXPECT_EQ(accounts.name(201), nullptr);
}

TEST(Accounts, KeepsTheFirstNameOfAnId) {
  const Accounts accounts("root:*:0:\nsystem:*:0:\n");
  EXPECT_EQ(*accounts.name(0), "root");
}

TEST(Accounts, PassesOverLinesOfAnyOtherForm) {
  const Accounts accounts(
      "# staff:*:1:\n\n:*:2:\nname\nname:*\nname:*:\nname:*:3x:\nname:*:4294967296:\nname:*:-2147483649:\n");
  for (const std::uint32_t id : {0U, 1U, 2U, 3U, 2147483647U}) EXPECT_EQ(accounts.name(id), nullptr);
}

TEST(Accounts, AreNoneWithoutALine) {
  EXPECT_EQ(Accounts().name(0), nullptr);
  EXPECT_EQ(Accounts("").name(0), nullptr);
}

}  // namespace
}  // namespace pelmarix::lsbom
