#include "receipts/listing_search.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

#include "tests/support/test_services.h"

namespace pelmarix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ListingSearch : public testing::Test {
 protected:
  ListingSearch() {
    services.services.foldedForm = [](std::string_view text) { return std::string(text); };
  }
  std::vector<std::string> paths() {
    std::vector<std::string> found;
    for (const ListedFile& file : search.files()) found.emplace_back(file.path());
    return found;
  }
  test::TestServices services;
  pelmarix::ListingSearch search{PathPattern("safari")};
};

const std::string listing =
    "./Applications/Safari.app/Contents/Info.plist\t4096\tThu Sep 27 04:03:27 2018\n"
    "./usr/bin/safaridriver\t70\tMon Jan  1 00:00:00 2018\n"
    "./usr/bin/ssh\t1\tMon safari Jan  1 00:00:00 2018\n"
    "./caf\u00E9/safari\t2\tdate\n";

TEST_F(ListingSearch, KeepsTheFilesWhosePathsMatch) {
  search.take(listing);
  search.finish();
  EXPECT_TRUE(search.isListing());
  EXPECT_THAT(paths(), ElementsAre("/Applications/Safari.app/Contents/Info.plist", "/usr/bin/safaridriver",
                                   "/caf\u00E9/safari"));
  const ListedFile& file = search.files()[0];
  EXPECT_EQ(file.text(), listing.substr(0, listing.find('\n')));
  EXPECT_EQ(file.size(), "4096");
  EXPECT_EQ(file.modified(), "Thu Sep 27 04:03:27 2018");
}

TEST_F(ListingSearch, FindsTheSameWhereverTheListingIsCut) {
  for (std::size_t size = 1; size <= listing.size(); ++size) {
    pelmarix::ListingSearch other(PathPattern("safari"));
    for (std::size_t begin = 0; begin < listing.size(); begin += size)
      other.take(listing.substr(begin, size));
    other.finish();
    ASSERT_TRUE(other.isListing()) << size;
    ASSERT_EQ(other.files().size(), 3U) << size;
    ASSERT_EQ(other.files()[2].path(), "/caf\u00E9/safari") << size;
  }
}

TEST_F(ListingSearch, DropsWhatItHasLookedThrough) {
  std::string part;
  for (int i = 0; i < 1000; ++i) part += "./usr/share/man/man1/a.1\t2\tdate\n";
  for (int i = 0; i < 100; ++i) search.take(part);
  EXPECT_EQ(search.cost(), 0U);
  search.take("./safari\t1\td\n");
  EXPECT_EQ(search.cost(), sizeof(ListedFile) + 12);
}

TEST_F(ListingSearch, TakesTheLastTwoTabsForTheEndOfAPath) {
  search.take(
      "./a\tsafari\tb\t12\tdate\n./one\nsafari\n\t3\tdate\nsafari\t7\n./safari\n./x\t1\td\n\tsafari\n");
  search.finish();
  EXPECT_TRUE(search.isListing());
  EXPECT_THAT(paths(), ElementsAre("/a\tsafari\tb", "/one\nsafari\n", "safari", "/safari\n./x"));
  EXPECT_EQ(search.files()[1].size(), "3");
  EXPECT_EQ(search.files()[2].size(), "");
  EXPECT_EQ(search.files()[2].modified(), "7");
}

TEST_F(ListingSearch, TakesAFileWithoutAPathForOne) {
  search.take("\t5\n./safari\t1\td\n\t\tdate\n");
  EXPECT_THAT(paths(), ElementsAre("/safari"));
  const ListedFile file("\t\tdate");
  EXPECT_EQ(file.path(), "");
  EXPECT_EQ(file.size(), "");
  EXPECT_EQ(file.modified(), "date");
}

TEST_F(ListingSearch, TakesALastLineWithoutALineEnd) {
  search.take("./safari\t1\tdate");
  EXPECT_THAT(paths(), IsEmpty());
  search.finish();
  EXPECT_TRUE(search.isListing());
  EXPECT_THAT(paths(), ElementsAre("/safari"));
  EXPECT_EQ(search.files()[0].modified(), "date");
}

TEST_F(ListingSearch, OfNothingIsAListingWithoutFiles) {
  search.finish();
  EXPECT_TRUE(search.isListing());
  EXPECT_THAT(paths(), IsEmpty());
}

TEST_F(ListingSearch, RefusesWhatIsNotUtf8) {
  search.take("./safari\t1\td\n./caf\xE9\t1\td\n");
  EXPECT_FALSE(search.isListing());
  search.take("./safari\t1\td\n");
  search.finish();
  EXPECT_FALSE(search.isListing());
  EXPECT_THAT(paths(), IsEmpty());
}

TEST_F(ListingSearch, GivesUpWhereMemoryRunsOut) {
  services.services.foldedForm = [](std::string_view) -> std::string { throw std::bad_alloc(); };
  search.take("./safari\t1\td\n./caf\u00E9\t1\td\n");
  EXPECT_FALSE(search.isListing());
}

TEST_F(ListingSearch, RefusesALetterThatIsCutOffAtTheEnd) {
  search.take("./safari\t1\tcaf\xC3");
  EXPECT_TRUE(search.isListing());
  search.finish();
  EXPECT_FALSE(search.isListing());
}

TEST_F(ListingSearch, RefusesWhatHasNoEnd) {
  search.take("./safari");
  search.finish();
  EXPECT_FALSE(search.isListing());

  pelmarix::ListingSearch endless(PathPattern("safari"));
  const std::string part(65536, 'a');
  for (int i = 0; i < 16; ++i) endless.take(part);
  EXPECT_TRUE(endless.isListing());
  endless.take("a");
  EXPECT_FALSE(endless.isListing());
}

TEST_F(ListingSearch, EndsWhereMemoryRunsOut) {
  services.services.foldedForm = [](std::string_view) -> std::string { throw std::bad_alloc(); };
  search.take("./caf\u00E9/safari\t1\td\n");
  EXPECT_FALSE(search.isListing());
}

TEST_F(ListingSearch, GoesOnWithANarrowerPattern) {
  search.take(listing.substr(0, listing.size() - 5));
  search.narrow(PathPattern("safaridriver"));
  search.take(listing.substr(listing.size() - 5));
  search.finish();
  EXPECT_THAT(paths(), ElementsAre("/usr/bin/safaridriver"));
  EXPECT_EQ(search.cost(), search.files()[0].cost());
}

}  // namespace
}  // namespace pelmarix
