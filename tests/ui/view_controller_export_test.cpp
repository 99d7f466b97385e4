#include <gmock/gmock.h>

#include <new>

#include "tests/ui/main_window_fixture.h"

namespace pelmarix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Export : public MainWindow {
 protected:
  Export() {
    setHistory({{"macOS Mojave", "1"}, {"Fonts", "2", "config-data"}});
    addReceipt("old", "2018-01-01T00:00:00Z");
    addReceipt("new", "2020-01-01T00:00:00Z");
    controller.viewDidLoad();
  }

  PlainSavePanel& open() {
    controller.exportLists(nullptr);
    savePanels.back()->chosenPath = "/home/a/lists.csv";
    return *savePanels.back();
  }
  std::string exported(std::size_t content) {
    PlainSavePanel& panel = open();
    panel.chosen = content;
    panel.completionHandler(platform::modalResponseOK);
    return fileManager.files["/home/a/lists.csv"];
  }
};

TEST_F(Export, AsksForAFileAndWhatToWriteIntoIt) {
  const PlainSavePanel& panel = open();
  EXPECT_EQ(panel.title, "Export");
  EXPECT_TRUE(panel.canCreateDirectories);
  EXPECT_THAT(panel.allowedFileTypes, ElementsAre("csv"));
  EXPECT_THAT(panel.contents, ElementsAre("Install history", "Receipts"));
}

TEST_F(Export, WritesTheWholeHistory) {
  EXPECT_EQ(exported(0),
            "Group,Kind,Name,Version,Date\r\n"
            "macOS Mojave 1,system install or upgrade,macOS Mojave,1,2019-03-26 10:11:12 +0000\r\n"
            "macOS Mojave 1,configuration data,Fonts,2,2019-03-26 10:11:12 +0000\r\n");
  EXPECT_THAT(services.alerts, IsEmpty());
}

TEST_F(Export, WritesTheReceiptsAsTheyAreShown) {
  const std::string old = "2018-01-01 00:00:00 +0000,old,/System/Library/Receipts/old.plist\r\n";
  const std::string recent = "2020-01-01 00:00:00 +0000,new,/System/Library/Receipts/new.plist\r\n";
  EXPECT_EQ(exported(1), "Date,Package,Path\r\n" + recent + old);
  PlainSavePanel& panel = open();
  click(newestLast);
  controller.newestNonCheckbox(nullptr);
  panel.chosen = 1;
  panel.completionHandler(platform::modalResponseOK);
  EXPECT_EQ(fileManager.files["/home/a/lists.csv"], "Date,Package,Path\r\n" + old + recent);
}

TEST_F(Export, WritesNothingWhenThePanelIsCancelledOrGivesNoPath) {
  const auto filesBefore = fileManager.files;
  PlainSavePanel& panel = open();
  panel.completionHandler(platform::modalResponseCancel);
  panel.chosenPath.reset();
  panel.completionHandler(platform::modalResponseOK);
  EXPECT_EQ(fileManager.files, filesBefore);
  EXPECT_THAT(services.alerts, IsEmpty());
}

TEST_F(Export, ThatCannotBeWrittenShowsTheSystemsWords) {
  fileManager.writeFailure = std::make_error_code(std::errc::no_space_on_device);
  exported(0);
  EXPECT_THAT(services.alerts,
              ElementsAre(errorAlert("An error occurred in your last action:", "No space left on device")));
}

TEST_F(Export, ThatMemoryRunsOutForShowsTheSystemsWords) {
  fileManager.whileWriting = [] { throw std::bad_alloc(); };
  exported(0);
  EXPECT_THAT(services.alerts,
              ElementsAre(errorAlert("An error occurred in your last action:",
                                     std::make_error_code(std::errc::not_enough_memory).message())));
}

TEST_F(Export, DoesNotKeepItsPanelAlive) {
  open();
  const std::weak_ptr<PlainSavePanel> panel = savePanels.back();
  savePanels.clear();
  EXPECT_TRUE(panel.expired());
}

}  // namespace
}  // namespace pelmarix::test
