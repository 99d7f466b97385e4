#include "qt/widgets/text_adapter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace pelmarix::test {
namespace {

class TextAdapter : public testing::Test {
 protected:
  double sizeFor(double pointSize) {
    text.textStorage()->setAttributedString(
        {platform::shareText("x"), platform::Color::text, platform::SystemFont{pointSize}});
    return widget.font().pointSizeF();
  }

  qt::PlainTextView widget;
  qt::TextAdapter text{widget};
};

TEST_F(TextAdapter, HoldsWhatWasPutIn) {
  EXPECT_EQ(*text.string(), "");
  const platform::SharedText report = platform::shareText("\n\nreport\r\n");
  text.textStorage()->setAttributedString({report, platform::Color::text, platform::SystemFont{12}});
  EXPECT_EQ(text.string(), report);
}

TEST_F(TextAdapter, DrawsInTheSystemFontAtThatSize) {
  const QString family = widget.font().family();
  EXPECT_EQ(sizeFor(15.0), 15.0);
  EXPECT_EQ(sizeFor(30.0), 30.0);
  EXPECT_EQ(widget.font().family(), family);
}

TEST_F(TextAdapter, DrawsASizeThatNoFontHasInTheNearestOne) {
  EXPECT_EQ(sizeFor(1e300), 500.0);
  EXPECT_EQ(sizeFor(std::numeric_limits<double>::infinity()), 500.0);
  EXPECT_EQ(sizeFor(11.0), 11.0);
  EXPECT_EQ(sizeFor(std::nan("")), 11.0) << "what is no size leaves the one before";
}

TEST_F(TextAdapter, LeavesTheFontToTheWidgetWhereNoneIsGiven) {
  QFont font = widget.font();
  font.setPointSizeF(17);
  widget.setFont(font);
  text.textStorage()->setAttributedString({platform::shareText("x"), platform::Color::text, std::nullopt});
  EXPECT_EQ(widget.font().pointSizeF(), 17.0);
}

TEST_F(TextAdapter, OnlyRestylesTheTextThatIsShownAlready) {
  text.textStorage()->setAttributedString(
      {platform::shareText("report"), platform::Color::text, platform::SystemFont{12}});
  widget.select(2, 4);
  text.textStorage()->setAttributedString({text.string(), platform::Color::text, platform::SystemFont{13}});
  EXPECT_EQ(widget.selection(), (qt::TextRange{2, 4})) << "another text would have nothing selected";
  EXPECT_EQ(widget.font().pointSizeF(), 13.0);
}

}  // namespace
}  // namespace pelmarix::test
