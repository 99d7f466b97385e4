#include "lsbom/output.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <thread>

#include "lsbom/parallel.h"
#include "tests/lsbom/support.h"

namespace pelmarix::lsbom {
namespace {

TEST(Output, WritesTextsInTheOrderOfTheirNumbers) {
  const TemporaryFile file;
  Output output(file.get());
  {
    const std::jthread second([&output] { Text(output, 1).append("second"); });
    const std::jthread third([&output] { Text(output, 2).append("third"); });
    Text(output, 0).append("first ");
  }
  output.finish();
  EXPECT_EQ(file.content(), "first secondthird");
}

TEST(Output, KeepsTextsThatEndAheadOfTheirTurn) {
  const TemporaryFile file;
  Output output(file.get());
  {
    Text first(output, 0);
    Text(output, 1).append("second ");
    Text(output, 2).append("third");
    first.append("first ");
  }
  output.finish();
  EXPECT_EQ(file.content(), "first second third");
}

TEST(Output, WritesManyTextsOfManyLengthsInOrder) {
  std::string expected;
  const auto textOf = [](std::size_t number) {
    return std::string(number % 7 == 0 ? 300000 : number, static_cast<char>('a' + number % 26));
  };
  for (std::size_t number = 0; number < 500; ++number) expected += textOf(number);
  const TemporaryFile file;
  Output output(file.get());
  inParallel(500, 1, [&](std::size_t number, std::size_t) {
    Text text(output, number);
    for (const char character : textOf(number)) text.append(character);
  });
  output.finish();
  EXPECT_EQ(file.content(), expected);
}

TEST(Output, WritesALongTextByAndBy) {
  const std::string line(1000, 'x');
  const TemporaryFile file;
  Output output(file.get());
  {
    Text text(output, 0);
    for (int i = 0; i < 3000; ++i) text.append(line);
  }
  output.finish();
  EXPECT_EQ(file.content(), std::string(3000000, 'x'));
}

TEST(Output, WritesPiecesThatAreLongerThanItsBuffer) {
  const std::string piece(1000000, 'x');
  const TemporaryFile file;
  Output output(file.get());
  {
    Text text(output, 0);
    text.append('a');
    text.append(piece);
    text.append('z');
  }
  output.finish();
  EXPECT_EQ(file.content(), "a" + piece + "z");
}

TEST(Output, WritesNumbers) {
  const TemporaryFile file;
  Output output(file.get());
  {
    Text text(output, 0);
    text.appendNumber(4294967295);
    text.append(' ');
    text.appendNumber(4294967295, 8);
    text.append(' ');
    text.appendNumber(0);
  }
  output.finish();
  EXPECT_EQ(file.content(), "4294967295 37777777777 0");
}

TEST(Output, BeginsAgainAfterItHasFinished) {
  const TemporaryFile file;
  Output output(file.get());
  Text(output, 0).append("one ");
  output.finish();
  Text(output, 0).append("two");
  output.finish();
  EXPECT_EQ(file.content(), "one two");
  EXPECT_EQ(output.error(), 0);
}

TEST(Output, KeepsTheFirstErrorOfItsFile) {
  std::FILE* const full = std::fopen("/dev/full", "wb");
  ASSERT_NE(full, nullptr);
  Output output(full);
  Text(output, 0).append("lost when the buffer of the file is handed on");
  output.finish();
  EXPECT_EQ(output.error(), ENOSPC);
  Text(output, 0).append("never tried");
  output.finish();
  EXPECT_EQ(output.error(), ENOSPC);
  std::fclose(full);
}

TEST(Output, NoticesAnErrorWhileItWrites) {
  std::FILE* const full = std::fopen("/dev/full", "wb");
  ASSERT_NE(full, nullptr);
  std::setvbuf(full, nullptr, _IONBF, 0);
  Output output(full);
  Text(output, 0).append("lost at once");
  EXPECT_EQ(output.error(), ENOSPC);
  std::fclose(full);
}

}  // namespace
}  // namespace pelmarix::lsbom
