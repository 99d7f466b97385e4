#include "lsbom/output.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/lsbom/support.h"

namespace pelmarix::lsbom {
namespace {

TEST(Output, WritesNothingBeforeItIsFlushed) {
  const TemporaryFile file;
  Output output(file.get());
  output.append("first ");
  EXPECT_EQ(file.content(), "");
  EXPECT_TRUE(output.flush());
  EXPECT_EQ(file.content(), "first ");
}

TEST(Output, WritesPiecesOfAnyLengthInOrder) {
  const std::string line(1000000, 'x');
  const TemporaryFile file;
  Output output(file.get());
  output.append('a');
  output.append(line);
  output.append('z');
  EXPECT_TRUE(output.flush());
  EXPECT_EQ(file.content(), "a" + line + "z");
}

TEST(Output, IsFullAfterManyLinesUntilItIsFlushed) {
  const TemporaryFile file;
  Output output(file.get());
  std::size_t lines = 0;
  for (; !output.isFull(); ++lines) output.append("a line of a listing\n");
  EXPECT_GT(lines, 1000U);
  EXPECT_LT(lines, 100000U);
  EXPECT_TRUE(output.flush());
  EXPECT_FALSE(output.isFull());
  EXPECT_EQ(file.content().size(), lines * 20);
}

TEST(Output, WritesNumbers) {
  const TemporaryFile file;
  Output output(file.get());
  output.appendNumber(4294967295);
  output.append(' ');
  output.appendNumber(4294967295, 8);
  output.append(' ');
  output.appendNumber(0);
  EXPECT_TRUE(output.flush());
  EXPECT_EQ(file.content(), "4294967295 37777777777 0");
}

TEST(Output, GoesOnAfterItWasFlushed) {
  const TemporaryFile file;
  Output output(file.get());
  output.append("one ");
  EXPECT_TRUE(output.flush());
  output.append("two");
  EXPECT_TRUE(output.flush());
  EXPECT_EQ(file.content(), "one two");
}

TEST(Output, TellsTheErrorOfItsFile) {
  for (const bool buffered : {true, false}) {
    std::FILE* const full = std::fopen("/dev/full", "wb");
    ASSERT_NE(full, nullptr);
    if (!buffered) std::setvbuf(full, nullptr, _IONBF, 0);
    Output output(full);
    output.append("lost");
    const auto flushed = output.flush();
    ASSERT_FALSE(flushed);
    EXPECT_EQ(flushed.error(), std::errc::no_space_on_device);
    std::fclose(full);
  }
}

}  // namespace
}  // namespace pelmarix::lsbom
