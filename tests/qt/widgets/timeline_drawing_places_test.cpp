// Where a timeline draws what. Everything is told in the heights of letters and lanes.

#include <gtest/gtest.h>

#include <QFrame>
#include <cmath>

#include "qt/widgets/palette_colors.h"
#include "qt/widgets/timeline_drawing.h"
#include "tests/qt/widgets/pictures.h"

namespace pelmarix::test {
namespace {

using platform::TimelineKind;
using platform::TimelinePicture;
using platform::TimelinePlace;

constexpr int laneCount = 6;

class TimelineDrawingPlaces : public testing::Test {
 protected:
  TimelineDrawingPlaces() {
    QFont font = widget.font();
    font.setPointSizeF(24);
    widget.setFont(font);
    widget.setFrameStyle(QFrame::Box);
    widget.setLineWidth(3);
    letter = widget.fontMetrics().height();
    lane = letter * 5 / 4;
    blank = letter / 2.0;
    widget.resize(1600, (laneCount + 2) * lane + letter + 2 * widget.frameWidth());
    for (int kind = 0; kind < laneCount; ++kind)
      picture.lanes.push_back({static_cast<TimelineKind>(kind), "Lane"});
    measure();
  }

  void measure() {
    drawing.measure(picture);
    plot = drawing.plot();
  }
  double width(const QString& text) const {
    return QFontMetricsF(widget.fontMetrics()).horizontalAdvance(text);
  }
  double smallWidth(const QString& text) const {
    QFont small = widget.font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    return QFontMetricsF(small).horizontalAdvance(text);
  }
  /// Of the lane of a kind; that of security data has its gaps' words below it.
  double topOf(int kind) const { return plot.top() + kind * lane + (kind > 2 ? letter : 0); }
  static platform::TimelineMark mark(int kind, double x, std::size_t count = 1) {
    return {static_cast<TimelineKind>(kind), x, TimelinePlace::inside, {}, count, nullptr, nullptr, false};
  }
  /// As a pixel has it.
  QColor colorOf(TimelineKind kind) const { return qt::colorOfKind(widget.palette(), kind).toRgb().rgb(); }
  QImage drawn() {
    QImage image(widget.size(), QImage::Format_RGB32);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    drawing.draw(painter, picture);
    return image;
  }
  template <typename Change>
  QRect drawnBy(Change change) {
    const QImage before = drawn();
    change();
    return changedPart(before, drawn());
  }
  /// Where a mark answers to the pointer, found from a point in it.
  QRectF placeAround(QPointF point) {
    const auto isHit = [this](QPointF at) { return drawing.markAt(picture, at) != nullptr; };
    EXPECT_TRUE(isHit(point));
    const auto reach = [&](QPointF step) {
      QPointF last = point;
      while (isHit(last + step)) last += step;
      return last;
    };
    return {QPointF(reach({-0.25, 0}).x(), reach({0, -0.25}).y()),
            QPointF(reach({0.25, 0}).x(), reach({0, 0.25}).y())};
  }
  static bool isNear(const QRectF& rect, const QRectF& expected) {
    return isAbout(rect.toAlignedRect(), expected.toAlignedRect());
  }
  std::string wordsAt(double x, double y) {
    const std::string* const words = drawing.gapOrBandAt(picture, {x, y});
    return words == nullptr ? "" : *words;
  }

  QFrame widget;
  qt::TimelineDrawing drawing{widget};
  TimelinePicture picture;
  int letter;
  int lane;
  double blank;
  QRectF plot;
};

TEST_F(TimelineDrawingPlaces, HasRoomForNamesOfBandsLanesWordsAndDates) {
  EXPECT_EQ(drawing.height(), widget.height());
  const QRectF all = widget.contentsRect();
  EXPECT_EQ(plot.top(), all.top() + lane);
  EXPECT_EQ(plot.bottom(), all.bottom() - lane);
  EXPECT_EQ(plot.height(), laneCount * lane + letter);
  EXPECT_NEAR(drawing.markWidth(), smallWidth(QStringLiteral("000")) + blank, 0.01);
  EXPECT_NEAR(drawing.labelWidth(), width(QStringLiteral("0000-00-00 00:00")) + letter, 0.01);
  EXPECT_NEAR(plot.left() - all.left(),
              2.5 * letter + width(QStringLiteral("Lane")) + drawing.markWidth() / 2, 0.01);
  EXPECT_NEAR(all.right() - plot.right(), blank + drawing.markWidth() / 2, 0.01);
}

TEST_F(TimelineDrawingPlaces, HasRoomForTheWidestNameOfALaneUpToAThirdOfTheStrip) {
  const double before = plot.left();
  picture.lanes[1].name = "A longer name";
  measure();
  EXPECT_NEAR(plot.left() - before, width(QStringLiteral("A longer name")) - width(QStringLiteral("Lane")),
              0.01);
  picture.lanes[1].name = std::string(200, 'x');
  measure();
  EXPECT_NEAR(plot.left() - before, widget.width() / 3.0 - width(QStringLiteral("Lane")), 0.01);
  widget.resize(10, widget.height());
  measure();
  EXPECT_EQ(plot.width(), 1) << "of nothing, too, there is something";
}

TEST_F(TimelineDrawingPlaces, HasRoomForTheWidestDateOutsideOnEitherSide) {
  const QRectF usual = plot;
  for (const TimelinePlace place : {TimelinePlace::before, TimelinePlace::after}) {
    picture.marks = {mark(0, 0), mark(1, 0)};
    picture.marks[0].place = picture.marks[1].place = place;
    picture.marks[0].date = "1904-01-01";
    picture.marks[1].date = "190-1-1";
    measure();
    const double room =
        drawing.markWidth() + letter + width(QStringLiteral("1904-01-01") + QChar(0x2190) + QLatin1Char(' '));
    const bool isBefore = place == TimelinePlace::before;
    EXPECT_NEAR(plot.left() - usual.left(), isBefore ? room : 0, 1);
    EXPECT_NEAR(usual.right() - plot.right(), isBefore ? 0 : room, 1);
  }
}

TEST_F(TimelineDrawingPlaces, HasAMarkInTheMiddleOfItsLaneAlmostAsHighAsLetters) {
  const double size = letter * 0.93;
  for (int kind = 0; kind < laneCount; ++kind) {
    picture.marks = {mark(kind, 300)};
    const QPointF middle(plot.left() + 300, topOf(kind) + lane / 2.0);
    const QRectF place = placeAround(middle);
    EXPECT_TRUE(isNear(place, {middle.x() - size / 2, middle.y() - size / 2, size, size})) << kind;
    EXPECT_EQ(drawing.markAt(picture, middle), picture.marks.data());
    const QRect seen = drawnBy([&] { picture.marks.clear(); });
    EXPECT_TRUE(place.toAlignedRect().contains(seen)) << kind;
    EXPECT_GT(seen.width(), size * 0.65) << kind;
    EXPECT_GT(seen.height(), size * 0.65) << kind;
  }
}

TEST_F(TimelineDrawingPlaces, HasAMarkOfSeveralAsWideAsTheirNumberInAsFewLettersAsTell) {
  const double size = letter * 0.93;
  for (const int stretch : {QFont::Unstretched, QFont::UltraExpanded}) {
    QFont font = widget.font();
    font.setStretch(stretch);
    widget.setFont(font);
    measure();
    for (const auto& [count, text] : {std::pair(std::size_t{2}, "2"),
                                      {999U, "999"},
                                      {1000U, "1k"},
                                      {999'999U, "999k"},
                                      {1'000'000U, "1M"},
                                      {12'999'999U, "12M"}}) {
      picture.marks = {mark(4, 300, count)};
      const double wide = std::max(size, smallWidth(QString::fromLatin1(text)) + size / 2);
      const QPointF middle(plot.left() + 300, topOf(4) + lane / 2.0);
      EXPECT_TRUE(isNear(placeAround(middle), {middle.x() - wide / 2, middle.y() - size / 2, wide, size}))
          << text;
      // The number stands in its middle.
      const QRect whole = drawnBy([&] { picture.marks[0].count *= 888; });
      EXPECT_NEAR(whole.center().x(), middle.x(), 2) << text;
    }
  }
}

TEST_F(TimelineDrawingPlaces, WritesANumberIntoTheMiddleOfAMark) {
  picture.marks = {mark(2, 300, 2)};
  const QRect number = drawnBy([&] { picture.marks[0].count = 3; });
  EXPECT_LT(number.width(), letter * 0.6);
  EXPECT_NEAR(number.center().x(), plot.left() + 300, 4);
  EXPECT_NEAR(number.center().y(), topOf(2) + lane / 2.0, letter / 6.0);
}

TEST_F(TimelineDrawingPlaces, HasAShapeForEachKind) {
  // How a mark is filled near its four corners, in the middle of its sides and of its top.
  struct Shape {
    bool top, bottom, side;
  };
  for (const auto& [kind, shape] : {std::pair(TimelineKind::systemInstall, Shape{true, true, true}),
                                    {TimelineKind::securityUpdate, {true, false, true}},
                                    {TimelineKind::securityData, {false, false, true}},
                                    {TimelineKind::criticalUpdate, {false, false, true}}}) {
    picture.marks = {mark(static_cast<int>(kind), 300, 1000)};
    const QRectF place = placeAround({plot.left() + 300, topOf(static_cast<int>(kind)) + lane / 2.0});
    const QImage image = drawn();
    const QColor color = colorOf(kind);
    const auto isFilled = [&](double x, double y) {
      return image.pixelColor(static_cast<int>(x), static_cast<int>(y)) == color;
    };
    const int number = static_cast<int>(kind);
    EXPECT_EQ(isFilled(place.left() + 3, place.top() + 2), shape.top) << number;
    EXPECT_EQ(isFilled(place.right() - 3, place.top() + 2), shape.top) << number;
    EXPECT_EQ(isFilled(place.left() + 3, place.bottom() - 2), shape.bottom) << number;
    EXPECT_EQ(isFilled(place.right() - 3, place.bottom() - 2), shape.bottom) << number;
    EXPECT_EQ(isFilled(place.left() + 3, place.center().y()), shape.side) << number;
    EXPECT_EQ(isFilled(place.right() - 3, place.center().y()), shape.side) << number;
    EXPECT_TRUE(isFilled(place.left() + place.height() / 2 + 2, place.top() + 2)) << number;
    EXPECT_TRUE(isFilled(place.right() - place.height() / 2 - 2, place.top() + 2)) << number;
    EXPECT_TRUE(isFilled(place.left() + place.height() / 2 + 2, place.bottom() - 2)) << number;
    EXPECT_TRUE(isFilled(place.right() - place.height() / 2 - 2, place.bottom() - 2)) << number;
    // A quarter down, and up: between round and straight corners.
    const double quarter = place.height() / 4;
    const bool isRound = kind == TimelineKind::securityData;
    const bool isSquareAbove = shape.top;
    EXPECT_EQ(isFilled(place.left() + quarter * 0.6, place.top() + quarter), isRound || isSquareAbove)
        << number;
    EXPECT_EQ(isFilled(place.right() - quarter * 0.6, place.bottom() - quarter), isRound || shape.bottom)
        << number;
  }
}

TEST_F(TimelineDrawingPlaces, DrawsHollowMarksOfWhatMattersLess) {
  for (int kind = 0; kind < laneCount; ++kind) {
    picture.marks = {mark(kind, 300)};
    const QColor middle =
        drawn().pixelColor(static_cast<int>(plot.left() + 300), static_cast<int>(topOf(kind) + lane / 2.0));
    const bool isHollow = kind >= 4;
    EXPECT_EQ(middle,
              isHollow ? widget.palette().color(QPalette::Base) : colorOf(static_cast<TimelineKind>(kind)))
        << kind;
    const QRectF place = placeAround({plot.left() + 300, topOf(kind) + lane / 2.0});
    const QRect seen = drawnBy([&] { picture.marks.clear(); });
    // A single one is smaller, by one and a half of a tenth of a letter; a hollow one's line is drawn around
    // that.
    const double inset = letter / 10.0 * (isHollow ? 1 : 1.5);
    EXPECT_TRUE(isAbout(seen, place.adjusted(inset, inset, -inset, -inset).toAlignedRect())) << kind;
  }
}

TEST_F(TimelineDrawingPlaces, FramesWhatIsSelected) {
  picture.marks = {mark(2, 300), mark(2, 300)};
  const QRectF place = placeAround({plot.left() + 300, topOf(2) + lane / 2.0});
  const QRect frame = drawnBy([&] { picture.marks[0].isSelected = true; });
  const double out = letter / 10.0 * 1.75;
  EXPECT_TRUE(isAbout(frame, place.adjusted(-out, -out, out, out).toAlignedRect()));
  const int side = static_cast<int>(place.left() - letter / 10.0);
  const QImage image = drawn();
  EXPECT_EQ(image.pixelColor(side, static_cast<int>(place.center().y())),
            widget.palette().color(QPalette::Text));
  EXPECT_EQ(image.pixelColor(static_cast<int>(place.center().x()), static_cast<int>(place.center().y())),
            colorOf(TimelineKind::securityData))
      << "its inside stays";
  picture.marks[0].isSelected = false;
  picture.marks[1] = mark(2, 300 + letter * 0.8);
  picture.marks[0].isSelected = true;
  const QImage above = drawn();
  std::swap(picture.marks[0], picture.marks[1]);
  EXPECT_EQ(drawn(), above) << "above others, wherever it stands among them";
}

TEST_F(TimelineDrawingPlaces, WritesADateBesideAMarkOutside) {
  picture.marks = {mark(0, 0)};
  for (const TimelinePlace side : {TimelinePlace::before, TimelinePlace::after}) {
    picture.marks[0].place = side;
    picture.marks[0].date.clear();
    picture.marks[0].x = 500;
    const QRectF place = placeAround({plot.left() + 500, topOf(0) + lane / 2.0});
    const QRect date = drawnBy([&] { picture.marks[0].date = "1904-01-01"; });
    const double wide = width(QStringLiteral("1904-01-01")) * 0.85;
    EXPECT_NEAR(date.center().y(), place.center().y(), letter / 6.0);
    if (side == TimelinePlace::before) {
      EXPECT_LT(date.right(), place.left() - blank + 2);
      EXPECT_NEAR(date.left(), place.left() - blank - wide, letter);
    } else {
      EXPECT_NEAR(date.left(), place.right() + blank, 4);
      EXPECT_NEAR(date.right(), place.right() + blank + wide, letter);
    }
  }
}

TEST_F(TimelineDrawingPlaces, HasASignAndANameForEachLaneAndALineThroughIt) {
  const double left = widget.contentsRect().left();
  const QImage image = drawn();
  for (int kind = 0; kind < laneCount; ++kind) {
    const int y = static_cast<int>(topOf(kind) + lane / 2.0);
    const QRect name = drawnBy([&] {
      picture.lanes[static_cast<std::size_t>(kind)].name.clear();
      measure();
    });
    picture.lanes[static_cast<std::size_t>(kind)].name = "Lane";
    measure();
    EXPECT_NEAR(name.left(), left + letter * 2, 5) << kind;
    EXPECT_NEAR(name.right(), left + letter * 2 + width(QStringLiteral("Lane")), 5) << kind;
    EXPECT_NEAR(name.center().y(), y, letter / 4.0) << kind;
    EXPECT_LT(name.height(), letter);
    const QColor sign = image.pixelColor(static_cast<int>(left + letter), y);
    EXPECT_EQ(sign,
              kind < 4 ? colorOf(static_cast<TimelineKind>(kind)) : widget.palette().color(QPalette::Base))
        << kind;
    // Where the sign ends.
    const auto isGround = [&](double x, int row) {
      return image.pixelColor(static_cast<int>(x), row) == widget.palette().color(QPalette::Base);
    };
    EXPECT_TRUE(isGround(left + letter * 0.5, y)) << kind;
    EXPECT_TRUE(isGround(left + letter * 1.5, y)) << kind;
    EXPECT_FALSE(isGround(left + letter * 0.71, y)) << kind;
    EXPECT_FALSE(isGround(left + letter * 1.29, y)) << kind;
    // The line.
    const int row = static_cast<int>(std::floor(topOf(kind) + lane / 2.0));
    EXPECT_TRUE(isGround(plot.left() - 4, row)) << kind;
    EXPECT_NEAR(image.pixelColor(static_cast<int>(plot.left()) + 2, row).lightness(), 235, 15) << kind;
    EXPECT_FALSE(isGround(plot.right() - 2, row)) << kind;
    EXPECT_TRUE(isGround(plot.right() + 4, row)) << kind;
    EXPECT_TRUE(isGround(plot.left() + 20, row - 1)) << kind << ": it is thin";
    EXPECT_TRUE(isGround(plot.left() + 20, row + 1)) << kind;
  }
}

TEST_F(TimelineDrawingPlaces, CutsANameOfALaneThatIsTooWide) {
  picture.lanes[1].name = std::string(200, 'x');
  measure();
  const QRect name = drawnBy([&] {
    picture.lanes[1].name = std::string(200, 'y');
    measure();
  });
  EXPECT_LE(name.right(), plot.left() - blank - drawing.markWidth() / 2 + 1);
  EXPECT_GT(name.width(), widget.width() / 3 - 2 * letter);
}

TEST_F(TimelineDrawingPlaces, HasALineAndADateForEachTick) {
  const QRect tick = drawnBy([&] { picture.ticks = {{400.25, ""}}; });
  const int x = static_cast<int>(std::floor(plot.left() + 400.25));
  EXPECT_EQ(tick.left(), x);
  EXPECT_EQ(tick.right(), x) << "it is thin";
  EXPECT_NEAR(tick.top(), plot.top(), 1);
  EXPECT_NEAR(tick.bottom(), plot.bottom(), 1);
  const QRect label = drawnBy([&] { picture.ticks[0].label = "2019-01-01"; });
  EXPECT_NEAR(label.center().x(), x, 4);
  EXPECT_NEAR(label.width(), width(QStringLiteral("2019-01-01")), 8);
  EXPECT_NEAR(label.center().y(), plot.bottom() + lane / 2.0, letter / 6.0);
}

TEST_F(TimelineDrawingPlaces, WritesTheNextDateThatHasABlankBeforeIt) {
  const QString date = QStringLiteral("2019-01-01");
  const auto isWritten = [&](double x) {
    picture.ticks = {{400, date.toStdString()}, {x, ""}};
    return !drawnBy([&] { picture.ticks[1].label = "2020-01-01"; }).isEmpty();
  };
  EXPECT_FALSE(isWritten(400 + width(date) + blank - 2));
  EXPECT_TRUE(isWritten(400 + width(date) + blank + 2));
}

TEST_F(TimelineDrawingPlaces, HasTheLastDateAtTheRightEdgeAsAWhole) {
  picture.ticks = {{plot.width(), ""}};
  const QRect label = drawnBy([&] { picture.ticks[0].label = "2019-01-01"; });
  EXPECT_NEAR(label.right(), widget.contentsRect().right(), 4);
  EXPECT_NEAR(label.width(), width(QStringLiteral("2019-01-01")), 8);
}

TEST_F(TimelineDrawingPlaces, TintsEverySecondBandWithItsName) {
  EXPECT_TRUE(drawnBy([&] { picture.bands = {{100, 500, "", false}}; }).isEmpty());
  const QRect band = drawnBy([&] { picture.bands[0].isSecond = true; });
  EXPECT_TRUE(isNear(band, {plot.left() + 100, plot.top() - lane, 400, plot.height() + lane}));
  const QRect name = drawnBy([&] { picture.bands[0].name = "Mojave"; });
  EXPECT_NEAR(name.left(), plot.left() + 100 + blank / 2, 4);
  EXPECT_NEAR(name.width(), width(QStringLiteral("Mojave")), 8);
  EXPECT_NEAR(name.center().y(), plot.top() - lane / 2.0, letter / 4.0);
}

TEST_F(TimelineDrawingPlaces, CutsTheNameOfABandAndLeavesItOutWhereTooFewLettersRemain) {
  const double least = widget.fontMetrics().averageCharWidth() * 8 + blank;
  const auto name = [&](double wide) {
    picture.bands = {{100, 100 + wide, "", false}};
    return drawnBy([&] { picture.bands[0].name = "macOS Mojave 10.14.6 and more"; });
  };
  EXPECT_TRUE(name(least - 1).isEmpty());
  const QRect few = name(least + 1);
  EXPECT_FALSE(few.isEmpty());
  EXPECT_LE(few.right(), plot.left() + 100 + least + 1);
  const QRect more = name(300);
  EXPECT_LE(more.right(), plot.left() + 400 - blank / 2 + 1);
  EXPECT_GE(more.right(), plot.left() + 400 - blank / 2 - letter);
}

TEST_F(TimelineDrawingPlaces, WritesTheNameOfANextGroupWhereItHasRoomBehindTheOneBefore) {
  const QString first = QStringLiteral("macOS Mojave");
  const QString next = QStringLiteral("10.14.1");
  const auto isWritten = [&](double left, double right) {
    picture.bands = {
        {0, left, first.toStdString(), false}, {left, right, "", false}, {right, 1200, "", true}};
    return !drawnBy([&] { picture.bands[1].name = next.toStdString(); }).isEmpty();
  };
  const double free = width(first) + blank;
  const double needed = width(next) + blank;
  EXPECT_TRUE(isWritten(free + 2, free + 2 + needed + 2));
  EXPECT_FALSE(isWritten(free - 2, free + needed + 20));
  EXPECT_FALSE(isWritten(free + 2, free + 2 + needed - 4)) << "it isn't cut";
}

TEST_F(TimelineDrawingPlaces, GivesTheNameOfAReleaseTheRoomOfAllItsGroupsAndNoMore) {
  const auto end = [&](double second) {
    picture.bands = {{0, 30, "", true}, {30, second, "", true}, {second, 1000, "", false}};
    return drawnBy([&] { picture.bands[0].name = "macOS Mojave 10.14.6 and so on"; }).right() - plot.left();
  };
  EXPECT_LE(end(250), 250 - blank / 2 + 1);
  EXPECT_GT(end(250), 250 - blank / 2 - letter);
  EXPECT_GT(end(300), 250);
  picture.bands = {{0, 300, "A", true}, {300, 600, "", false}};
  EXPECT_FALSE(drawnBy([&] { picture.bands[1].name = "macOS Catalina"; }).isEmpty())
      << "of another release, though it isn't first";
}

TEST_F(TimelineDrawingPlaces, HatchesAGapAndTellsItOnceBelowItsMiddle) {
  const QRect hatched = drawnBy([&] { picture.gaps = {{200, 800, ""}}; });
  EXPECT_TRUE(isNear(hatched, {plot.left() + 200, topOf(2) + blank / 4, 600, lane - blank / 2}));
  const QRect words = drawnBy([&] { picture.gaps[0].words = "40 days"; });
  EXPECT_NEAR(words.center().x(), plot.left() + 500, 4);
  EXPECT_NEAR(words.width(), width(QStringLiteral("40 days")), 8) << "once";
  EXPECT_NEAR(words.center().y(), topOf(2) + lane + letter / 2.0, letter / 4.0);
}

TEST_F(TimelineDrawingPlaces, TellsGapsAtTheEdgesWithinThePlot) {
  const std::string words = "40 days without security data";
  const double wide = width(QString::fromStdString(words));
  picture.gaps = {{0, 10, ""}};
  EXPECT_NEAR(drawnBy([&] { picture.gaps[0].words = words; }).left(), plot.left(), 4);
  picture.gaps = {{plot.width() - 10, plot.width(), ""}};
  const QRect last = drawnBy([&] { picture.gaps[0].words = words; });
  EXPECT_NEAR(last.right(), plot.right(), 4);
  EXPECT_NEAR(last.width(), wide, 8);
}

TEST_F(TimelineDrawingPlaces, TellsAGapToOneSideWhereALongerOneIsInTheWay) {
  const std::string words = "40 days";
  const double wide = width(QString::fromStdString(words));
  const double half = 1.5 * wide;  // of the longer one's words
  const auto told = [&](double left, double length) {
    picture.gaps = {{left, left + length, ""}, {500, 900, "40 days 40 days 40 days"}};
    return drawnBy([&] { picture.gaps[0].words = words; });
  };
  const double taken = width(QStringLiteral("40 days 40 days 40 days")) / 2;
  EXPECT_LT(half - taken, wide);
  // Its middle has no room, but its right or its left end has.
  const QRect left = told(700 - taken - blank - wide - 1, 300);
  EXPECT_NEAR(left.left(), plot.left() + 700 - taken - blank - wide - 1, 4);
  const QRect right = told(700 + taken + blank + wide + 1 - 300, 300);
  EXPECT_NEAR(right.right(), plot.left() + 700 + taken + blank + wide + 1, 4);
  EXPECT_TRUE(told(650, 100).isEmpty());
  EXPECT_TRUE(told(700 - taken - blank - wide + 3, wide + 4).isEmpty()) << "there is a blank between them";
}

TEST_F(TimelineDrawingPlaces, TellsTheFirstOfTwoGapsOfOneLengthWhereOnlyOneHasRoom) {
  picture.gaps = {{500, 510, ""}, {515, 525, ""}};
  const auto isTold = [this](std::string& words) { return !drawnBy([&] { words = "40 days"; }).isEmpty(); };
  EXPECT_TRUE(isTold(picture.gaps[0].words));
  EXPECT_FALSE(isTold(picture.gaps[1].words));
}

TEST_F(TimelineDrawingPlaces, TellsWhatIsUnderAPoint) {
  picture.bands = {{0, 400, "Mojave", false}, {400, 1000, "Catalina", true}};
  picture.gaps = {{300, 350, "40 days"}};
  const double left = plot.left();
  const double middle = topOf(2) + lane / 2.0;
  EXPECT_EQ(wordsAt(left + 300, middle), "40 days");
  EXPECT_EQ(wordsAt(left + 349.5, middle), "40 days");
  EXPECT_EQ(wordsAt(left + 350, middle), "Mojave");
  EXPECT_EQ(wordsAt(left + 299.5, middle), "Mojave");
  EXPECT_EQ(wordsAt(left + 320, topOf(2)), "40 days");
  EXPECT_EQ(wordsAt(left + 320, topOf(2) - 0.5), "Mojave");
  EXPECT_EQ(wordsAt(left + 320, topOf(2) + lane + letter - 0.5), "40 days");
  EXPECT_EQ(wordsAt(left + 320, topOf(2) + lane + letter), "Mojave");
  EXPECT_EQ(wordsAt(left, plot.top() - lane + 0.5), "Mojave") << "at its name, too";
  EXPECT_EQ(wordsAt(left + 5, plot.top() - lane - 0.5), "");
  EXPECT_EQ(wordsAt(left + 5, plot.bottom() - 0.5), "Mojave");
  EXPECT_EQ(wordsAt(left + 5, plot.bottom() + 0.5), "") << "dates";
  EXPECT_EQ(wordsAt(left - 0.5, middle), "");
  EXPECT_EQ(wordsAt(left + 399.5, middle), "Mojave");
  EXPECT_EQ(wordsAt(left + 400, middle), "Catalina");
  EXPECT_EQ(wordsAt(left + 999.5, middle), "Catalina");
  EXPECT_EQ(wordsAt(left + 1000, middle), "");
}

TEST_F(TimelineDrawingPlaces, FillsItsContentsWithTheGroundAndLeavesTheFrameToOthers) {
  picture.lanes.clear();
  measure();
  const QImage image = drawn();
  const QRect inside = widget.contentsRect();
  EXPECT_EQ(image.pixelColor(inside.topLeft()), widget.palette().color(QPalette::Base));
  EXPECT_EQ(image.pixelColor(inside.bottomRight()), widget.palette().color(QPalette::Base));
  EXPECT_EQ(image.pixelColor(inside.topLeft() - QPoint(1, 1)), QColor(Qt::magenta));
}

}  // namespace
}  // namespace pelmarix::test
