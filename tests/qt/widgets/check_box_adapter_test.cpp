#include "qt/widgets/check_box_adapter.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <vector>

namespace pelmarix::test {
namespace {

TEST(CheckBoxAdapter, HasTheStatesOfTheCheckBox) {
  QCheckBox widget;
  qt::CheckBoxAdapter box(widget);
  EXPECT_EQ(box.state(), platform::stateOff);
  widget.click();
  EXPECT_EQ(box.state(), platform::stateOn);
  for (const int state : {platform::stateOff, platform::stateOn}) {
    box.setState(state);
    EXPECT_EQ(box.state(), state);
    EXPECT_EQ(widget.isChecked(), state == platform::stateOn);
  }
}

TEST(CheckBoxAdapter, CountsAMixedStateAsOff) {
  QCheckBox widget;
  qt::CheckBoxAdapter box(widget);
  box.setState(platform::stateOn);
  box.setState(platform::stateMixed);
  EXPECT_EQ(box.state(), platform::stateOff);
}

TEST(CheckBoxAdapter, SendsItsActionWhenTheUserChangesTheState) {
  QCheckBox widget;
  qt::CheckBoxAdapter box(widget);
  std::vector<int> states;
  box.setAction(&widget, [&] { states.push_back(box.state()); });
  widget.click();
  EXPECT_EQ(states, std::vector{platform::stateOn});
  QAccessibleInterface* screenReader = QAccessible::queryAccessibleInterface(&widget);
  screenReader->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_EQ(states, (std::vector{platform::stateOn, platform::stateOff}));
}

TEST(CheckBoxAdapter, SendsNoActionWhenTheProgramSetsTheState) {
  QCheckBox widget;
  qt::CheckBoxAdapter box(widget);
  bool isSent = false;
  box.setAction(&widget, [&] { isSent = true; });
  for (const int state : {platform::stateOn, platform::stateMixed, platform::stateOff}) box.setState(state);
  EXPECT_FALSE(isSent);
}

}  // namespace
}  // namespace pelmarix::test
