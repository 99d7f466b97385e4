#include "sample/receipts.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>
#include <string>

namespace pelmarix::sample {
namespace {

TEST(SampleReceipts, AreAsManyAsAskedForAndEachHasAPlaceOfItsOwn) {
  for (const std::size_t count : {0U, 1U, 300U, 10'000U}) {
    std::set<std::string> stems;
    for (const Receipt& receipt : receipts(count)) stems.insert(receipt.stem);
    EXPECT_EQ(stems.size(), count);
  }
}

TEST(SampleReceipts, ComeInBothFormsAndWithEveryKindOfBom) {
  std::map<ReceiptForm, int> forms;
  std::map<ReceiptBom, int> boms;
  for (const Receipt& receipt : receipts(50)) {
    ++forms[receipt.form];
    ++boms[receipt.bom];
  }
  EXPECT_EQ(forms.size(), 2U);
  EXPECT_EQ(boms.size(), 5U);
  EXPECT_EQ(boms[ReceiptBom::large], 1);
  EXPECT_EQ(boms[ReceiptBom::broken], 1);
}

TEST(SampleReceipts, HaveFractionsOfSecondsOnlyInTheBinaryForm) {
  int fractions = 0;
  for (const Receipt& receipt : receipts(300)) {
    const double seconds = receipt.installDate.timeIntervalSinceReferenceDate;
    if (seconds == std::floor(seconds)) continue;
    EXPECT_EQ(receipt.form, ReceiptForm::binary);
    ++fractions;
  }
  EXPECT_GT(fractions, 100);
}

TEST(SampleReceipts, LiePartlyInASubFolderAndPartlyUnderNamesWithBlanks) {
  int inFolder = 0;
  int withBlanks = 0;
  for (const Receipt& receipt : receipts(300)) {
    if (receipt.stem.starts_with("Archive/")) ++inFolder;
    if (receipt.stem.find(' ') != std::string::npos) ++withBlanks;
  }
  EXPECT_EQ(inFolder, 15);
  EXPECT_EQ(withBlanks, 12);
}

TEST(SampleReceipts, SomeShareTheirMoment) {
  std::map<Date, int> sharing;
  for (const Receipt& receipt : receipts(300)) ++sharing[receipt.installDate];
  EXPECT_LT(sharing.size(), 300U);
}

TEST(SampleReceipts, WriteTheirIdentifierAndTheirDate) {
  Receipt receipt{.stem = "one",
                  .packageIdentifier = "com.example.one",
                  .packageVersion = "1.0",
                  .installDate = {575287872},
                  .form = ReceiptForm::xml,
                  .bom = ReceiptBom::missing};
  const std::string xml = propertyListFile(receipt);
  EXPECT_NE(xml.find("<key>PackageIdentifier</key>\n\t<string>com.example.one</string>"), std::string::npos);
  EXPECT_NE(xml.find("<key>InstallDate</key>\n\t<date>2019-03-26T10:11:12Z</date>"), std::string::npos);
  receipt.form = ReceiptForm::binary;
  EXPECT_TRUE(propertyListFile(receipt).starts_with("bplist00"));
}

}  // namespace
}  // namespace pelmarix::sample
