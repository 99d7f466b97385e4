// How large the windows are, and what stands where.
#include <gmock/gmock.h>

#include <QAccessible>
#include <QLabel>
#include <QLayout>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QTreeWidget>
#include <algorithm>

#include "qt/window/open_volume_dialog.h"
#include "tests/qt/window/main_interface_fixture.h"

namespace pelmarix::test {
namespace {

/// Letters of the whole program, for as long as it lives.
class Letters final {
 public:
  explicit Letters(double points) {
    QFont font = before_;
    font.setPointSizeF(points);
    QApplication::setFont(font);
  }
  ~Letters() { QApplication::setFont(before_); }
  Letters(const Letters&) = delete;
  Letters& operator=(const Letters&) = delete;

 private:
  QFont before_ = QApplication::font();
};

class PlacesInTheWindow : public MainInterface {
 protected:
  QRect placeOf(const QWidget& widget) { return {widget.mapTo(&window(), QPoint()), widget.size()}; }
  void resize(QSize size) {
    window().resize(size);
    QApplication::processEvents();
    ASSERT_EQ(window().size(), size);
  }
};

QSize mostOf(const QWidget& widget) { return widget.screen()->availableSize() * 9 / 10; }

TEST_F(PlacesInTheWindow, HasRoomForItsListsAndSomeLinesInTheSizeOfItsLetters) {
  const Letters small(4);
  const qt::MainWindow plain;
  const QSize wanted(plain.fontMetrics().averageCharWidth() * 196, plain.fontMetrics().lineSpacing() * 54);
  EXPECT_EQ(plain.size(), wanted.boundedTo(mostOf(plain)));
  EXPECT_EQ(plain.height(), wanted.height()) << "less than the screen has";
  const Letters smallest(1);
  const qt::MainWindow narrow;
  EXPECT_EQ(narrow.width(), narrow.fontMetrics().averageCharWidth() * 196);
  const Letters large(24);
  EXPECT_EQ(qt::MainWindow().size(), mostOf(plain));
}

TEST_F(PlacesInTheWindow, ReadsItsPartsToAScreenReaderFromTheTopAndFromTheLeft) {
  show();
  for (const char* name : {"listSplitter", "mainSplitter"}) {
    auto& splitter = find<QSplitter>(name);
    ASSERT_GE(splitter.count(), 2);
    for (int part = 1; part < splitter.count(); ++part)
      EXPECT_LT(splitter.children().indexOf(splitter.widget(part - 1)),
                splitter.children().indexOf(splitter.widget(part)))
          << name << part;
  }
  const QAccessibleInterface& accessible = *QAccessible::queryAccessibleInterface(&window());
  EXPECT_EQ(accessible.child(0)->role(), QAccessible::MenuBar);
}

TEST_F(PlacesInTheWindow, ShowsTheTimelineFromFortyLinesOn) {
  show();
  const int least = window().fontMetrics().lineSpacing() * 40;
  resize({1200, least});
  EXPECT_TRUE(find<QWidget>("timeline").isVisible());
  resize({1200, least - 1});
  EXPECT_FALSE(find<QWidget>("timeline").isVisible());
}

TEST_F(PlacesInTheWindow, HasItsStatusInLineWithWhatStandsAboveIt) {
  show();
  resize({1200, 700});
  auto& bar = find<QStatusBar>("statusBar");
  QList<QLabel*> labels = bar.findChildren<QLabel*>();
  std::sort(labels.begin(), labels.end(), [](auto* label, auto* other) { return label->x() < other->x(); });
  ASSERT_EQ(labels.size(), 3);
  const QStyle& style = *bar.style();
  EXPECT_EQ(bar.contentsMargins(), QMargins(style.pixelMetric(QStyle::PM_LayoutLeftMargin), 0,
                                            style.pixelMetric(QStyle::PM_LayoutRightMargin), 0));
  EXPECT_NEAR(placeOf(*labels[0]).left(), placeOf(outline()).left(), 3);
  EXPECT_NEAR(placeOf(*labels[2]).right(), placeOf(table()).right(), 6);
  const int letter = bar.fontMetrics().averageCharWidth();
  EXPECT_EQ(labels[2]->contentsMargins(), QMargins(2 * letter, 0, 0, 0))
      << "what is on its left is set apart";
  EXPECT_EQ(labels[0]->minimumWidth(), 20 * letter);
  EXPECT_GT(labels[0]->width(), labels[1]->width()) << "what the others leave";
  EXPECT_FALSE(bar.isSizeGripEnabled());
}

TEST_F(PlacesInTheWindow, HasSheetsAlmostAsLargeAsItself) {
  show();
  resize({1100, 700});
  table().selectRow(0);
  click("showBillOfMaterials");
  EXPECT_EQ(sheet()->size(), QSize(990, 630));
  sheet()->close();
  finishClosing();
  choose("actionFindFile");
  const auto& search = *window().findChild<qt::FileSearchSheet*>();
  EXPECT_EQ(search.size(), QSize(990, 630));
  EXPECT_EQ(search.findChild<QLayout*>(QStringLiteral("statusLayout"))->spacing(),
            2 * search.fontMetrics().averageCharWidth());
}

TEST_F(PlacesInTheWindow, HasAnIconOfFourLinesInItsAboutBox) {
  show();
  QPixmap drawing(400, 400);
  drawing.fill(Qt::red);
  window().setWindowIcon(drawing);
  choose("actionAbout");
  const auto& box = *window().findChild<QDialog*>(QStringLiteral("AboutBox"));
  const int side = 4 * box.fontMetrics().height();
  EXPECT_EQ(find<QLabel>("icon").pixmap().deviceIndependentSize(), QSizeF(side, side));
}

TEST_F(PlacesInTheWindow, ListsVolumesInRoomForTheirNamesAndPaths) {
  const auto opener = [](const auto&, QWidget*) { return true; };
  QWidget parent;
  const QList<qt::MacVolume> volumes{{QStringLiteral("Macintosh HD"), QStringLiteral("/media/Macintosh HD")},
                                     {QStringLiteral("Old"), QStringLiteral("/mnt/old")}};
  const Letters small(4);
  const qt::OpenVolumeDialog dialog(&parent, volumes, opener);
  const int letter = dialog.fontMetrics().averageCharWidth();
  const QSize wanted(letter * 90, dialog.fontMetrics().lineSpacing() * 18);
  EXPECT_EQ(dialog.size(), wanted);
  auto& list = *dialog.findChild<QTreeWidget*>(QStringLiteral("volumes"));
  EXPECT_EQ(list.columnWidth(0), letter * 30);
  EXPECT_EQ(list.topLevelItem(0)->toolTip(0), QStringLiteral("Macintosh HD"));
  EXPECT_EQ(list.topLevelItem(0)->toolTip(1), QStringLiteral("/media/Macintosh HD"));
  EXPECT_EQ(list.currentItem(), list.topLevelItem(0));
  EXPECT_EQ(dialog.focusWidget(), &list);
  const Letters large(40);
  EXPECT_EQ(qt::OpenVolumeDialog(&parent, volumes, opener).width(), mostOf(dialog).width());
}

}  // namespace
}  // namespace pelmarix::test
