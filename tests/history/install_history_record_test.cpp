#include "history/install_history_record.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/heap_meter.h"
#include "tests/support/property_list_text.h"

namespace pelmarix {
namespace {

using test::date;
using test::key;
using test::propertyList;
using test::string;

const std::string aDate = key("date", date("2019-03-26T10:11:12Z"));
const std::string aName = key("displayName", string("macOS Mojave"));
const std::string aVersion = key("displayVersion", string("10.14"));
const std::string aContentType = key("contentType", string("config-data"));

std::optional<std::vector<theReceipts>> decodeEntry(const std::string& pairs) {
  return decodeInstallHistory(propertyList("<array><dict>" + pairs + "</dict></array>"));
}

TEST(InstallHistoryRecord, TakesItsFieldsFromTheKeysOfTheSameNames) {
  const auto records = decodeEntry(aContentType + aDate + aName + aVersion);
  ASSERT_TRUE(records);
  ASSERT_EQ(records->size(), 1u);
  EXPECT_EQ((*records)[0].contentType, "config-data");
  EXPECT_EQ((*records)[0].date, Date{575287872});
  EXPECT_EQ((*records)[0].displayName, "macOS Mojave");
  EXPECT_EQ((*records)[0].displayVersion, "10.14");
}

TEST(InstallHistoryRecord, WithoutContentTypeHasThatFieldAbsent) {
  const auto records = decodeEntry(aDate + aName + aVersion);
  ASSERT_TRUE(records);
  EXPECT_EQ((*records)[0].contentType, std::nullopt);
}

TEST(InstallHistoryRecord, WithAnEmptyContentTypeHasItPresent) {
  const auto records = decodeEntry(key("contentType", string("")) + aDate + aName + aVersion);
  ASSERT_TRUE(records);
  EXPECT_EQ((*records)[0].contentType, "");
}

TEST(InstallHistoryRecord, IgnoresOtherKeys) {
  const auto records = decodeEntry(aDate + aName + aVersion + key("processName", string("softwareupdated")) +
                                   key("packageIdentifiers", "<array><string>a</string></array>") +
                                   key("DisplayName", "<true/>"));
  ASSERT_TRUE(records);
  EXPECT_EQ((*records)[0].displayName, "macOS Mojave");
}

TEST(InstallHistoryRecord, TakesTheLastOfARepeatedKeyWhateverTheFirstHeld) {
  const auto records = decodeEntry(key("displayName", "<integer>1</integer>") + aDate + aName + aVersion);
  ASSERT_TRUE(records);
  EXPECT_EQ((*records)[0].displayName, "macOS Mojave");
  EXPECT_FALSE(decodeEntry(aDate + aName + aVersion + key("displayName", "<integer>1</integer>")));
}

TEST(InstallHistoryRecord, WithoutARequiredKeyMakesTheWholeFileUndecodable) {
  const std::string good = "<dict>" + aDate + aName + aVersion + "</dict>";
  for (const std::string& pairs : {aName + aVersion, aDate + aVersion, aDate + aName, std::string()})
    EXPECT_FALSE(decodeInstallHistory(
        propertyList("<array>" + good + "<dict>" + pairs + "</dict>" + good + "</array>")))
        << pairs;
}

TEST(InstallHistoryRecord, CountsAKeyInAnotherCaseAsMissing) {
  EXPECT_FALSE(decodeEntry(aDate + key("DisplayName", string("macOS Mojave")) + aVersion));
  EXPECT_FALSE(decodeEntry(key("Date", date("2019-03-26T10:11:12Z")) + aName + aVersion));
  EXPECT_FALSE(decodeEntry(aDate + aName + key("displayversion", string("10.14"))));
}

TEST(InstallHistoryRecord, RefusesValuesOfAnotherType) {
  EXPECT_FALSE(decodeEntry(key("date", string("2019-03-26T10:11:12Z")) + aName + aVersion));
  EXPECT_FALSE(decodeEntry(key("date", "<real>575287872</real>") + aName + aVersion));
  EXPECT_FALSE(decodeEntry(aDate + key("displayName", "<true/>") + aVersion));
  EXPECT_FALSE(decodeEntry(aDate + aName + key("displayVersion", "<real>10.14</real>")));
  EXPECT_FALSE(decodeEntry(aDate + aName + aVersion + key("contentType", "<integer>4</integer>")));
}

TEST(InstallHistoryRecord, RefusesARootThatIsNoArrayOfDictionaries) {
  EXPECT_FALSE(decodeInstallHistory(propertyList("<dict>" + aDate + aName + aVersion + "</dict>")));
  EXPECT_FALSE(decodeInstallHistory(propertyList("<string>a</string>")));
  EXPECT_FALSE(decodeInstallHistory(propertyList("<array><string>a</string></array>")));
  EXPECT_FALSE(decodeInstallHistory(propertyList("<array><array/></array>")));
}

TEST(InstallHistoryRecord, RefusesWhatIsNoPropertyList) {
  EXPECT_FALSE(decodeInstallHistory(""));
  EXPECT_FALSE(decodeInstallHistory("no property list"));
  EXPECT_FALSE(decodeInstallHistory(propertyList("<array><dict>")));
}

TEST(InstallHistoryRecord, OfAnEmptyArrayIsAnEmptyList) {
  const auto records = decodeInstallHistory(propertyList("<array/>"));
  ASSERT_TRUE(records);
  EXPECT_TRUE(records->empty());
}

/// A binary property list: an array that names one entry `count` times. The entry has a date of these
/// big-endian bytes, the name, a version, and `moreKeys` times the version under its key again. `unused`
/// bytes are part of nothing.
std::string binaryHistory(std::size_t count, const std::string& name, const std::string& dateBytes,
                          std::size_t moreKeys = 0, std::size_t unused = 0) {
  std::string bytes = "bplist00";
  std::vector<std::size_t> offsets;
  const auto appendBigEndian = [&](std::size_t value, int width) {
    for (int shift = 8 * (width - 1); shift >= 0; shift -= 8)
      bytes += static_cast<char>(value >> shift & 0xFF);
  };
  const auto begin = [&](char marker, std::size_t countOfObject) {
    offsets.push_back(bytes.size());
    bytes += marker;
    bytes += '\x12';
    appendBigEndian(countOfObject, 4);
  };
  const auto appendText = [&](const std::string& text) {
    begin('\x5F', text.size());
    bytes += text;
  };
  begin('\xAF', count);  // object 0: the array
  bytes.append(count, '\x01');
  begin('\xDF', 3 + moreKeys);  // object 1: the entry
  bytes += "\x02\x03\x04";
  bytes.append(moreKeys, '\x04');
  bytes += "\x05\x06\x07";
  bytes.append(moreKeys, '\x07');
  appendText("date");
  appendText("displayName");
  appendText("displayVersion");
  offsets.push_back(bytes.size());  // object 5: the date
  bytes += '\x33' + dateBytes;
  appendText(name);
  appendText("1");
  bytes.append(unused, 'u');
  const std::size_t table = bytes.size();
  for (const std::size_t offset : offsets) appendBigEndian(offset, 4);
  bytes += std::string("\0\0\0\0\0\0\x04\x01", 8);
  appendBigEndian(offsets.size(), 8);
  appendBigEndian(0, 8);
  appendBigEndian(table, 8);
  return bytes;
}

const std::string oneSecond("\x3F\xF0\0\0\0\0\0\0", 8);

TEST(InstallHistoryRecord, IsReadFromABinaryPropertyListToo) {
  const auto records = decodeInstallHistory(binaryHistory(2, "macOS Mojave", oneSecond));
  ASSERT_TRUE(records);
  ASSERT_EQ(records->size(), 2u);
  EXPECT_EQ((*records)[1].displayName, "macOS Mojave");
  EXPECT_EQ((*records)[1].date, Date{1});
}

TEST(InstallHistoryRecord, RefusesADateThatIsNotFinite) {
  EXPECT_FALSE(decodeInstallHistory(binaryHistory(1, "a", std::string("\x7F\xF0\0\0\0\0\0\0", 8))));
  EXPECT_FALSE(decodeInstallHistory(binaryHistory(1, "a", std::string("\xFF\xF0\0\0\0\0\0\0", 8))));
  EXPECT_FALSE(decodeInstallHistory(binaryHistory(1, "a", std::string("\x7F\xF8\0\0\0\0\0\0", 8))));
}

TEST(InstallHistoryRecord, NamingOneLongTextInManyPlacesIsRefusedBeforeItFillsTheMemory) {
  const std::string bytes = binaryHistory(200'000, std::string(200'000, 'a'), oneSecond);
  ASSERT_LT(bytes.size(), 500'000u);  // the copies would take 40 gigabytes
  EXPECT_FALSE(decodeInstallHistory(bytes));
}

TEST(InstallHistoryRecord, NamingANumberInManyPlacesIsRefusedBeforeAnythingIsTakenForThePlaces) {
  constexpr std::size_t places = 20'000'000;
  std::string bytes = binaryHistory(places, "a", oneSecond);
  const std::size_t firstPlace = std::string("bplist00").size() + 6;
  bytes.replace(firstPlace, places, places, '\x07');  // the version is no entry
  const HeapMeter heap;
  EXPECT_FALSE(decodeInstallHistory(bytes));
  EXPECT_LE(heap.peak(), 10'000u);
}

TEST(InstallHistoryRecord, OfALongTextIsRefusedBeforeTheTextIsCopied) {
  std::string longText;
  longText.resize(60'000'000, 'a');
  const std::string bytes = binaryHistory(1, longText, oneSecond);
  const HeapMeter heap;
  EXPECT_FALSE(decodeInstallHistory(bytes));
  EXPECT_LE(heap.peak(), 10'000u);
}

TEST(InstallHistoryRecord, OfALongVersionOrContentTypeIsRefusedToo) {
  std::string longText;
  longText.resize(45'000'000, 'a');
  EXPECT_FALSE(decodeEntry(aDate + aName + key("displayVersion", string(longText))));
  EXPECT_FALSE(decodeEntry(aDate + aName + aVersion + key("contentType", string(longText))));
  // Nor may all of them together be as long.
  longText.resize(25'000'000);
  EXPECT_FALSE(decodeEntry(aDate + key("displayName", string(longText)) + aVersion +
                           key("contentType", string(longText.substr(1)))));
}

TEST(InstallHistoryRecord, MayTakeSixteenMebibytesAndSixtyFourTimesTheList) {
  const auto isDecoded = [](std::size_t count, std::size_t unused) {
    return decodeInstallHistory(binaryHistory(count, std::string(10'000, 'a'), oneSecond, 0, unused))
        .has_value();
  };
  // An entry counts as 100,000 bytes.
  EXPECT_TRUE(isDecoded(10, 0));
  EXPECT_TRUE(isDecoded(150, 0));
  EXPECT_FALSE(isDecoded(200, 0));
  EXPECT_FALSE(isDecoded(5'000, 0));
  EXPECT_TRUE(isDecoded(750, 1'000'000));
  EXPECT_FALSE(isDecoded(900, 1'000'000));
  EXPECT_TRUE(isDecoded(3'800, 10'000'000));
  EXPECT_FALSE(isDecoded(4'200, 10'000'000));
}

TEST(InstallHistoryRecord, MayTakeExactlyAsMuchAsItsListAllows) {
  constexpr std::size_t count = 100;
  const std::string name(20'000, 'a');
  const auto decode = [&](std::size_t unused) {
    return decodeInstallHistory(binaryHistory(count, name, oneSecond, 0, unused));
  };
  // Of each entry three keys, the entry itself, and ten copies of its texts.
  const std::size_t cost = count * (3 * 16 + 400 + 10 * (name.size() + 1));
  const std::size_t smallestList = (cost - (std::size_t{16} << 20U) + 63) / 64;
  const std::size_t unused = smallestList - binaryHistory(count, name, oneSecond).size();
  EXPECT_TRUE(decode(unused));
  EXPECT_FALSE(decode(unused - 1));
}

TEST(InstallHistoryRecord, NeverTakesMoreThan384Mebibytes) {
  const auto isDecoded = [](std::size_t count) {
    return decodeInstallHistory(binaryHistory(count, std::string(10'000, 'a'), oneSecond, 0, 10'000'000))
        .has_value();
  };
  EXPECT_TRUE(isDecoded(4'008));
  EXPECT_FALSE(isDecoded(4'009));
}

TEST(InstallHistoryRecord, TakesLittleMemoryHoweverLargeTheFile) {
  const std::string bytes = binaryHistory(5'000'000, "a", oneSecond, 0, 20'000'000);
  const HeapMeter heap;
  EXPECT_FALSE(decodeInstallHistory(bytes));
  EXPECT_LE(heap.peak(), 200'000'000u);
  EXPECT_TRUE(decodeInstallHistory(binaryHistory(200'000, "a", oneSecond, 0, 20'000'000)));
}

TEST(InstallHistoryRecord, TakesNothingForPlacesThatItsBudgetHasNothingLeftFor) {
  constexpr std::size_t budget = std::size_t{384} << 20U;
  // Of one entry three keys, the entry itself, and ten copies of its texts.
  std::string name;
  name.resize((budget - std::size_t{3} * 16 - 400) / 10 - 1, 'a');
  const std::string bytes = binaryHistory(20'000'000, name, oneSecond);
  const HeapMeter heap;
  EXPECT_FALSE(decodeInstallHistory(bytes));
  EXPECT_GT(heap.peak(), name.size()) << "the first entry is taken";
  EXPECT_LE(heap.peak(), name.size() + 10'000);
}

TEST(InstallHistoryRecord, OfManyKeysNamedInManyPlacesIsRefusedBeforeItTakesForEver) {
  EXPECT_TRUE(decodeInstallHistory(binaryHistory(1, "a", oneSecond, 500'000)));
  const std::string bytes = binaryHistory(500'000, "a", oneSecond, 500'000);
  ASSERT_LT(bytes.size(), 2'000'000u);  // walking every entry would look at 250,000,000,000 keys
  EXPECT_FALSE(decodeInstallHistory(bytes));
}

}  // namespace
}  // namespace pelmarix
