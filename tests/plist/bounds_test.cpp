// What hostile files may cost: depth, memory, time.
#include <gtest/gtest.h>

#include "tests/plist/binary_builder.h"
#include "tests/plist/describe.h"
#include "tests/support/heap_meter.h"

namespace pelmarix::plist {
namespace {

std::string repeated(std::string_view text, std::size_t times) {
  std::string all;
  all.reserve(text.size() * times);
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

std::string nestedXml(std::string_view opening, std::size_t times, std::string_view closing) {
  return repeated(opening, times) + "<true/>" + repeated(closing, times);
}

/// Containers in one another. `container` is the marker of one element or entry; a dictionary's key is the
/// last object.
std::string nestedBinary(const std::string& container, std::size_t times,
                         const std::string& innermost = hex("A0")) {
  const std::string key = container == hex("D1") ? bigEndianBytes(times, 4) : "";
  std::vector<std::string> objects;
  for (std::size_t i = 1; i < times; ++i) objects.push_back(container + key + bigEndianBytes(i, 4));
  objects.push_back(innermost);
  objects.push_back(hex("51") + "k");
  return BinaryPlist{.objects = objects, .offsetWidth = 4, .referenceWidth = 4}.bytes();
}

TEST(Nesting, may512LevelsDeepInXml) {
  EXPECT_TRUE(Document::decode(nestedXml("<array>", 512, "</array>")));
  EXPECT_TRUE(Document::decode("<plist>" + nestedXml("<array>", 512, "</array>") + "</plist>"));
  EXPECT_TRUE(Document::decode(nestedXml("<dict><key/>", 512, "</dict>")));
}

TEST(Nesting, isRefusedFrom513LevelsInXml) {
  EXPECT_EQ(refusal(nestedXml("<array>", 513, "</array>")), Reason::nestedTooDeep);
  EXPECT_EQ(refusal("<plist>" + nestedXml("<array>", 513, "</array>") + "</plist>"), Reason::nestedTooDeep);
  EXPECT_EQ(refusal(nestedXml("<dict><key/>", 513, "</dict>")), Reason::nestedTooDeep);
}

TEST(Nesting, countsPlistElementsWithinTheOutermost) {
  EXPECT_TRUE(Document::decode(nestedXml("<plist>", 513, "</plist>")));
  EXPECT_EQ(refusal(nestedXml("<plist>", 514, "</plist>")), Reason::nestedTooDeep);
}

TEST(Nesting, isRefusedWhenBottomless) {
  EXPECT_EQ(refusal(nestedXml("<plist>", 200000, "</plist>")), Reason::nestedTooDeep);
  EXPECT_EQ(refusal(nestedXml("<array>", 1000000, "</array>")), Reason::nestedTooDeep);
  EXPECT_EQ(refusal(nestedBinary(hex("A1"), 200000)), Reason::nestedTooDeep);
}

TEST(Nesting, may512LevelsDeepInBinary) {
  EXPECT_TRUE(Document::decode(nestedBinary(hex("A1"), 512)));
  EXPECT_TRUE(Document::decode(nestedBinary(hex("D1"), 512)));
  const std::string holdingTheKey = hex("A1") + bigEndianBytes(512, 4);
  EXPECT_TRUE(Document::decode(nestedBinary(hex("A1"), 512, holdingTheKey)));
}

TEST(Nesting, isRefusedFrom513LevelsInBinary) {
  EXPECT_EQ(refusal(nestedBinary(hex("A1"), 513)), Reason::nestedTooDeep);
  EXPECT_EQ(refusal(nestedBinary(hex("C1"), 513)), Reason::nestedTooDeep);
  EXPECT_EQ(refusal(nestedBinary(hex("D1"), 513)), Reason::nestedTooDeep);
}

/// [ chain, [ chain ] ] where the chain is 511 deep: its second place makes it too deep, though it was
/// decoded before.
TEST(Nesting, countsASharedContainerWhereItStandsDeepest) {
  const auto sharing = [](std::size_t chain) {
    std::vector<std::string> objects{hex("A2 00 02 00 01"), hex("A1 00 02")};
    for (std::size_t i = 1; i < chain; ++i) objects.push_back(hex("A1") + bigEndianBytes(i + 2, 2));
    objects.push_back(hex("A0"));
    return BinaryPlist{.objects = objects, .offsetWidth = 2, .referenceWidth = 2}.bytes();
  };
  EXPECT_TRUE(Document::decode(sharing(510)));
  EXPECT_EQ(refusal(sharing(511)), Reason::nestedTooDeep);
}

/// [ chain, chain ] where the chain is as deep as it may be.
TEST(Nesting, maySeeTheDeepestContainerTwice) {
  std::vector<std::string> objects{hex("A2 00 01 00 01")};
  for (std::size_t i = 1; i < 511; ++i) objects.push_back(hex("A1") + bigEndianBytes(i + 1, 2));
  objects.push_back(hex("A0"));
  EXPECT_TRUE(
      Document::decode(BinaryPlist{.objects = objects, .offsetWidth = 2, .referenceWidth = 2}.bytes()));
}

/// [ chain, [ chain ], [ [ ... [ chain ] ... ] ] ], where the chain and the array around it stand in two
/// places.
TEST(Nesting, countsAllOfASharedContainerThatHoldsAnotherSharedOne) {
  const auto sharing = [](std::size_t above) {
    constexpr std::size_t chain = 300;
    std::vector<std::string> objects{hex("A3 00 02 00 01") + bigEndianBytes(2 + chain, 2), hex("A1 00 02")};
    for (std::size_t i = 1; i < chain; ++i) objects.push_back(hex("A1") + bigEndianBytes(i + 2, 2));
    objects.push_back(hex("A0"));
    for (std::size_t i = 1; i < above; ++i) objects.push_back(hex("A1") + bigEndianBytes(2 + chain + i, 2));
    objects.push_back(hex("A1 00 01"));
    return BinaryPlist{.objects = objects, .offsetWidth = 2, .referenceWidth = 2}.bytes();
  };
  EXPECT_TRUE(Document::decode(sharing(210)));
  EXPECT_EQ(refusal(sharing(211)), Reason::nestedTooDeep);
}

TEST(Sharing, aSmallFileMayStandForMoreLeavesThanCouldEverBeVisited) {
  std::vector<std::string> objects;
  for (unsigned i = 1; i <= 60; ++i)
    objects.push_back(hex("A2") + bigEndianBytes(i, 1) + bigEndianBytes(i, 1));
  // Text that the decoder has to make, so that its place tells how often it was made.
  objects.push_back(hex("61 20 AC"));
  const std::string file = binary(objects);
  ASSERT_LT(file.size(), 344U);

  const HeapMeter heap;
  const Result<Document, Error> document = Document::decode(file);
  ASSERT_TRUE(document);
  EXPECT_LT(heap.peak(), 64 * file.size());

  Value first = document->root();
  Value second = document->root();
  for (unsigned level = 1; level <= 60; ++level) {
    ASSERT_EQ(first.count(), 2U);
    ASSERT_EQ(second.count(), 2U);
    first = *first.elements().begin();
    second = *++second.elements().begin();
  }
  EXPECT_EQ(first.string(), "\u20AC");
  EXPECT_EQ(first.string()->data(), second.string()->data());
}

TEST(Sharing, aTextThatManyReferToIsMadeOnce) {
  constexpr std::size_t letters = 10'000;
  constexpr std::size_t times = 10'000;
  const std::string references(times, '\x01');
  const std::string text = hex("5F 11") + bigEndianBytes(letters, 2) + std::string(letters, '\xE9');
  const std::string file =
      BinaryPlist{.objects = {hex("AF 11") + bigEndianBytes(times, 2) + references, text}, .offsetWidth = 2}
          .bytes();
  const HeapMeter heap;
  const Result<Document, Error> document = Document::decode(file);
  ASSERT_TRUE(document);
  EXPECT_LT(heap.peak(), 5 * letters);
}

std::size_t heapBound(std::string_view bytes) { return 64 * bytes.size() + 1048576; }

std::size_t peakOfDecoding(std::string_view bytes) {
  const HeapMeter heap;
  (void)Document::decode(bytes);
  return heap.peak();
}

/// One long string under so many object numbers.
std::string overlapping(const std::string& marker, const std::string& filling, std::size_t objectCount,
                        std::size_t unusedCount = 0) {
  std::string object =
      marker + bigEndianBytes(filling.size() / (marker == hex("6F 12") ? 2 : 1), 4) + filling;
  std::string references;
  for (std::size_t i = 1; i <= objectCount; ++i) references += bigEndianBytes(i, 3);
  BinaryPlist file{.objects = {hex("AF 12") + bigEndianBytes(objectCount, 4) + references, object},
                   .offsetWidth = 4,
                   .referenceWidth = 3};
  file.furtherOffsets.assign(objectCount - 1 + unusedCount, 8 + file.objects[0].size());
  return file.bytes();
}

TEST(Heap, staysWithinItsBoundWhateverTheFile) {
  const std::vector<std::string> files = {
      "",
      repeated("<", 100000),
      "<array>" + repeated("<true/>", 100000) + "</array>",
      "<array>" + repeated("<array/>", 100000) + "</array>",
      "<array>" + repeated("<key/>", 100000) + "</array>",
      "<array>" + repeated("<string>&lt;</string>", 100000) + "</array>",
      "<array>" + repeated("<string>" + std::string(4090, 'x') + "&lt;</string>", 100) + "</array>",
      "<string>" + repeated("&#1;", 1000000) + "</string>",
      "<string>" + repeated("<![CDATA[a]]>", 100000) + "</string>",
      "<real>" + std::string(1000000, '1') + "</real>",
      "<?xml version='1.0' encoding='ISO-8859-1'?><string>" + std::string(1000000, '\xE9') + "</string>",
      "\xFE\xFF" + repeated(hex("20 AC"), 500000),
      binary({hex("AF 12 FF FF FF FF")}),
      binary({hex("5F 13 00 00 7F FF FF FF FF FF")}),
      BinaryPlist{.objects = {hex("09")},
                  .referenceWidth = 3,
                  .furtherOffsets = std::vector<std::uint64_t>(200000, 8)}
          .bytes(),
      overlapping(hex("5F 12"), std::string(100000, '\xE9'), 50000),
      overlapping(hex("6F 12"), repeated(hex("20 AC"), 50000), 50000),
  };
  for (const std::string& file : files)
    EXPECT_LE(peakOfDecoding(file), heapBound(file)) << file.substr(0, 60);
}

TEST(Heap, takesForABinaryFileLittleMoreThanOneNodePerObject) {
  const std::string file = BinaryPlist{.objects = {hex("09")},
                                       .referenceWidth = 3,
                                       .furtherOffsets = std::vector<std::uint64_t>(200000, 8)}
                               .bytes();
  EXPECT_TRUE(Document::decode(file));
  EXPECT_LE(peakOfDecoding(file), 20 * std::size_t{200000});
}

void expectPeak(const std::string& file, std::size_t peak) {
  EXPECT_TRUE(Document::decode(file));
  EXPECT_GE(peakOfDecoding(file), peak);
  EXPECT_LE(peakOfDecoding(file), peak + 1000);
}

TEST(Heap, takesForATextWithReferencesNoMoreThanItsLength) {
  const std::string letters = repeated(std::string(100'000, 'x') + "&lt;", 5);
  const std::string plain = repeated("x", letters.size());
  expectPeak("<string>" + letters + "</string>",
             peakOfDecoding("<string>" + plain + "</string>") + letters.size());
}

TEST(Heap, takesForAnotherEncodingWhatTheTextTakesInUtf8) {
  constexpr std::size_t count = 300'000;
  const auto inString = [](const std::string& letter, std::size_t width) {
    const auto wide = [width](const std::string& text) {
      std::string bytes;
      for (const char byte : text) bytes += std::string(width - 1, '\0') + byte;
      return bytes;
    };
    return wide("<string>") + repeated(letter, count) + wide("</string>");
  };
  const auto expectPeakOfXml = [&](const std::string& file, const std::string& letter) {
    const std::string text = inString(letter, 1);
    expectPeak(file, peakOfDecoding(text) + text.size());
  };
  expectPeakOfXml(hex("FE FF") + inString(hex("20 AC"), 2), "\u20AC");
  expectPeakOfXml(hex("00 00 FE FF") + inString(hex("00 01 F6 00"), 4), "\U0001F600");
  expectPeakOfXml("<?xml version='1.0' encoding='ISO-8859-1'?>" + inString("\xE9\xE9\xE9 a", 1),
                  "\u00E9\u00E9\u00E9 a");
  const std::string text = hex("6F 12") + bigEndianBytes(count, 4) + repeated(hex("20 AC"), count);
  expectPeak(BinaryPlist{.objects = {text}, .offsetWidth = 4}.bytes(), 3 * count);
}

/// What the largest file may take beside its own bytes.
constexpr std::size_t largestHeap = std::size_t{768} << 20U;

void expectRefused(std::string_view bytes, Reason reason, std::size_t mostHeap = largestHeap) {
  const HeapMeter heap;
  const Result<Document, Error> document = Document::decode(bytes);
  EXPECT_LE(heap.peak(), mostHeap);
  ASSERT_FALSE(document);
  EXPECT_EQ(document.error().reason, reason);
}

TEST(Size, of256MebibytesIsTheMost) {
  std::string file(std::size_t{256} << 20U, ' ');
  file.replace(0, 7, "<true/>");
  EXPECT_TRUE(Document::decode(file));
  file += ' ';
  expectRefused(file, Reason::tooLarge, 0);
}

TEST(Size, of256MebibytesIsTheMostForTheTextInUtf8) {
  const auto latin1 = [](std::size_t letters) {
    return "<?xml version='1.0' encoding='ISO-8859-1'?><string>" + std::string(letters, '\xE9') + "</string>";
  };
  EXPECT_TRUE(Document::decode(latin1(1000)));
  expectRefused(latin1(std::size_t{128} << 20U), Reason::tooLarge);
}

TEST(Size, isBoundedByTheNumberOfValues) {
  const std::string many = "<array>" + repeated("<key/>", std::size_t{13} << 20U) + "</array>";
  expectRefused(many, Reason::tooLarge);
}

TEST(Size, isBoundedByTheNumberOfTextsThatHaveToBeMade) {
  const std::string many = "<array>" + repeated("<key>&lt;</key>", std::size_t{13} << 18U) + "</array>";
  expectRefused(many, Reason::tooLarge);
}

// A text that has to be made counts as four.
TEST(Size, isBoundedByTheNumberOfValuesWithTheirTexts) {
  const auto values = [](std::size_t texts, std::size_t others) {
    return "<array><array>" + repeated("<key>&lt;</key>", texts) + repeated("<key/>", others) +
           "</array></array>";
  };
  constexpr std::size_t most = (std::size_t{12} << 20U) - 1;  // and the inner array
  EXPECT_TRUE(Document::decode(values(most / 4, most % 4)));
  EXPECT_EQ(refusal(values(most / 4, most % 4 + 1)), Reason::tooLarge);
}

TEST(Size, isBoundedByTheNumberOfObjectsBeforeAnythingIsTakenForThem) {
  // That are one and the same.
  const auto objects = [](std::size_t count) {
    return "bplist00\x09" + std::string(count, '\x08') + hex("00 00 00 00 00 00 01 04") +
           bigEndianBytes(count, 8) + bigEndianBytes(0, 8) + bigEndianBytes(9, 8);
  };
  constexpr std::size_t most = std::size_t{12} << 20U;
  EXPECT_TRUE(Document::decode(objects(most)));
  expectRefused(objects(most + 1), Reason::tooLarge, 1000);
}

/// Each object is another place of the same text, which has to be made for each.
TEST(Size, isBoundedByTheNumberOfObjectsThatHaveToBeMade) {
  // That count as four each, beside the array.
  const auto made = [](std::size_t count, std::size_t unused) {
    return overlapping(hex("5F 12"), "\xE9", count, unused);
  };
  constexpr std::size_t most = (std::size_t{12} << 20U) - 1;
  EXPECT_TRUE(Document::decode(made(most / 4, most % 4)));
  EXPECT_EQ(refusal(made(most / 4, most % 4 + 1)), Reason::tooLarge);
  expectRefused(made(std::size_t{4} << 20U, 0), Reason::tooLarge);
}

TEST(Overlap, isRefusedWhenItMakesMoreThanTheLargestFileHas) {
  const std::string file = overlapping(hex("5F 12"), std::string(std::size_t{40} << 20U, '\xE9'), 15);
  expectRefused(file, Reason::tooMuchOverlap);
}

TEST(Overlap, isAcceptedWhileTheObjectsTogetherAreOfTheFilesOrder) {
  EXPECT_TRUE(Document::decode(overlapping(hex("5F 12"), std::string(1000, 'x'), 100)));
  EXPECT_TRUE(Document::decode(overlapping(hex("6F 12"), std::string(1000, 'x'), 100)));
}

TEST(Overlap, isRefusedWhenTheObjectsTogetherAreFarLargerThanTheFile) {
  EXPECT_EQ(refusal(overlapping(hex("5F 12"), std::string(100000, 'x'), 50000)), Reason::tooMuchOverlap);
  EXPECT_EQ(refusal(overlapping(hex("6F 12"), std::string(100000, 'x'), 50000)), Reason::tooMuchOverlap);
}

TEST(Overlap, mayMakeSixteenTimesTheFileAndAQuarterOfAMebibyte) {
  constexpr std::size_t count = 17;
  const auto fileOf = [](std::size_t size) {
    return overlapping(hex("5F 12"), std::string(size, 'x'), count);
  };
  // Seventeen texts and references to them, against what one text and the rest of the file allow.
  const std::size_t largest = 16 * fileOf(0).size() + 262144 - 3 * count;
  EXPECT_TRUE(Document::decode(fileOf(largest)));
  EXPECT_EQ(refusal(fileOf(largest + 1)), Reason::tooMuchOverlap);
}

TEST(Overlap, isNotTheReasonWhereAnObjectIsLongerThanTheFile) {
  const std::string text = hex("5F 12") + bigEndianBytes(300'000, 4) + std::string(300'000, 'x');
  BinaryPlist file{.objects = {hex("AF 10 11 01"), text, hex("5F 12") + bigEndianBytes(400'000, 4)},
                   .offsetWidth = 4};
  for (unsigned i = 3; i < 18; ++i) file.objects[0] += bigEndianBytes(i, 1);
  file.objects[0] += bigEndianBytes(2, 1);
  file.furtherOffsets.assign(15, 8 + file.objects[0].size());
  EXPECT_EQ(refusal(file.bytes()), Reason::objectTooLong);

  const BinaryPlist wide{
      .objects = {hex("AF 12") + bigEndianBytes(2'000'000, 4), text}, .offsetWidth = 4, .referenceWidth = 8};
  EXPECT_EQ(refusal(wide.bytes()), Reason::objectTooLong);
}

TEST(Release, ofAnEndlesslySharedFileIsImmediate) {
  std::vector<std::string> objects;
  for (unsigned i = 1; i <= 250; ++i)
    objects.push_back(hex("A2") + bigEndianBytes(i, 1) + bigEndianBytes(i, 1));
  objects.push_back(hex("A0"));
  auto document = std::make_unique<Result<Document, Error>>(
      Document::decode(BinaryPlist{.objects = objects, .offsetWidth = 2}.bytes()));
  ASSERT_TRUE(*document);
  document.reset();
}

}  // namespace
}  // namespace pelmarix::plist
