// What the sample's writers write, the decoder reads back as it was.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <variant>

#include "plist/document.h"
#include "sample/install_history.h"
#include "sample/property_list.h"
#include "sample/receipts.h"

namespace pelmarix::sample {
namespace {

void expectSame(const PropertyList& written, plist::Value read, ReceiptForm form) {
  if (const auto* string = std::get_if<std::string>(&written.value)) {
    EXPECT_EQ(read.string(), *string);
  } else if (const auto* date = std::get_if<Date>(&written.value)) {
    const double seconds = date->timeIntervalSinceReferenceDate;
    EXPECT_EQ(read.date(), Date{form == ReceiptForm::binary ? seconds : std::floor(seconds)});
  } else if (const auto* array = std::get_if<Array>(&written.value)) {
    ASSERT_EQ(read.type(), plist::Type::array);
    ASSERT_EQ(read.count(), array->size());
    auto item = array->begin();
    for (const plist::Value element : read.elements()) expectSame(*item++, element, form);
  } else {
    const auto& dictionary = std::get<Dictionary>(written.value);
    ASSERT_EQ(read.type(), plist::Type::dictionary);
    ASSERT_EQ(read.count(), dictionary.size());
    auto pair = dictionary.begin();
    for (const plist::Entry entry : read.entries()) {
      EXPECT_EQ(entry.key, pair->key);
      expectSame(pair->item, entry.value, form);
      ++pair;
    }
  }
}

void expectRoundTrip(const PropertyList& root) {
  for (const ReceiptForm form : {ReceiptForm::xml, ReceiptForm::binary}) {
    const std::string bytes = form == ReceiptForm::xml ? xmlForm(root) : binaryForm(root);
    const Result<plist::Document, plist::Error> decoded = plist::Document::decode(bytes);
    ASSERT_TRUE(decoded) << description(decoded.error());
    expectSame(root, decoded->root(), form);
  }
}

TEST(RoundTrip, OfAnInstallHistory) { expectRoundTrip(installHistory(1000)); }

TEST(RoundTrip, OfAnEmptyInstallHistory) { expectRoundTrip(installHistory(0)); }

TEST(RoundTrip, OfTextBeyondAscii) {
  expectRoundTrip({Dictionary{{"Größe", {std::string("日本語 🌒 & <>\t\"'")}}, {"", {std::string()}}}});
}

TEST(RoundTrip, OfDatesBeforeTheReferenceDateAndWithFractions) {
  expectRoundTrip({Array{{Date{-4e9}}, {Date{-0.25}}, {Date{0}}, {Date{752759044.491364}}, {Date{6.3e9}}}});
}

TEST(RoundTrip, OfDeepNesting) {
  PropertyList root = {std::string("inside")};
  for (int depth = 0; depth < 500; ++depth) root = {Array{root}};
  expectRoundTrip(root);
}

TEST(RoundTrip, OfEveryReceipt) {
  for (const Receipt& receipt : receipts(300)) {
    const std::string bytes = propertyListFile(receipt);
    const Result<plist::Document, plist::Error> decoded = plist::Document::decode(bytes);
    ASSERT_TRUE(decoded) << description(decoded.error());
    EXPECT_EQ(decoded->root().find("PackageIdentifier")->string(), receipt.packageIdentifier);
    EXPECT_EQ(decoded->root().find("InstallDate")->date(), receipt.installDate);
  }
}

}  // namespace
}  // namespace pelmarix::sample
