#include "qt/services/machine_services.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <ctime>

#include "platform/bundle.h"
#include "platform/process_info.h"
#include "platform/task.h"
#include "qt/services/text_conversion.h"
#include "tests/support/temporary_folder.h"

namespace pelmarix::qt {
namespace {

/// The machine's services, installed, on a volume and a configuration folder of their own.
class MachineServicesTest : public testing::Test {
 protected:
  MachineServicesTest() {
    setenv("XDG_CONFIG_HOME", (folder / "configuration").c_str(), 1);
    setenv("PELMARIX_VOLUME", folder.path().c_str(), 1);
    folder.addFile("Library/file", "contents");
    machine = std::make_unique<MachineServices>();
    previous = platform::installServices(&machine->services());
  }
  ~MachineServicesTest() override {
    platform::installServices(previous);
    unsetenv("PELMARIX_VOLUME");
    unsetenv("XDG_CONFIG_HOME");
  }
  test::TemporaryFolder folder;
  std::unique_ptr<MachineServices> machine;
  const platform::Services* previous = nullptr;
};

// On macOS there is one volume, and the user's own preferences.
#ifndef __APPLE__
TEST_F(MachineServicesTest, ReadFilesOfTheVolume) {
  const auto contents = platform::FileManager::defaultManager().readFile("/Library/file");
  ASSERT_TRUE(contents);
  EXPECT_EQ(*contents, "contents");
}

TEST_F(MachineServicesTest, StoreDefaults) {
  platform::UserDefaults::standardUserDefaults().setDoubleForKey(14.0, "fontSize");
  EXPECT_EQ(platform::UserDefaults::standardUserDefaults().doubleForKey("fontSize"), 14.0);
  EXPECT_EQ(test::contentsOf(folder / "configuration/pelmarix/pelmarix.ini"), "[General]\nfontSize=14\n");
}
#endif

TEST_F(MachineServicesTest, RunChildProcesses) {
  const auto pipe = platform::Pipe::make();
  const auto task = platform::Task::make();
  task->setLaunchPath("/bin/echo");
  task->setArguments({"text"});
  task->setStandardOutput(*pipe);
  task->launch();
  EXPECT_EQ(*pipe->readDataToEndOfFile(), "text\n");
  task->waitUntilExit();
  EXPECT_EQ(task->terminationStatus(), 0);
}

TEST_F(MachineServicesTest, FindProgramsBesideTheRunningOne) {
  const auto pipe = platform::Pipe::make();
  const auto task = platform::Task::make();
  task->setLaunchPath("/nonexistent/print_received");
  task->setStandardOutput(*pipe);
  task->launch();
  EXPECT_EQ(pipe->readDataToEndOfFile()->compare(0, 10, "argument ["), 0);
  task->waitUntilExit();
}

TEST_F(MachineServicesTest, TellTheTime) {
  const auto before = static_cast<double>(std::time(nullptr)) - secondsFromUnixEpochToReferenceDate;
  const double now = platform::currentDate().timeIntervalSinceReferenceDate;
  EXPECT_GE(now, before);
  EXPECT_LE(now, before + 10);
}

TEST_F(MachineServicesTest, ComposeText) {
  EXPECT_EQ(pelmarix::platform::composedForm("U\xCC\x88"), "\xC3\x9C");
}

TEST_F(MachineServicesTest, RunBlocksLater) {
  bool hasRun = false;
  platform::dispatchAsyncToMainQueue([&] { hasRun = true; });
  EXPECT_FALSE(hasRun);
  QCoreApplication::processEvents();
  EXPECT_TRUE(hasRun);
}

TEST_F(MachineServicesTest, HaveABundle) {
  EXPECT_TRUE(platform::Bundle::mainBundle().infoDictionary().has_value());
}

#ifndef __APPLE__
TEST_F(MachineServicesTest, DoNotKnowTheSystemOfAVolumeThatDoesNotTell) {
  EXPECT_EQ(platform::ProcessInfo::processInfo().operatingSystemVersionString(), "Version unknown");
}
#endif

TEST_F(MachineServicesTest, KnowAddresses) {
  EXPECT_TRUE(platform::isValidAddress("https://pelmarix.example/"));
  EXPECT_FALSE(platform::isValidAddress("https://[::1/"));
}

}  // namespace
}  // namespace pelmarix::qt
