#include "tests/support/heap_meter.h"

#include <gtest/gtest.h>

#include <new>
#include <string_view>

#include "tests/plist/describe.h"

namespace pelmarix {
namespace {

TEST(HeapMeter, countsTheMostThatWasHeldSinceItsBeginning) {
  void* const before = ::operator new(1000);
  const HeapMeter heap;
  EXPECT_EQ(heap.peak(), 0U);
  ::operator delete(::operator new(100));
  ::operator delete(before);
  ::operator delete(::operator new(70));
  EXPECT_EQ(heap.peak(), 100U);
}

#ifdef PELMARIX_ADDRESS_SANITIZER
TEST(HeapMeterDeathTest, leavesReadsAheadOfABlockAndBehindItToTheSanitizer) {
  const auto read = [](const char* byte) { return *static_cast<const volatile char*>(byte); };
  const plist::ExactBlock bytes("bytes");
  const std::string_view block = bytes;
  EXPECT_EQ(read(block.data()), 'b');
  EXPECT_DEATH(read(block.data() - 1), "AddressSanitizer");
  EXPECT_DEATH(read(block.data() + block.size()), "AddressSanitizer");
}
#endif

}  // namespace
}  // namespace pelmarix
