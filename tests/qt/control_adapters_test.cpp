#include "qt/control_adapters.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QSignalSpy>
#include <cmath>
#include <limits>
#include <vector>

namespace pelmarix::test {
namespace {

class TextAdapter : public testing::Test {
 protected:
  double sizeFor(double pointSize) {
    text.textStorage()->setAttributedString({shareText("x"), Color::text, SystemFont{pointSize}});
    return widget.font().pointSizeF();
  }

  qt::PlainTextWidget widget;
  qt::TextAdapter text{widget};
};

TEST_F(TextAdapter, HoldsWhatWasPutIn) {
  EXPECT_EQ(*text.string(), "");
  const SharedText report = shareText("\n\nreport\r\n");
  text.textStorage()->setAttributedString({report, Color::text, SystemFont{12}});
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
  text.textStorage()->setAttributedString({shareText("x"), Color::text, std::nullopt});
  EXPECT_EQ(widget.font().pointSizeF(), 17.0);
}

TEST_F(TextAdapter, OnlyRestylesTheTextThatIsShownAlready) {
  text.textStorage()->setAttributedString({shareText("report"), Color::text, SystemFont{12}});
  const QSignalSpy changed(&widget, &QPlainTextEdit::textChanged);
  text.textStorage()->setAttributedString({text.string(), Color::text, SystemFont{13}});
  EXPECT_EQ(changed.count(), 0);
  EXPECT_EQ(widget.font().pointSizeF(), 13.0);
}

TEST(CheckBoxAdapter, HasTheStatesOfTheCheckBox) {
  QCheckBox widget;
  qt::CheckBoxAdapter box(widget);
  EXPECT_EQ(box.state(), stateOff);
  widget.click();
  EXPECT_EQ(box.state(), stateOn);
  for (const int state : {stateOff, stateMixed, stateOn}) {
    box.setState(state);
    EXPECT_EQ(box.state(), state);
  }
}

TEST(CheckBoxAdapter, SendsItsActionWhenTheUserChangesTheState) {
  QCheckBox widget;
  qt::CheckBoxAdapter box(widget);
  std::vector<int> states;
  box.setAction(&widget, [&] { states.push_back(box.state()); });
  widget.click();
  EXPECT_EQ(states, std::vector{stateOn});
  QAccessibleInterface* screenReader = QAccessible::queryAccessibleInterface(&widget);
  screenReader->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_EQ(states, (std::vector{stateOn, stateOff}));
}

TEST(CheckBoxAdapter, SendsNoActionWhenTheProgramSetsTheState) {
  QCheckBox widget;
  qt::CheckBoxAdapter box(widget);
  bool isSent = false;
  box.setAction(&widget, [&] { isSent = true; });
  for (const int state : {stateOn, stateMixed, stateOff}) box.setState(state);
  EXPECT_FALSE(isSent);
}

}  // namespace
}  // namespace pelmarix::test
