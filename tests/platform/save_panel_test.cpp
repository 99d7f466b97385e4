#include "platform/save_panel.h"

#include <gtest/gtest.h>

#include "tests/support/memory_file_manager.h"
#include "tests/support/plain_save_panel.h"
#include "tests/support/test_services.h"

namespace pelmarix {
namespace {

using Strings = std::vector<std::string>;

class SaveThroughPanel : public testing::Test {
 protected:
  SaveThroughPanel() {
    services.services.fileManager = &files;
    services.services.makeSavePanel = [this] { return panel; };
    platform::saveThroughPanel({"text", "txt"}, {platform::shareText("one"), platform::shareText("two")});
  }
  void choose(std::optional<std::string> path, int response = platform::modalResponseOK) {
    panel->chosenPath = std::move(path);
    panel->completionHandler(response);
  }

  test::TestServices services;
  test::MemoryFileManager files;
  std::shared_ptr<test::PlainSavePanel> panel = std::make_shared<test::PlainSavePanel>();
};

TEST_F(SaveThroughPanel, LetsFoldersBeMadeAndNamesTheTypes) {
  EXPECT_TRUE(panel->canCreateDirectories);
  EXPECT_EQ(panel->allowedFileTypes, (Strings{"text", "txt"}));
}

TEST_F(SaveThroughPanel, WritesThePartsInTheirOrderAndSaysSo) {
  choose("/a.text");
  EXPECT_EQ(files.files.at("/a.text"), "onetwo");
  EXPECT_EQ(services.savedFiles, Strings{"/a.text"});
  EXPECT_TRUE(services.alerts.empty());
}

TEST_F(SaveThroughPanel, WritesNothingWhenItIsCancelledOrNoFileIsChosen) {
  choose("/a.text", platform::modalResponseCancel);
  choose(std::nullopt);
  EXPECT_TRUE(files.files.empty());
  EXPECT_TRUE(services.savedFiles.empty() && services.alerts.empty());
}

TEST_F(SaveThroughPanel, ShowsTheSystemsWordsForAFailure) {
  files.writeFailure = std::make_error_code(std::errc::no_space_on_device);
  choose("/a.text");
  EXPECT_TRUE(services.savedFiles.empty());
  ASSERT_EQ(services.alerts.size(), 1U);
  EXPECT_EQ(services.alerts[0],
            test::errorAlert(platform::lastActionErrorMessage, files.writeFailure->message()));
}

}  // namespace
}  // namespace pelmarix
