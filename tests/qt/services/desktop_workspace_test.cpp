#include "qt/services/desktop_workspace.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>

#include "qt/services/text_conversion.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/test_services.h"

namespace pelmarix::qt {
namespace {

/// A PATH on which there is nothing but what the test puts there: stand-ins for what opens a browser.
class DesktopWorkspaceTest : public testing::Test {
 protected:
  DesktopWorkspaceTest() {
    services.services.isValidAddress = isValidAddress;
    setenv("PATH", folder.path().c_str(), 1);
    unsetenv("BROWSER");
    // What is started detached becomes this process's own, so that its end can be waited for.
    prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0);
  }
  ~DesktopWorkspaceTest() override {
    prctl(PR_SET_CHILD_SUBREAPER, 0, 0, 0, 0);
    setenv("PATH", path.c_str(), 1);
    unsetenv("BROWSER");
  }
  /// A program that notes its name and its arguments, and tells them on the terminal too.
  std::string addProgram(const std::string& name) const {
    std::string file = folder.addFile(name, "#!/bin/sh\nfor argument in " + name +
                                                " \"$@\"; do\n  echo \"$argument\" >>'" + folder / "noted" +
                                                "'\n  echo \"$argument\"\n  echo \"$argument\" >&2\ndone\n");
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    return file;
  }
  /// What was noted when all that was started has ended.
  std::string noted(const std::vector<std::string>& addresses) {
    for (const std::string& address : addresses) workspace.openURL(*platform::URL::fromString(address));
    while (waitpid(-1, nullptr, 0) > 0) continue;
    return test::contentsOf(folder / "noted");
  }

  test::TestServices services;
  const test::TemporaryFolder folder;
  const std::string path = getenv("PATH");
  DesktopWorkspace workspace;
};

TEST_F(DesktopWorkspaceTest, GivesTheBrowserEveryByteOfAnAddress) {
  addProgram("xdg-open");
  for (const std::string address :
       {"https://pelmarix.example/a%20b%2Fc?q=1%262#part", "https://pelmarix.example/%41%7e/../b/./c",
        "https://pelmarix.example/#a#b", "HTTPS://PELMARIX.EXAMPLE:443",
        "https://pelmarix.example/'$(x)'&;*"}) {
    EXPECT_EQ(noted({address}), "xdg-open\n" + address + "\n");
    std::filesystem::remove(folder / "noted");
  }
}

TEST_F(DesktopWorkspaceTest, OpensNothingForAnAddressWithoutAScheme) {
  addProgram("xdg-open");
  EXPECT_EQ(noted({"-x", "--version", "--version?https://pelmarix.example/", "pelmarix.example",
                   "//pelmarix.example/"}),
            "");
}

TEST_F(DesktopWorkspaceTest, TakesTheFirstProgramThatCanBeStarted) {
  addProgram("x-www-browser");
  const std::string address = "https://pelmarix.example/";
  EXPECT_EQ(noted({address}), "x-www-browser\n" + address + "\n");
  setenv("BROWSER", addProgram("browser").c_str(), 1);
  EXPECT_EQ(noted({address}), "x-www-browser\n" + address + "\nbrowser\n" + address + "\n");
}

TEST_F(DesktopWorkspaceTest, SaysNothingOnTheTerminalWhateverTheBrowserSays) {
  addProgram("xdg-open");
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  noted({"https://pelmarix.example/"});
  EXPECT_EQ(testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr(), "");
}

TEST_F(DesktopWorkspaceTest, SaysNothingWhereThereIsNoBrowser) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  EXPECT_EQ(noted({"https://pelmarix.example/"}), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace pelmarix::qt
