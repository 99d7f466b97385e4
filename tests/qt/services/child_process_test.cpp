#include "qt/services/child_process.h"

#include <gmock/gmock.h>

#include <QElapsedTimer>
#include <QFile>
#include <QTest>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "tests/support/temporary_folder.h"

namespace pelmarix::test {
namespace {

/// Real children, and an event loop.
class ChildProcess : public testing::Test {
 protected:
  void launch(const std::string& script) { launchProgram("/bin/sh", {"-c", script}); }
  void launchProgram(const std::string& program, const std::vector<std::string>& arguments) {
    child = std::make_unique<qt::ChildProcess>(folder.path());
    child->launch(
        program, arguments,
        [this](std::string_view bytes) {
          output += bytes;
          ++pieces;
        },
        [this](std::optional<int> ended) {
          status = ended;
          ++ends;
        });
  }
  void waitForEnd() {
    ASSERT_TRUE(QTest::qWaitFor([this] { return ends > 0; }, 30'000));
  }
  // Those of this process, ended ones that nobody has waited for included.
  static bool hasChildren() {
    const std::string self = "/proc/self/task/" + std::to_string(QCoreApplication::applicationPid());
    QFile file(QString::fromStdString(self + "/children"));
    return file.open(QFile::ReadOnly) && !file.readAll().isEmpty();
  }

  TemporaryFolder folder;
  std::unique_ptr<qt::ChildProcess> child;
  std::string output;
  int pieces = 0;
  int ends = 0;
  std::optional<int> status;
};

TEST_F(ChildProcess, GivesAllOfItsOutputAndThenItsStatus) {
  launch("i=0; while [ $i -lt 20000 ]; do echo line $i; i=$((i+1)); done; exit 7");
  EXPECT_EQ(ends, 0);
  waitForEnd();
  EXPECT_EQ(status, 7);
  std::string expected;
  for (int i = 0; i < 20000; ++i) expected += "line " + std::to_string(i) + "\n";
  EXPECT_EQ(output, expected);
  EXPECT_GT(pieces, 1);
  EXPECT_FALSE(hasChildren());
}

TEST_F(ChildProcess, GivesItsOutputWhileItRuns) {
  const std::string gate = folder.path() + "/gate";
  launch("echo first; while [ ! -e " + gate + " ]; do sleep 0.01; done; echo second");
  ASSERT_TRUE(QTest::qWaitFor([this] { return output == "first\n"; }, 30'000));
  EXPECT_EQ(ends, 0);
  folder.addFile("gate", "");
  waitForEnd();
  EXPECT_EQ(output, "first\nsecond\n");
  EXPECT_EQ(status, 0);
}

TEST_F(ChildProcess, ThatHasClosedItsOutputIsNotWaitedForInTheEventLoop) {
  const std::string gate = folder.path() + "/gate";
  launch("exec >&-; while [ ! -e " + gate + " ]; do sleep 0.01; done; exit 5");
  QElapsedTimer timer;
  timer.start();
  QTest::qWait(100);
  EXPECT_LT(timer.elapsed(), 5000);
  EXPECT_EQ(ends, 0);
  folder.addFile("gate", "");
  waitForEnd();
  EXPECT_EQ(status, 5);
}

TEST_F(ChildProcess, EndsWithTheNumberOfTheSignalThatEndedIt) {
  launch("kill -KILL $$");
  waitForEnd();
  EXPECT_EQ(status, 9);
}

TEST_F(ChildProcess, ThatCannotBeStartedEndsWithoutAStatusFromTheEventLoop) {
  launchProgram("/dev/null/nowhere", {});
  EXPECT_EQ(ends, 0);
  waitForEnd();
  EXPECT_EQ(status, std::nullopt);
  EXPECT_EQ(output, "");
}

TEST_F(ChildProcess, SaysNothingOnTheTerminal) {
  testing::internal::CaptureStderr();
  launch("echo complaint >&2");
  waitForEnd();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(output, "");
  EXPECT_EQ(status, 0);
}

TEST_F(ChildProcess, EndsWithItsTask) {
  launch("echo $$; while :; do sleep 100; done");
  ASSERT_TRUE(QTest::qWaitFor([this] { return !output.empty(); }, 30'000));
  EXPECT_TRUE(hasChildren());
  child.reset();
  EXPECT_FALSE(hasChildren());
  QTest::qWait(20);
  EXPECT_EQ(ends, 0);
}

TEST_F(ChildProcess, MayGoWhileItTellsOfItsOutput) {
  child = std::make_unique<qt::ChildProcess>(folder.path());
  child->launch(
      "/bin/sh", {"-c", "echo a; sleep 100"}, [this](std::string_view) { child.reset(); },
      [this](std::optional<int>) { ++ends; });
  ASSERT_TRUE(QTest::qWaitFor([this] { return child == nullptr; }, 30'000));
  QTest::qWait(20);
  EXPECT_EQ(ends, 0);
  EXPECT_FALSE(hasChildren());
}

TEST_F(ChildProcess, MayGoWhileItTellsOfItsEnd) {
  child = std::make_unique<qt::ChildProcess>(folder.path());
  child->launch(
      "/bin/sh", {"-c", "exit 0"}, [](std::string_view) {}, [this](std::optional<int>) { child.reset(); });
  ASSERT_TRUE(QTest::qWaitFor([this] { return child == nullptr; }, 30'000));
  EXPECT_FALSE(hasChildren());
}

TEST_F(ChildProcess, LeavesNoDescriptorOpen) {
  const auto openCount = [] {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return std::distance(begin(files), end(files));
  };
  launch("exit 0");
  waitForEnd();
  child.reset();
  const auto before = openCount();
  for (int i = 0; i < 20; ++i) {
    ends = 0;
    launch("echo a");
    waitForEnd();
    child.reset();
  }
  EXPECT_EQ(openCount(), before);
}

}  // namespace
}  // namespace pelmarix::test
