#include "ui/view_controller.h"

#include <gmock/gmock.h>

#include "tests/support/fatal_stop.h"
#include "tests/ui/main_window_fixture.h"
#include "ui/px_window.h"

namespace pelmarix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;

TEST(ViewController, StartsWithNothingInItAndNothingConnected) {
  const ui::ViewController controller;
  EXPECT_THAT(controller.histories, IsEmpty());
  EXPECT_THAT(controller.lines, IsEmpty());
  EXPECT_THAT(controller.boms.children, IsEmpty());
  EXPECT_EQ(controller.theFontSize, 12.0);
  EXPECT_THAT(controller.outputText, IsNull());
  EXPECT_THAT(controller.bsvOutlineView, IsNull());
  EXPECT_THAT(controller.BoMTable, IsNull());
  EXPECT_THAT(controller.skipCheckbox, IsNull());
  EXPECT_THAT(controller.newestLastCheckbox, IsNull());
  EXPECT_THAT(controller.outputScroller, IsNull());
  EXPECT_THAT(controller.output2Scroller, IsNull());
  EXPECT_THAT(controller.output2Text, IsNull());
  EXPECT_THAT(controller.outputFoldClipView, IsNull());
  EXPECT_THAT(controller.bsvTopView, IsNull());
  EXPECT_THAT(controller.bomTopView, IsNull());
  EXPECT_FALSE(controller.representedObject().has_value());
}

using Start = MainWindow;

TEST_F(Start, SetsTheSkipOptionOnAndTheNewestLastOptionOff) {
  controller.viewDidLoad();
  EXPECT_EQ(skip.value, platform::stateOn);
  EXPECT_EQ(newestLast.value, platform::stateOff);
}

TEST_F(Start, WithoutAStoredFontSizeShowsTheReportAtTwelvePoints) {
  controller.viewDidLoad();
  EXPECT_EQ(controller.theFontSize, 12.0);
  EXPECT_EQ(reportView.shown.font, platform::SystemFont{12.0});
  EXPECT_EQ(reportView.shown.foregroundColor, platform::Color::text);
}

TEST_F(Start, TakesAStoredFontSizeFromFourPointsOn) {
  const std::pair<double, double> storedAndUsed[] = {{3.5, 12.0}, {-1.0, 12.0}, {0.0, 12.0},
                                                     {4.0, 4.0},  {13.5, 13.5}, {30.0, 30.0}};
  for (const auto& [stored, used] : storedAndUsed) {
    services.userDefaults.doubles["fontSize"] = stored;
    controller.viewDidLoad();
    EXPECT_EQ(controller.theFontSize, used) << stored;
    EXPECT_EQ(reportView.shown.font, platform::SystemFont{used}) << stored;
    EXPECT_EQ(services.userDefaults.doubles["fontSize"], stored) << "start-up stores nothing";
  }
}

TEST_F(Start, ShowsTheReportNewestFirstWithoutConfigurationData) {
  setHistory(
      {{"macOS Mojave", "10.14"}, {"Fonts", "1", "config-data"}, {"Security Update 2019-001", "10.14.3"}});
  controller.viewDidLoad();
  EXPECT_EQ(shownReport(),
            "\n\nSecurity Update 2019-001: 10.14.3 2019-03-26 10:11:12 +0000\n"
            "macOS Mojave: 10.14 2019-03-26 10:11:12 +0000\n");
  EXPECT_THAT(controller.lines, ElementsAre("macOS Mojave: 10.14 2019-03-26 10:11:12 +0000\n", "",
                                            "Security Update 2019-001: 10.14.3 2019-03-26 10:11:12 +0000\n"));
}

TEST_F(Start, KeepsLinesOfSeveralGroupsInTheLoadersOrder) {
  setHistory({{"macOS Mojave", "10.14"}, {"macOS 10.14.1", "10.14.1"}});
  controller.viewDidLoad();
  EXPECT_EQ(controller.histories.size(), 2u);
  EXPECT_THAT(controller.lines, ElementsAre("macOS Mojave: 10.14 2019-03-26 10:11:12 +0000\n",
                                            "macOS 10.14.1: 10.14.1 2019-03-26 10:11:12 +0000\n"));
}

TEST_F(Start, WithoutHistoryShowsTwoLineFeeds) {
  controller.viewDidLoad();
  EXPECT_THAT(controller.lines, IsEmpty());
  EXPECT_EQ(shownReport(), "\n\n");
}

TEST_F(Start, ScansTheReceiptsAndReloadsTheirTableOnly) {
  addReceipt("a", "2019-03-01T00:00:00Z");
  addReceipt("b", "2020-05-02T00:00:00Z");
  table.whileReloading = [this] { EXPECT_THAT(receiptNames(), ElementsAre("b", "a")); };
  controller.viewDidLoad();
  EXPECT_EQ(table.reloads, 1);
  EXPECT_EQ(outline.reloads, 0);
}

TEST_F(Start, GoesOnAfterAHistoryThatCannotBeReadAndReceiptsThatCannot) {
  fileManager.files.erase(installHistory);
  fileManager.folders[receipts] = {"broken.plist"};
  addReceipt("a", "2019-03-01T00:00:00Z");
  services.answer = [this](const ShownAlert& alert) {
    // The report stands before the receipts are looked at.
    EXPECT_EQ(shownReport(), alert.informativeText == "Couldn't read install history." ? "" : "\n\n");
    EXPECT_EQ(skip.value, platform::stateOn);
    return platform::alertFirstButtonReturn;
  };
  controller.viewDidLoad();
  EXPECT_THAT(
      services.alerts,
      ElementsAre(errorAlert("An error occurred in your last action:", "Couldn't read install history."),
                  errorAlert("An error occurred in your last action:", "Couldn't read BoM PLists.")));
  EXPECT_THAT(receiptNames(), ElementsAre("a"));
  EXPECT_EQ(table.reloads, 1);
}

TEST_F(Start, WithAnUnconnectedOutletStopsTheProgram) {
  const auto loadWithout = [this](auto outlet) {
    controller.*outlet = nullptr;
    controller.viewDidLoad();
  };
  EXPECT_FATAL_STOP(loadWithout(&ui::ViewController::outputText));
  EXPECT_FATAL_STOP(loadWithout(&ui::ViewController::BoMTable));
  EXPECT_FATAL_STOP(loadWithout(&ui::ViewController::skipCheckbox));
  EXPECT_FATAL_STOP(loadWithout(&ui::ViewController::newestLastCheckbox));
  controller.bsvOutlineView = nullptr;
  EXPECT_FATAL_STOP(controller.viewDidAppear());
}

using Appearance = MainWindow;

TEST_F(Appearance, SetsDelegateAndTitleAndShowsTheOutline) {
  controller.viewDidAppear();
  EXPECT_EQ(window.delegate, &controller);
  EXPECT_EQ(window.title, "Pelmarix \xE2\x80\x93 currently running macOS Version 10.14.6 (Build 18G103)");
  EXPECT_EQ(outline.reloads, 1);
}

TEST_F(Appearance, RepeatsAllOfItEachTime) {
  controller.viewDidAppear();
  window.delegate = nullptr;
  window.title.clear();
  controller.viewDidAppear();
  EXPECT_EQ(window.delegate, &controller);
  EXPECT_FALSE(window.title.empty());
  EXPECT_EQ(outline.reloads, 2);
}

TEST_F(Appearance, WithoutAWindowShowsTheOutline) {
  controller.setWindow(nullptr);
  controller.viewDidAppear();
  EXPECT_EQ(window.delegate, nullptr);
  EXPECT_EQ(outline.reloads, 1);
}

TEST_F(Appearance, ClosingTheWindowEndsTheApplication) {
  EXPECT_TRUE(controller.windowShouldClose(window));
  EXPECT_THAT(application.terminatedBy, ElementsAre(&window));
}

using OutputText = MainWindow;

TEST_F(OutputText, StartsWithTwoLineFeedsAndHasTwoAttributes) {
  controller.theFontSize = 9.0;
  controller.setOutputText("report\n");
  EXPECT_EQ(shownReport(), "\n\nreport\n");
  EXPECT_EQ(reportView.shown.foregroundColor, platform::Color::text);
  EXPECT_EQ(reportView.shown.font, platform::SystemFont{9.0});
}

TEST_F(OutputText, WithoutATextStorageChangesNothing) {
  reportView.hasStorage = false;
  controller.setOutputText("report\n");
  EXPECT_EQ(shownReport(), "");
}

TEST(PXWindow, HasTheContentRectThatItIsMadeWith) {
  class ShownWindow final : public ui::PXWindow {
   public:
    using PXWindow::PXWindow;
    void setDelegate(platform::WindowDelegate* /*delegate*/) override {}
    void setTitle(const std::string& /*title*/) override {}
  };
  const ShownWindow window({1, 2, 300, 400}, platform::WindowStyleMask::all, platform::BackingStore::buffered,
                           true);
  const auto& [x, y, width, height] = window.contentRect();
  EXPECT_THAT((std::vector{x, y, width, height}), ElementsAre(1, 2, 300, 400));
}

}  // namespace
}  // namespace pelmarix::test
