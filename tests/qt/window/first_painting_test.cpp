#include "qt/window/first_painting.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLabel>
#include <QTest>
#include <memory>

namespace pelmarix::qt {
namespace {

/// Knows whether it has been painted.
class PaintedLabel final : public QLabel {
 public:
  using QLabel::QLabel;
  bool isPainted = false;

 private:
  void paintEvent(QPaintEvent* event) override {
    QLabel::paintEvent(event);
    isPainted = true;
  }
};

constexpr std::chrono::hours anHour(1);

struct FirstPaintingTest : testing::Test {
  std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
  PaintedLabel& label = *new PaintedLabel(QStringLiteral("Report"), window.get());
  int calls = 0;
};

TEST_F(FirstPaintingTest, DoesTheWorkOnceWhenAllOfTheWindowIsPainted) {
  bool wasPainted = false;
  const FirstPainting painting(
      *window,
      [&] {
        wasPainted = label.isPainted;
        ++calls;
      },
      anHour);
  window->show();
  EXPECT_EQ(calls, 0);
  ASSERT_TRUE(QTest::qWaitFor([&] { return calls != 0; }));
  EXPECT_TRUE(wasPainted);

  label.isPainted = false;
  window->update();
  ASSERT_TRUE(QTest::qWaitFor([&] { return label.isPainted; }));
  QCoreApplication::processEvents();
  EXPECT_EQ(calls, 1);
}

TEST_F(FirstPaintingTest, DoesTheWorkAfterTheTimeOutWhenTheWindowIsShownAndNotPainted) {
  const FirstPainting painting(
      *window, [&] { ++calls; }, std::chrono::milliseconds(1));
  QShowEvent shown;
  QCoreApplication::sendEvent(window.get(), &shown);
  EXPECT_EQ(calls, 0);
  ASSERT_TRUE(QTest::qWaitFor([&] { return calls != 0; }));
  EXPECT_FALSE(label.isPainted);

  window->show();
  ASSERT_TRUE(QTest::qWaitFor([&] { return label.isPainted; }));
  QCoreApplication::processEvents();
  EXPECT_EQ(calls, 1);
}

TEST_F(FirstPaintingTest, DoesTheWorkAfterTheTimeOutWhenTheWindowHasGone) {
  const FirstPainting painting(
      *window, [&] { ++calls; }, std::chrono::milliseconds(1));
  QShowEvent shown;
  QCoreApplication::sendEvent(window.get(), &shown);
  window.reset();
  ASSERT_TRUE(QTest::qWaitFor([&] { return calls != 0; }));
}

TEST_F(FirstPaintingTest, DoesTheWorkOfAWindowThatIsNotPaintedWhenItIsToWaitNoLonger) {
  FirstPainting painting(*window, [&] { ++calls; });
  EXPECT_EQ(calls, 0);
  painting.waitNoLonger();
  EXPECT_EQ(calls, 1);

  window->show();
  ASSERT_TRUE(QTest::qWaitFor([&] { return label.isPainted; }));
  QCoreApplication::processEvents();
  painting.waitNoLonger();
  EXPECT_EQ(calls, 1);
}

TEST_F(FirstPaintingTest, DoesTheWorkOfAWindowThatHasGoneWhenItIsToWaitNoLonger) {
  FirstPainting painting(*window, [&] { ++calls; });
  window->show();
  window.reset();
  painting.waitNoLonger();
  EXPECT_EQ(calls, 1);
}

TEST_F(FirstPaintingTest, DoesNothingOnceItHasGone) {
  {
    const FirstPainting painting(*window, [&] { ++calls; });
    window->show();
  }
  ASSERT_TRUE(QTest::qWaitFor([&] { return label.isPainted; }));
  QCoreApplication::processEvents();
  EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace pelmarix::qt
