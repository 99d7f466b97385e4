#include "lsbom/output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <string>
#include <string_view>

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

TEST(Output, WritesOnItsOwnWhatItHasNoRoomFor) {
  const TemporaryFile file;
  Output output(file.get());
  std::string lines;
  for (int line = 0; line < 100000; ++line) {
    output.append("a line of a listing ");
    output.appendNumber(static_cast<std::uint32_t>(line));
    output.append('\n');
    lines += "a line of a listing " + std::to_string(line) + '\n';
  }
  EXPECT_GT(file.content().size(), lines.size() / 2);
  EXPECT_TRUE(output.flush());
  EXPECT_EQ(file.content(), lines);
}

std::string written(void (Output::*append)(std::string_view), std::string_view text) {
  const TemporaryFile file;
  Output output(file.get());
  (output.*append)(text);
  EXPECT_TRUE(output.flush());
  return file.content();
}

TEST(OutputOfText, KeepsWhatIsUtf8) {
  for (const std::string_view text : {"", "./a b", "\t\n\x01\x7F\\\"", "\u00E9\u20AC\U0001F600\u202E"})
    EXPECT_EQ(written(&Output::appendText, text), text);
}

TEST(OutputOfText, WritesBytesThatAreNotUtf8InOctal) {
  EXPECT_EQ(written(&Output::appendText, "\xFF"), R"(\377)");
  EXPECT_EQ(written(&Output::appendText, "caf\xE9/\xE9 t\xE9"), R"(caf\351/\351 t\351)");
  EXPECT_EQ(written(&Output::appendText, "\u20AC\xE2\x82/\u20AC"), "\u20AC\\342\\202/\u20AC");
  EXPECT_EQ(written(&Output::appendText, "\xC0\x80\xED\xA0\x80"), R"(\300\200\355\240\200)");
}

TEST(OutputOfQuotedText, KeepsWhatNeedsNoQuoting) {
  EXPECT_EQ(written(&Output::appendQuoted, "./a b/é"), "\"./a b/é\"");
  EXPECT_EQ(written(&Output::appendQuoted, ""), "\"\"");
}

TEST(OutputOfQuotedText, PutsABackslashBeforeQuotesAndBackslashes) {
  EXPECT_EQ(written(&Output::appendQuoted, R"(a"b\c)"), R"("a\"b\\c")");
}

TEST(OutputOfQuotedText, WritesControlCharactersAndBytesThatAreNotUtf8InOctal) {
  EXPECT_EQ(written(&Output::appendQuoted, "\t\n\x1F\x7F"), R"("\011\012\037\177")");
  EXPECT_EQ(written(&Output::appendQuoted, "\xE9\\351\xFF\xFE\u20AC"), "\"\\351\\\\351\\377\\376\u20AC\"");
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

TEST(Output, WritesNothingMoreAfterAnError) {
  int ends[2] = {};
  ASSERT_EQ(pipe(ends), 0);
  ASSERT_EQ(fcntl(ends[0], F_SETFL, O_NONBLOCK), 0);
  ASSERT_EQ(fcntl(ends[1], F_SETFL, O_NONBLOCK), 0);
  std::FILE* const full = fdopen(ends[1], "wb");
  std::setvbuf(full, nullptr, _IONBF, 0);
  Output output(full);
  std::string much;
  much.resize(10'000'000, 'x');
  output.append(much);
  EXPECT_TRUE(output.hasFailed()) << "no pipe has that much room";
  std::string taken(1'000'000, ' ');
  while (read(ends[0], taken.data(), taken.size()) > 0) continue;
  output.append("more");
  const auto flushed = output.flush();
  ASSERT_FALSE(flushed);
  EXPECT_EQ(flushed.error(), std::errc::resource_unavailable_try_again);
  EXPECT_LT(read(ends[0], taken.data(), taken.size()), 0);
  std::fclose(full);
  close(ends[0]);
}

#ifdef __linux__  // which has a device that is always full
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
    EXPECT_TRUE(output.hasFailed());
    std::fclose(full);
  }
}

TEST(Output, TellsItsFirstErrorHoweverMuchFollows) {
  std::FILE* const full = std::fopen("/dev/full", "wb");
  ASSERT_NE(full, nullptr);
  std::setvbuf(full, nullptr, _IONBF, 0);
  Output output(full);
  EXPECT_FALSE(output.hasFailed());
  for (int line = 0; line < 100000; ++line) output.append("a line of a listing\n");
  EXPECT_TRUE(output.hasFailed());
  errno = 0;
  const auto flushed = output.flush();
  ASSERT_FALSE(flushed);
  EXPECT_EQ(flushed.error(), std::errc::no_space_on_device);
  std::fclose(full);
}
#endif

}  // namespace
}  // namespace pelmarix::lsbom
