#include "qt/widgets/timeline_drawing.h"

#include <algorithm>
#include <cmath>

#include "qt/widgets/palette_colors.h"
#include "tests/qt/widgets/timeline_strip_fixture.h"

namespace pelmarix::test {
namespace {

using platform::TimelineKind;
using platform::TimelinePlace;

class TimelineDrawing : public TimelineStripFixture {};

/// Of two colours on a screen; 1 for the same.
double contrast(const QColor& one, const QColor& other) {
  const auto luminance = [](const QColor& color) {
    const auto linear = [](double part) {
      return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
  };
  const double less = std::min(luminance(one), luminance(other));
  const double more = std::max(luminance(one), luminance(other));
  return (more + 0.05) / (less + 0.05);
}

QPalette darkPalette() {
  QPalette dark(QColor(42, 46, 50));
  dark.setColor(QPalette::Base, QColor(27, 30, 32));
  dark.setColor(QPalette::Text, Qt::white);
  dark.setColor(QPalette::Highlight, QColor(61, 174, 233));
  return dark;
}

TEST_F(TimelineDrawing, DrawsAMarkInItsLaneAtItsTime) {
  show();
  QRect above;
  for (int kind = 0; kind < 6; ++kind) {
    const QRect early = drawnBy([&] { add(0, static_cast<TimelineKind>(kind)); });
    const QRect late = drawnBy([&] { add(1000, static_cast<TimelineKind>(kind)); });
    EXPECT_FALSE(early.isEmpty()) << kind;
    EXPECT_NEAR(late.center().x() - early.center().x(), scale.width, 1) << kind;
    EXPECT_EQ(early.center().y(), late.center().y());
    EXPECT_GT(early.top(), above.bottom()) << kind;
    above = early;
  }
  EXPECT_TRUE(strip.contentsRect().contains(above));
}

TEST_F(TimelineDrawing, TellsKindsApartByShapeAndByColour) {
  // Where nothing else is drawn.
  std::vector<QImage> shapes;
  for (int kind = 0; kind < 6; ++kind) {
    show();
    const QPoint place = [&] {
      add(500, static_cast<TimelineKind>(kind));
      return placeOf(0);
    }();
    shapes.push_back(picture().copy(QRect(place - QPoint(8, 8), QSize(16, 16))));
    entries.clear();
  }
  const auto inkOf = [](const QImage& image) {
    QImage ink = image.convertToFormat(QImage::Format_Grayscale8);
    for (int y = 0; y < ink.height(); ++y)
      for (int x = 0; x < ink.width(); ++x)
        ink.scanLine(y)[x] = ink.pixelColor(x, y).lightness() < 170 ? 0 : 255;
    return ink;
  };
  for (std::size_t i = 0; i < shapes.size(); ++i)
    for (std::size_t j = 0; j < i; ++j) {
      EXPECT_NE(inkOf(shapes[i]), inkOf(shapes[j])) << i << " and " << j;
      for (const QPalette& palette : {QApplication::palette(), darkPalette()})
        EXPECT_NE(qt::colorOfKind(palette, static_cast<TimelineKind>(i)),
                  qt::colorOfKind(palette, static_cast<TimelineKind>(j)));
    }
}

TEST_F(TimelineDrawing, HasColoursThatCanBeReadOnLightAndOnDark) {
  for (const QPalette& palette : {QApplication::palette(), darkPalette()})
    for (int kind = 0; kind < 6; ++kind)
      EXPECT_GE(
          contrast(qt::colorOfKind(palette, static_cast<TimelineKind>(kind)), palette.color(QPalette::Base)),
          4.5)
          << kind;
}

TEST_F(TimelineDrawing, WritesIntoAMarkHowManyEntriesItIs) {
  TimelineEntry& entry = *add(500, TimelineKind::securityData);
  show();
  const int width = drawnBy([&] { entry.count = 2; }).width();
  EXPECT_GT(width, 0);
  EXPECT_FALSE(drawnBy([&] { entry.count = 3; }).isEmpty());
  const QRect wide = drawnBy([&] { entry.count = 100'000; });
  EXPECT_GT(wide.width(), width);
  EXPECT_LT(wide.width(), scale.markWidth * 3 / 2);
}

TEST_F(TimelineDrawing, DrawsWhatIsSelectedDifferently) {
  TimelineEntry& entry = *add(500, TimelineKind::receipt);
  show();
  EXPECT_FALSE(drawnBy([&] { selected = &entry; }).isEmpty());
}

TEST_F(TimelineDrawing, ShowsThatItHasTheKeyboard) {
  show();
  const QImage focused = picture();
  const QImage saved = strip.toImage();
  strip.clearFocus();
  EXPECT_TRUE(isAbout(changedPart(focused, picture()), strip.contentsRect()));
  EXPECT_EQ(strip.toImage(), saved) << "a saved picture has no focus";
}

TEST_F(TimelineDrawing, HasOutliersBesideTheSpanWithTheirDates) {
  show();
  const double width = scale.width;
  const QRect before =
      drawnBy([&] { add(-1e9, TimelineKind::systemInstall)->place = TimelinePlace::before; });
  strip.repaint();
  EXPECT_LT(scale.width, width - strip.fontMetrics().horizontalAdvance(QStringLiteral("1904-01-01")));
  EXPECT_FALSE(before.isEmpty());
  EXPECT_GT(drawnBy([&] { outlierDate = "1904-12-31"; }).left(), strip.fontMetrics().height());
  EXPECT_LT(drawnBy([&] { outlierDate = "1905-01-01"; }).right(), strip.width() - scale.width);
  entries[0]->place = TimelinePlace::after;
  strip.reloadData();
  EXPECT_GT(drawnBy([&] { outlierDate = "2040-01-01"; }).left(), scale.width);
}

TEST_F(TimelineDrawing, NamesABandWhereItIsWideEnough) {
  rest.bands = {{0, 400, "", false}};
  show();
  EXPECT_FALSE(drawnBy([&] { rest.bands[0].name = "macOS Mojave 10.14"; }).isEmpty());
  rest.bands = {{0, 20, "", false}};
  strip.reloadData();
  EXPECT_TRUE(drawnBy([&] { rest.bands[0].name = "macOS Catalina 10.15"; }).isEmpty());
}

TEST_F(TimelineDrawing, HasSignsForWhatCannotBeSeenInANameAndLooksAtItsBeginningOnly) {
  rest.bands = {{0, 400, "macOS \u202eMojave\n10.14", false}};
  show();
  EXPECT_TRUE(drawnBy([&] { rest.bands[0].name = "macOS \u21c4Mojave\u240a10.14"; }).isEmpty());
  rest.bands[0].name = std::string(1000, 'x');
  strip.reloadData();
  EXPECT_TRUE(drawnBy([&] { rest.bands[0].name = std::string(1'000'000, 'x'); }).isEmpty());
}

TEST_F(TimelineDrawing, WritesTheNameOfAReleaseAboveItsNextGroupsAndNoNameOverAnother) {
  rest.bands = {{0, 20, "macOS Mojave 10.14", false}, {20, 400, "", false}, {400, 600, "", true}};
  show();
  const QRect name = drawnBy([&] { rest.bands[0].name = ""; });
  EXPECT_GT(name.width(), 60);
  EXPECT_LT(name.right(), 400 + strip.width() - scale.width);
  rest.bands[0].name = "macOS Mojave 10.14";
  strip.reloadData();
  EXPECT_TRUE(drawnBy([&] { rest.bands[1].name = "10.14.1"; }).isEmpty()) << "its place is taken";
  rest.bands[1].left = 200;
  strip.reloadData();
  rest.bands[1].name = "";
  strip.reloadData();
  EXPECT_FALSE(drawnBy([&] { rest.bands[1].name = "10.14.1"; }).isEmpty());
}

TEST_F(TimelineDrawing, TellsTheLongestGapInWordsWhereNotAllHaveRoom) {
  rest.gaps = {{400, 440, "40 days without security data"}};
  show();
  const QRect alone = drawnBy([&] { rest.gaps[0].words = ""; });
  EXPECT_GT(alone.width(), 100);
  const auto isTold = [&](double left) {
    rest.gaps = {{left, left + 10, ""}, {400, 440, "40 days without security data"}};
    strip.reloadData();
    return !drawnBy([&] { rest.gaps[0].words = "10 days without security data"; }).isEmpty();
  };
  EXPECT_FALSE(isTold(415));
  EXPECT_TRUE(isTold(415 - alone.width() * 2.0 / 3)) << "to the left";
  EXPECT_TRUE(isTold(415 + alone.width() * 2.0 / 3)) << "to the right";
}

TEST_F(TimelineDrawing, WritesNoDateOverAnother) {
  rest.ticks = {{100, "2019-01-01"}, {120, ""}};
  show();
  EXPECT_FALSE(drawnBy([&] { rest.ticks[0].label = "2018-01-01"; }).isEmpty());
  EXPECT_TRUE(drawnBy([&] { rest.ticks[1].label = "2019-02-01"; }).isEmpty());
  rest.ticks[1] = {scale.width, ""};
  strip.reloadData();
  const QRect last = drawnBy([&] { rest.ticks[1].label = "2020-01-01"; });
  EXPECT_FALSE(last.isEmpty());
  EXPECT_GE(last.width(), strip.fontMetrics().horizontalAdvance(QStringLiteral("2020-01-01")) - 4) << "whole";
}

TEST_F(TimelineDrawing, IsAsHighAsItsLanesAndItsLettersNeed) {
  show();
  const int six = strip.sizeHint().height();
  const double width = scale.width;
  lanes = 5;
  strip.reloadData();
  EXPECT_LT(strip.sizeHint().height(), six);
  QFont large = strip.font();
  large.setPointSizeF(large.pointSizeF() * 2);
  strip.setFont(large);
  EXPECT_GT(strip.sizeHint().height(), six * 3 / 2);
  strip.repaint();
  EXPECT_LT(scale.width, width - strip.fontMetrics().horizontalAdvance(QStringLiteral("Lane")) / 2.0);
  EXPECT_EQ(strip.minimumSizeHint().height(), strip.sizeHint().height());
}

TEST_F(TimelineDrawing, AsksForWhatIsInViewOnce) {
  for (int i = 0; i < 100; ++i) add(i * 10, TimelineKind::receipt);
  show();
  pictureQuestions = 0;
  strip.repaint();
  toolTipAt({500, 100});
  EXPECT_EQ(pictureQuestions, 0);
  press(Qt::Key_Plus);
  EXPECT_EQ(pictureQuestions, 1);
}

TEST_F(TimelineDrawing, MakesAPictureOfTwiceItsSize) {
  add(500, TimelineKind::receipt);
  show();
  const QImage image = strip.toImage();
  EXPECT_EQ(image.size(), strip.size() * 2);
  QImage plain(image.size(), image.format());
  plain.fill(strip.palette().color(QPalette::Base));
  EXPECT_GT(changedPart(plain, image).width(), image.width() / 2);
  const QPoint mark = placeOf(0);
  entries.clear();
  strip.reloadData();
  const QRect drawn = changedPart(image, strip.toImage());
  EXPECT_NEAR(drawn.center().x(), 2 * mark.x(), 2) << "and all in it twice as large";
  EXPECT_NEAR(drawn.center().y(), 2 * mark.y(), 2);
}

}  // namespace
}  // namespace pelmarix::test
