#include <gmock/gmock.h>

#include "tests/support/fatal_stop.h"
#include "tests/ui/main_window_fixture.h"

namespace pelmarix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Report : public MainWindow {
 protected:
  Report() {
    setHistory({{"macOS Mojave", "1"},
                {"Fonts", "2", "config-data"},
                {"macOS 10.14.1", "3"},
                {"MRTConfigData", "4"}});
    addReceipt("old", "2018-01-01T00:00:00Z");
    addReceipt("new", "2020-01-01T00:00:00Z");
    controller.viewDidLoad();
    outline.reloads = table.reloads = 0;
  }

  void toggleSkip() {
    click(skip);
    controller.skipNonCheckbox(nullptr);
  }
  void toggleNewestLast() {
    click(newestLast);
    controller.newestNonCheckbox(nullptr);
  }
  /// The versions of the lines that are shown, which tell them apart.
  std::string shownVersions() const {
    std::string versions;
    const std::string report = shownReport();
    for (std::size_t at = 0; (at = report.find(": ", at)) != std::string::npos; ++at)
      versions += report[at + 2];
    return versions;
  }
  PlainSavePanel& save() {
    controller.saveButton(nullptr);
    return *savePanels.back();
  }
};

TEST_F(Report, ShowsAndSkipsConfigurationDataAsTheOptionSays) {
  EXPECT_EQ(shownVersions(), "431");
  toggleSkip();
  EXPECT_EQ(shownVersions(), "4321");
  toggleSkip();
  EXPECT_EQ(shownVersions(), "431");
  EXPECT_EQ(outline.reloads, 2);
  EXPECT_EQ(table.reloads, 0);
}

TEST_F(Report, TakesAMixedSkipOptionForOff) {
  skip.value = platform::stateMixed;
  controller.skipNonCheckbox(nullptr);
  EXPECT_EQ(shownVersions(), "4321");
}

TEST_F(Report, ReversesItselfAndTheReceiptsWithTheNewestLastOption) {
  table.whileReloading = [this] { EXPECT_THAT(receiptNames(), ElementsAre("old", "new")); };
  toggleNewestLast();
  EXPECT_EQ(shownVersions(), "134");
  EXPECT_EQ(outline.reloads, 1);
  EXPECT_EQ(table.reloads, 1);
}

TEST_F(Report, IsInItsFirstOrderAfterTwoChanges) {
  const std::string first = shownReport();
  toggleNewestLast();
  toggleNewestLast();
  EXPECT_EQ(shownReport(), first);
  EXPECT_THAT(receiptNames(), ElementsAre("new", "old"));
}

TEST_F(Report, ReversesTheReceiptsOnEveryChangeWhateverTheState) {
  newestLast.value = platform::stateOn;
  controller.newestNonCheckbox(nullptr);
  controller.newestNonCheckbox(nullptr);
  EXPECT_EQ(shownVersions(), "134");
  EXPECT_THAT(receiptNames(), ElementsAre("new", "old"));
}

TEST_F(Report, TakesAnyStateButOffForNewestLast) {
  newestLast.value = platform::stateMixed;
  controller.newestNonCheckbox(nullptr);
  EXPECT_EQ(shownVersions(), "134");
  controller.skipNonCheckbox(nullptr);
  EXPECT_EQ(shownVersions(), "134");
}

TEST_F(Report, KeepsUnskippedLinesWhenItsOrderChanges) {
  toggleSkip();
  toggleNewestLast();
  EXPECT_EQ(shownVersions(), "1234");
  toggleSkip();
  EXPECT_EQ(shownVersions(), "134");
}

TEST_F(Report, DoesNotRebuildItsLinesWhenItsOrderChanges) {
  skip.value = platform::stateOff;  // not applied: no action was sent
  toggleNewestLast();
  EXPECT_EQ(shownVersions(), "134");
}

TEST_F(Report, DoesNotReadItsFilesAgain) {
  const std::size_t filesRead = fileManager.pathsRead.size();
  toggleSkip();
  toggleNewestLast();
  EXPECT_EQ(fileManager.pathsRead.size(), filesRead);
}

TEST_F(Report, GrowsByStepsThatAreStored) {
  for (int i = 0; i < 3; ++i) controller.incFontSize(nullptr);
  EXPECT_EQ(controller.theFontSize, 15.0);
  EXPECT_EQ(services.userDefaults.doubles["fontSize"], 15.0);
  EXPECT_EQ(reportView.shown.font, platform::SystemFont{15.0});
  ui::ViewController next;
  next.outputText = &reportView;
  next.BoMTable = &table;
  next.skipCheckbox = &skip;
  next.newestLastCheckbox = &newestLast;
  next.viewDidLoad();
  EXPECT_EQ(next.theFontSize, 15.0);
}

TEST_F(Report, StaysWithinItsBoundsAndStoresThemAllTheSame) {
  controller.theFontSize = 24.0;
  controller.incFontSize(nullptr);
  EXPECT_EQ(controller.theFontSize, 24.0);
  EXPECT_EQ(services.userDefaults.doubles["fontSize"], 24.0);
  controller.theFontSize = 4.0;
  controller.decFontSize(nullptr);
  EXPECT_EQ(controller.theFontSize, 4.0);
  EXPECT_EQ(services.userDefaults.doubles["fontSize"], 4.0);
}

TEST_F(Report, ComesBackFromASizeAboveItsBounds) {
  controller.theFontSize = 30.0;
  controller.decFontSize(nullptr);
  EXPECT_EQ(controller.theFontSize, 29.0);
  controller.theFontSize = 30.0;
  controller.incFontSize(nullptr);
  EXPECT_EQ(controller.theFontSize, 24.0);
}

TEST_F(Report, KeepsItsVeryTextWhenItsSizeChanges) {
  const platform::SharedText before = reportView.shown.string;
  controller.incFontSize(nullptr);
  controller.decFontSize(nullptr);
  EXPECT_EQ(reportView.shown.string, before);
  EXPECT_EQ(reportView.shown.foregroundColor, platform::Color::text);
}

TEST_F(Report, WithoutATextStorageStoresTheSizeAndChangesNothingElse) {
  reportView.hasStorage = false;
  controller.incFontSize(nullptr);
  EXPECT_EQ(services.userDefaults.doubles["fontSize"], 13.0);
  EXPECT_EQ(reportView.shown.font, platform::SystemFont{12.0});
}

TEST_F(Report, AsksForATextFileAndPresetsNoPlaceAndNoName) {
  const PlainSavePanel& panel = save();
  EXPECT_TRUE(panel.canCreateDirectories);
  EXPECT_THAT(panel.allowedFileTypes, ElementsAre("text", "txt"));
}

TEST_F(Report, IsSavedWithAStampLineAtItsEnd) {
  PlainSavePanel& panel = save();
  panel.chosenPath = "/home/a/report.text";
  panel.completionHandler(platform::modalResponseOK);
  EXPECT_EQ(fileManager.files["/home/a/report.text"],
            "\n\nMRTConfigData: 4 2019-03-26 10:11:12 +0000\nmacOS 10.14.1: 3 2019-03-26 10:11:12 +0000\n"
            "macOS Mojave: 1 2019-03-26 10:11:12 +0000\nChecked by Pelmarix at: 2019-03-26 10:11:12 +0000\n");
  EXPECT_THAT(services.alerts, IsEmpty());
}

TEST_F(Report, IsSavedAsItWasAndStampedWhenTheButtonWasPressed) {
  PlainSavePanel& panel = save();
  now = Date{0};
  toggleSkip();
  panel.chosenPath = "/home/a/report.text";
  panel.completionHandler(platform::modalResponseOK);
  const std::string& saved = fileManager.files["/home/a/report.text"];
  EXPECT_TRUE(saved.ends_with("Checked by Pelmarix at: 2019-03-26 10:11:12 +0000\n")) << saved;
  EXPECT_EQ(saved.find("Fonts"), std::string::npos);
}

TEST_F(Report, IsNotSavedWhenThePanelIsCancelledOrGivesNoPath) {
  const auto filesBefore = fileManager.files;
  PlainSavePanel& panel = save();
  panel.completionHandler(platform::modalResponseOK);
  panel.chosenPath = "/home/a/report.text";
  panel.completionHandler(platform::modalResponseCancel);
  panel.completionHandler(1000);
  EXPECT_EQ(fileManager.files, filesBefore);
  EXPECT_THAT(services.alerts, IsEmpty());
}

TEST_F(Report, ThatCannotBeWrittenShowsTheSystemsWords) {
  fileManager.writeFailure = std::make_error_code(std::errc::no_space_on_device);
  PlainSavePanel& panel = save();
  panel.chosenPath = "/home/a/report.text";
  panel.completionHandler(platform::modalResponseOK);
  EXPECT_THAT(services.alerts,
              ElementsAre(errorAlert("An error occurred in your last action:", "No space left on device")));
}

TEST_F(Report, DoesNotKeepItsPanelAlive) {
  save();
  const std::weak_ptr<PlainSavePanel> panel = savePanels.back();
  savePanels.clear();
  EXPECT_TRUE(panel.expired());
}

TEST_F(Report, WithAnUnconnectedOutletStopsTheProgram) {
  controller.outputText = nullptr;
  EXPECT_FATAL_STOP(controller.incFontSize(nullptr));
  EXPECT_FATAL_STOP(controller.saveButton(nullptr));
  controller.skipCheckbox = nullptr;
  EXPECT_FATAL_STOP(controller.skipNonCheckbox(nullptr));
}

}  // namespace
}  // namespace pelmarix::test
