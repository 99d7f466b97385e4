#include "qt/window/first_painting.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLabel>
#include <QTest>
#include <chrono>
#include <memory>

namespace pelmarix::qt {
namespace {

using std::chrono::milliseconds;

constexpr std::chrono::hours anHour(1);

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

struct FirstPaintingTest : testing::Test {
  std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
  PaintedLabel& label = *new PaintedLabel(QStringLiteral("Report"), window.get());
  int calls = 0;
};

TEST_F(FirstPaintingTest, CallsBackOnceWhenAllOfTheWindowIsPainted) {
  bool wasPainted = false;
  FirstPainting painting(*window);
  window->show();
  painting.then(
      [&] {
        wasPainted = label.isPainted;
        ++calls;
      },
      anHour);
  EXPECT_EQ(calls, 0);
  ASSERT_TRUE(QTest::qWaitFor([&] { return calls != 0; }));
  EXPECT_TRUE(wasPainted);

  label.isPainted = false;
  window->update();
  ASSERT_TRUE(QTest::qWaitFor([&] { return label.isPainted; }));
  QCoreApplication::processEvents();
  EXPECT_EQ(calls, 1);
}

TEST_F(FirstPaintingTest, CallsBackFromTheEventLoopWhenTheWindowIsAlreadyPainted) {
  FirstPainting painting(*window);
  window->show();
  ASSERT_TRUE(QTest::qWaitFor([&] { return label.isPainted; }));
  painting.then([&] { ++calls; }, anHour);
  EXPECT_EQ(calls, 0);
  ASSERT_TRUE(QTest::qWaitFor([&] { return calls != 0; }));
}

TEST_F(FirstPaintingTest, CallsBackAfterItsPatienceWhenTheWindowIsNotPainted) {
  FirstPainting painting(*window);
  painting.then([&] { ++calls; }, milliseconds(1));
  EXPECT_EQ(calls, 0);
  ASSERT_TRUE(QTest::qWaitFor([&] { return calls != 0; }));
  EXPECT_FALSE(label.isPainted);

  window->show();
  ASSERT_TRUE(QTest::qWaitFor([&] { return label.isPainted; }));
  QCoreApplication::processEvents();
  EXPECT_EQ(calls, 1);
}

TEST_F(FirstPaintingTest, CallsBackWhenTheWindowHasGone) {
  FirstPainting painting(*window);
  window->show();
  painting.then([&] { ++calls; }, milliseconds(1));
  window.reset();
  ASSERT_TRUE(QTest::qWaitFor([&] { return calls != 0; }));
}

TEST_F(FirstPaintingTest, CallsBackAtOnceWhenItIsToWaitNoLonger) {
  FirstPainting painting(*window);
  painting.waitNoLonger();
  painting.then([&] { ++calls; }, anHour);
  EXPECT_EQ(calls, 0);
  painting.waitNoLonger();
  EXPECT_EQ(calls, 1);

  window->show();
  ASSERT_TRUE(QTest::qWaitFor([&] { return label.isPainted; }));
  QCoreApplication::processEvents();
  painting.waitNoLonger();
  EXPECT_EQ(calls, 1);
}

TEST_F(FirstPaintingTest, CallsNothingOnceItHasGone) {
  {
    FirstPainting painting(*window);
    window->show();
    painting.then([&] { ++calls; }, milliseconds(0));
  }
  ASSERT_TRUE(QTest::qWaitFor([&] { return label.isPainted; }));
  QCoreApplication::processEvents();
  EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace pelmarix::qt
