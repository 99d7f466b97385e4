#include "ui/bom_over_view_controller.h"

#include <gmock/gmock.h>

#include "tests/support/fatal_stop.h"
#include "tests/ui/main_window_fixture.h"

namespace pelmarix::test {
namespace {

class Sheet : public testing::Test {
 protected:
  Sheet() { controller.outputTextbox = &textView; }
  PlainTextView textView;
  ui::BoMoverViewController controller;
};

TEST_F(Sheet, StartsEmptyAndUnconnected) {
  const ui::BoMoverViewController fresh;
  EXPECT_EQ(*fresh.theOutText, "");
  EXPECT_EQ(fresh.outputTextbox, nullptr);
  EXPECT_EQ(fresh.outputScrollView, nullptr);
}

TEST_F(Sheet, ShowsTheTextThatItWasGivenBeforeItsViewLoads) {
  controller.setRepresentedObject(platform::shareText("./a\t1\tdate\n"));
  controller.viewDidLoad();
  EXPECT_EQ(*textView.shown.string, "./a\t1\tdate\n");
  EXPECT_EQ(textView.shown.foregroundColor, platform::Color::text);
  EXPECT_EQ(textView.shown.font, std::nullopt);
}

TEST_F(Sheet, GivenANumberOrNothingOpensEmpty) {
  controller.setRepresentedObject(7);
  EXPECT_EQ(std::any_cast<int>(controller.representedObject()), 7);
  controller.viewDidLoad();
  EXPECT_EQ(*textView.shown.string, "");
  controller.setRepresentedObject({});
  EXPECT_EQ(*controller.theOutText, "");
}

TEST_F(Sheet, KeepsItsTextWhenGivenAnythingElse) {
  controller.setRepresentedObject(platform::shareText("text"));
  controller.setRepresentedObject({});
  EXPECT_FALSE(controller.representedObject().has_value());
  EXPECT_EQ(*controller.theOutText, "text");
}

TEST_F(Sheet, DoesNotRedrawWhenGivenAnotherTextLater) {
  controller.setRepresentedObject(platform::shareText("first"));
  controller.viewDidLoad();
  controller.setRepresentedObject(platform::shareText("second"));
  EXPECT_EQ(*controller.theOutText, "second");
  EXPECT_EQ(*textView.shown.string, "first");
}

TEST_F(Sheet, ShowsALongListingWholeAndWithoutACopyOfIt) {
  const platform::SharedText listing = platform::shareText(std::string(8'000'000, 'x'));
  controller.setRepresentedObject(listing);
  controller.viewDidLoad();
  EXPECT_EQ(textView.shown.string, listing);
}

TEST_F(Sheet, WithoutATextStorageShowsNothing) {
  textView.hasStorage = false;
  controller.setRepresentedObject(platform::shareText("text"));
  controller.viewDidLoad();
  EXPECT_EQ(*textView.shown.string, "");
}

TEST_F(Sheet, WithoutItsTextViewStopsTheProgram) {
  controller.outputTextbox = nullptr;
  EXPECT_FATAL_STOP(controller.viewDidLoad());
}

TEST_F(Sheet, AsksToBeDismissedByItsCloseButton) {
  platform::ViewController* dismissed = nullptr;
  controller.setDismisser([&](platform::ViewController& which) { dismissed = &which; });
  controller.closeButton(nullptr);
  EXPECT_EQ(dismissed, &controller);
}

}  // namespace
}  // namespace pelmarix::test
