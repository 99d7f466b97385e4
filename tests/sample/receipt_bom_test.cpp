#include "sample/receipt_bom.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "base/date.h"

namespace pelmarix::sample {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr std::size_t largePaths = 1200;

Receipt receiptOf(ReceiptBom bom, int year = 2019) {
  const double seconds =
      static_cast<double>(daysFromCivil(year, 3, 26)) * 86400.0 - secondsFromUnixEpochToReferenceDate;
  return {.stem = "com.example.office.16U1",
          .packageIdentifier = "com.example.office.16U1",
          .packageVersion = "16.1",
          .installDate = {seconds},
          .form = ReceiptForm::binary,
          .bom = bom};
}

std::string bomOf(const Receipt& receipt) { return bomFile(receipt, largePaths); }

TEST(SampleBom, OfAnApplicationNamesItsFilesAndTheTargetsOfItsLinks) {
  const std::string bom = bomOf(receiptOf(ReceiptBom::usual));
  EXPECT_THAT(bom, StartsWith("BOMStore"));
  for (const char* name : {"office.app", "Überblick für Einsteiger.html", "はじめに.html",
                           "Columns\tand\ttabs.txt", "Main Menu.strings", "Versions/Current/Sketching"}) {
    EXPECT_THAT(bom, HasSubstr(name));
  }
}

TEST(SampleBom, OfADataUpdateNamesItsTables) {
  Receipt receipt = receiptOf(ReceiptBom::usual);
  receipt.packageIdentifier = "com.apple.pkg.MRTConfigData.16U1";
  EXPECT_THAT(bomOf(receipt), HasSubstr("Table 2.dat"));
}

TEST(SampleBom, FromBefore2018HasShorterRecords) {
  EXPECT_LT(bomOf(receiptOf(ReceiptBom::usual, 2017)).size(),
            bomOf(receiptOf(ReceiptBom::usual, 2018)).size());
}

TEST(SampleBom, WithoutPlainFilesStillNamesFolders) {
  const std::string bom = bomOf(receiptOf(ReceiptBom::foldersOnly));
  EXPECT_THAT(bom, HasSubstr("Application Support"));
  EXPECT_THAT(bom, Not(HasSubstr("Info.plist")));
}

TEST(SampleBom, ThatIsLargeHasAsManyPathsAsAskedFor) {
  const std::string bom = bomOf(receiptOf(ReceiptBom::large));
  // The first tree is that of the paths: its name, three numbers, and how many it has.
  EXPECT_EQ(bom.substr(bom.find("tree") + 16, 4), std::string("\0\0\x04\xB0", 4));
}

TEST(SampleBom, ThatIsBrokenIsTheFirstHalfOfAWholeOne) {
  const std::string whole = bomOf(receiptOf(ReceiptBom::usual));
  EXPECT_EQ(bomOf(receiptOf(ReceiptBom::broken)), whole.substr(0, whole.size() / 2));
}

TEST(SampleBom, ThatIsMissingIsNoFile) { EXPECT_THAT(bomOf(receiptOf(ReceiptBom::missing)), IsEmpty()); }

}  // namespace
}  // namespace pelmarix::sample
