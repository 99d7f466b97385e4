#include "sample/bill.h"

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

Receipt receiptOf(BillKind kind, int year = 2019) {
  const double seconds =
      static_cast<double>(daysFromCivil(year, 3, 26)) * 86400.0 - secondsFromUnixEpochToReferenceDate;
  return {.stem = "com.example.office.16U1",
          .packageIdentifier = "com.example.office.16U1",
          .packageVersion = "16.1",
          .installDate = {seconds},
          .form = ReceiptForm::binary,
          .billKind = kind};
}

std::string billOf(const Receipt& receipt) { return billFile(receipt, largePaths); }

TEST(SampleBill, OfAnApplicationNamesItsFilesAndTheTargetsOfItsLinks) {
  const std::string bill = billOf(receiptOf(BillKind::usual));
  EXPECT_THAT(bill, StartsWith("BOMStore"));
  for (const char* name : {"office.app", "Überblick für Einsteiger.html", "はじめに.html",
                           "Columns\tand\ttabs.txt", "Main Menu.strings", "Versions/Current/Sketching"}) {
    EXPECT_THAT(bill, HasSubstr(name));
  }
}

TEST(SampleBill, OfADataUpdateNamesItsTables) {
  Receipt receipt = receiptOf(BillKind::usual);
  receipt.packageIdentifier = "com.apple.pkg.MRTConfigData.16U1";
  EXPECT_THAT(billOf(receipt), HasSubstr("Table 2.dat"));
}

TEST(SampleBill, FromBefore2018HasShorterRecords) {
  EXPECT_LT(billOf(receiptOf(BillKind::usual, 2017)).size(), billOf(receiptOf(BillKind::usual, 2018)).size());
}

TEST(SampleBill, WithoutPlainFilesStillNamesFolders) {
  const std::string bill = billOf(receiptOf(BillKind::foldersOnly));
  EXPECT_THAT(bill, HasSubstr("Application Support"));
  EXPECT_THAT(bill, Not(HasSubstr("Info.plist")));
}

TEST(SampleBill, ThatIsLargeHasAsManyPathsAsAskedFor) {
  const std::string bill = billOf(receiptOf(BillKind::large));
  // The first tree is that of the paths: its name, three numbers, and how many it has.
  EXPECT_EQ(bill.substr(bill.find("tree") + 16, 4), std::string("\0\0\x04\xB0", 4));
}

TEST(SampleBill, ThatIsBrokenIsTheFirstHalfOfAWholeOne) {
  const std::string whole = billOf(receiptOf(BillKind::usual));
  EXPECT_EQ(billOf(receiptOf(BillKind::broken)), whole.substr(0, whole.size() / 2));
}

TEST(SampleBill, ThatIsMissingIsNoFile) { EXPECT_THAT(billOf(receiptOf(BillKind::missing)), IsEmpty()); }

}  // namespace
}  // namespace pelmarix::sample
