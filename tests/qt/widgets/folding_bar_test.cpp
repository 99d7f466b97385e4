#include "qt/widgets/folding_bar.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QHBoxLayout>

namespace pelmarix::test {
namespace {

constexpr int spacing = 6;

/// A bar whose parts have sizes that a test knows.
class FoldingBar : public testing::Test {
 protected:
  FoldingBar() { fill({100, 30}); }

  void fill(QSize sizeOfOptions) {
    auto* const grid = new QGridLayout(&bar);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(spacing);
    heading.setFixedSize(50, 20);
    option.setFixedSize(sizeOfOptions);
    button.setFixedSize(80, 24);
    grid->addWidget(&heading, 0, 0);
    grid->addItem(new QSpacerItem(0, 0, QSizePolicy::Expanding), 0, 1);
    for (const auto& [widget, column] : {std::pair(&option, 2), {&button, 3}}) {
      auto* const box = new QHBoxLayout;
      box->addWidget(widget);
      grid->addLayout(box, 0, column);
    }
    bar.show();
  }
  void resizeTo(int width) {
    bar.resize(width, 100);
    QApplication::processEvents();
    bar.resize(width, bar.minimumSizeHint().height());
    QApplication::processEvents();
  }

  qt::FoldingBar bar;
  QWidget heading, option, button;
};

TEST_F(FoldingBar, StandsInOneRowWhileThatHasRoom) {
  for (const int width : {50 + 100 + 80 + 3 * spacing, 500}) {
    resizeTo(width);
    EXPECT_EQ(bar.height(), 30);
    EXPECT_EQ(heading.geometry(), QRect(0, 5, 50, 20));
    EXPECT_EQ(button.geometry(), QRect(width - 80, 3, 80, 24));
    EXPECT_EQ(option.geometry(), QRect(width - 80 - spacing - 100, 0, 100, 30));
  }
}

TEST_F(FoldingBar, HasItsOptionsAtTheLeftBelowTheOthersWhereItIsNarrower) {
  for (const int width : {50 + 100 + 80 + 3 * spacing - 1, 50 + 80 + 3 * spacing}) {
    resizeTo(width);
    EXPECT_EQ(bar.height(), 24 + spacing + 30);
    EXPECT_EQ(heading.geometry(), QRect(0, 2, 50, 20));
    EXPECT_EQ(button.geometry(), QRect(width - 80, 0, 80, 24));
    EXPECT_EQ(option.geometry(), QRect(0, 24 + spacing, 100, 30));
  }
}

TEST_F(FoldingBar, UnfoldsAgain) {
  for (int times = 0; times < 2; ++times) {
    resizeTo(200);
    EXPECT_EQ(option.geometry(), QRect(0, 24 + spacing, 100, 30));
    resizeTo(400);
    EXPECT_EQ(option.geometry(), QRect(400 - 80 - spacing - 100, 0, 100, 30));
  }
}

TEST_F(FoldingBar, CanBecomeAsNarrowAsTheWiderOfItsTwoRows) {
  resizeTo(400);
  EXPECT_EQ(bar.minimumSizeHint(), QSize(50 + 80 + 3 * spacing, 30));
  resizeTo(200);
  EXPECT_EQ(bar.minimumSizeHint(), QSize(50 + 80 + 3 * spacing, 24 + spacing + 30));
}

TEST_F(FoldingBar, CanBecomeAsNarrowAsOptionsThatAreWiderThanTheRest) {
  option.setFixedSize(240, 30);
  QApplication::processEvents();
  EXPECT_EQ(bar.minimumSizeHint().width(), 240);
  resizeTo(240);
  EXPECT_EQ(option.geometry(), QRect(0, 24 + spacing, 240, 30));
  EXPECT_EQ(button.geometry(), QRect(240 - 80, 0, 80, 24)) << "still at the right edge";
}

TEST(FoldingBarWithoutParts, HasTheSizeOfAnyWidget) {
  EXPECT_EQ(qt::FoldingBar().minimumSizeHint(), QWidget().minimumSizeHint());
}

}  // namespace
}  // namespace pelmarix::test
