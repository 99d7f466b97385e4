#include "qt/widgets/row_delegate.h"

#include <gtest/gtest.h>

#include <QHelpEvent>
#include <QLocale>
#include <QTest>
#include <QToolTip>
#include <algorithm>
#include <cmath>
#include <string>

#include "qt/widgets/palette_colors.h"
#include "tests/qt/widgets/pictures.h"
#include "tests/qt/widgets/tree_fixture.h"

namespace pelmarix::test {
namespace {

std::string displayed(const QString& text) {
  return qt::RowDelegate().displayText(text, QLocale::c()).toStdString();
}

TEST(RowDelegate, IndentsATextForATabAtItsStart) {
  EXPECT_EQ(displayed(QStringLiteral("\tWord List")), "\u2003\u2003Word List");
  EXPECT_EQ(displayed(QStringLiteral("\t")), "\u2003\u2003");
}

TEST(RowDelegate, DrawsEverythingOnOneLine) {
  EXPECT_EQ(displayed(QStringLiteral("a\nb\rc\u2028d\u2029e\tf\u0001g")), "a b c d e f g");
  EXPECT_EQ(displayed(QString(QChar::Null)), " ");
  // Which parts shorter forms of a text for the toolkit when it cuts it off.
  EXPECT_EQ(displayed(QStringLiteral("a\u009cb")), "a b");
}

TEST(RowDelegate, HasASignForEachControlOfWritingDirection) {
  EXPECT_EQ(displayed(QStringLiteral("\tSecurity \u202eUpdate\u200f\u2066")),
            "\u2003\u2003Security \u21c4Update\u21c4\u21c4");
}

TEST(RowDelegate, DrawsOnlyTheBeginningOfAnEndlessText) {
  const std::string drawn = displayed(QString(10'000'000, QLatin1Char('x')));
  EXPECT_LT(drawn.size(), 10'000U);
  EXPECT_EQ(drawn.find_first_not_of('x'), std::string::npos) << drawn;
  EXPECT_EQ(drawn.size(), 2000U) << "which no column has room for";
}

class DrawnOutline : public OutlineOfATree {
 protected:
  QImage picture() {
    QApplication::processEvents();
    return widget.viewport()->grab().toImage();
  }
  // A group's name has the room of all columns.
  void setFirstColumnWidth(int width) {
    widget.setColumnWidth(0, width);
    widget.setColumnWidth(1, 60);
    widget.setColumnWidth(2, 60);
    QApplication::processEvents();
  }
  std::string tooltipOfCutOffName() {
    setFirstColumnWidth(60);
    return tooltipOfName();
  }
  std::string tooltipOfName() {
    const QPoint place = widget.visualRect(group(0)).center();
    QHelpEvent event(QEvent::ToolTip, place, widget.viewport()->mapToGlobal(place));
    QApplication::sendEvent(widget.viewport(), &event);
    return QToolTip::text().toStdString();
  }
  // As wide as the name of a group is drawn.
  int boldWidth(const std::string& text) const {
    QFont bold = widget.font();
    bold.setBold(true);
    return QFontMetrics(bold).horizontalAdvance(
        QString::fromStdString(displayed(QString::fromStdString(text))));
  }
  int firstDarkColumn(const QModelIndex& index) {
    const QRect cell = widget.visualRect(index);
    const QImage image = picture();
    for (int x = cell.left(); x <= cell.right(); ++x)
      for (int y = cell.top(); y <= cell.bottom(); ++y)
        if (image.pixelColor(x, y).lightness() < 100) return x - cell.left();
    return -1;
  }
};

TEST_F(DrawnOutline, SetsConfigurationDataApart) {
  catalina->children[0]->name = "Word List";
  outline.expandItem(catalina.get());
  widget.setFocusPolicy(Qt::NoFocus);
  ASSERT_GE(firstDarkColumn(entry(2, 0)), 0);
  EXPECT_GT(firstDarkColumn(entry(2, 1)),
            firstDarkColumn(entry(2, 0)) + widget.fontMetrics().averageCharWidth());
}

TEST_F(DrawnOutline, SetsConfigurationDataApartInAnyScript) {
  catalina->children[0]->name = "\u05d0\u05d1\u05d2";
  catalina->children[1]->name = "\t\u05d0\u05d1\u05d2";
  outline.expandItem(catalina.get());
  widget.setFocusPolicy(Qt::NoFocus);
  ASSERT_GE(firstDarkColumn(entry(2, 0)), 0);
  EXPECT_GT(firstDarkColumn(entry(2, 1)),
            firstDarkColumn(entry(2, 0)) + widget.fontMetrics().averageCharWidth());
}

TEST_F(DrawnOutline, KeepsTheVersionOfAGroupBehindItsNameInAnyScript) {
  for (const std::string name :
       {"Catalina \u05d0\u05d1\u05d2", "\u0627\u0628 Catalina \u0628", "\u05d0 Catalina \u202e\u05d1"}) {
    for (const std::string version : {"10.1", "\u0661\u0660", "\u05d2\u05d3", ".1"}) {
      mojave->children[0]->name = name;
      mojave->name = name + " " + version;
      const QImage before = picture();
      mojave->name += ".5";
      const QRect changed = changedPart(before, picture());
      const int begin = widget.visualRect(group(0)).left() + firstDarkColumn(group(0));
      EXPECT_GE(changed.left(), begin + boldWidth(name)) << mojave->name;
    }
  }
}

TEST_F(DrawnOutline, MarksMatches) {
  const QImage before = picture();
  widget.markMatches(QStringLiteral("jav"));
  const QRect changed = changedPart(before, picture());
  const QRect row = widget.visualRect(group(0));
  const int left = row.left() + firstDarkColumn(group(0)) + boldWidth("Mo");
  EXPECT_TRUE(row.contains(changed));
  EXPECT_TRUE(isAbout(changed, QRect(left, changed.top(), boldWidth("jav"), changed.height())));
  EXPECT_GE(changed.height(), QFontMetrics(widget.font()).height() - 2);
  widget.markMatches({});
  EXPECT_EQ(picture(), before);
}

TEST_F(DrawnOutline, MarksMatchesInASelectedRowByAFrame) {
  widget.setFocusPolicy(Qt::NoFocus);
  widget.selectionModel()->select(group(0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
  const QImage before = picture();
  widget.markMatches(QStringLiteral("jav"));
  const QImage after = picture();
  const QRect frame = changedPart(before, after);
  EXPECT_NEAR(frame.width(), boldWidth("jav"), 3);
  const QRect above(frame.left() + 2, frame.top() + 2, frame.width() - 4,
                    1);  // the letters, within the frame
  EXPECT_EQ(before.copy(above), after.copy(above));
}

TEST_F(DrawnOutline, HasItsLettersInTheMiddleOfARow) {
  for (const double size : {10.0, 24.0}) {
    QFont font = widget.font();
    font.setPointSizeF(size);
    widget.setFont(font);
    mojave->name = "";
    const QImage before = picture();
    mojave->name = "|";
    const QRect letters = changedPart(before, picture());
    const QRect row = widget.visualRect(group(0));
    EXPECT_TRUE(row.contains(letters));
    EXPECT_NEAR(letters.center().y(), row.center().y(), widget.fontMetrics().descent() / 2.0 + 1) << size;
    EXPECT_GE(row.height(), widget.fontMetrics().height());
  }
}

TEST_F(DrawnOutline, HasAMatchInViewThatWouldBeCutOff) {
  const QColor mark = qt::tintOfHighlight(widget.palette());
  const auto marksAre = [&](const char* text) {
    widget.markMatches(QLatin1String(text));
    const QImage image = picture();
    const QRect row = widget.visualRect(group(2));
    const QColor base = widget.palette().color(QPalette::Base);
    const float alpha = mark.alphaF();
    const float expected = mark.redF() * alpha + base.redF() * (1 - alpha);
    const int above =
        row.top() + (row.height() - QFontMetrics(widget.font()).height()) / 2 + 1;  // the letters
    int columns = 0;
    for (int x = row.left(); x <= row.right(); ++x)
      if (std::abs(image.pixelColor(x, above).redF() - expected) < 0.01F) ++columns;
    return columns;
  };
  const std::string filling(200, 'x');
  catalina->name = "Begin " + filling + "\U0001f600 Needle " + filling + " End";
  for (const char* const text : {"begin", "needle", "end"})
    EXPECT_GE(marksAre(text), boldWidth(text) - 2) << text;
  EXPECT_EQ(marksAre("haystack"), 0);
}

TEST_F(DrawnOutline, CutsTheMiddleOfALongNameWhileThatHidesNoMatch) {
  const std::string filling(200, 'x');
  for (const char* const sought : {"", "begin", "haystack"}) {
    widget.markMatches(QLatin1String(sought));
    catalina->name = "Begin " + filling + " end";
    const QImage before = picture();
    catalina->name.back() = 'g';
    EXPECT_FALSE(changedPart(before, picture()).isEmpty()) << sought;
  }
}

TEST_F(DrawnOutline, MarksMatchesInWritingFromRightToLeft) {
  mojave->children[0]->name = "Mojave \u05d0\u05d1\u05d2";
  mojave->name = mojave->children[0]->name + " 10.14";
  const QImage before = picture();
  const int begin = widget.visualRect(group(0)).left() + firstDarkColumn(group(0));
  const auto marked = [&](const QString& text) {
    widget.markMatches(text);
    return changedPart(before, picture());
  };
  const QRect letters = marked(QStringLiteral("\u05d0\u05d1"));
  const int right = begin + boldWidth("Mojave \u05d0\u05d1\u05d2");
  const int width = boldWidth("\u05d0\u05d1");
  EXPECT_TRUE(isAbout(letters, QRect(right - width, letters.top(), width, letters.height())));
  const QRect version = marked(QStringLiteral("10.14"));
  EXPECT_TRUE(
      isAbout(version, QRect(right + boldWidth(" "), letters.top(), boldWidth("10.14"), letters.height())));
  EXPECT_FALSE(marked(QStringLiteral("\u05d2 10")).isEmpty()) << "of both";
}

TEST_F(DrawnOutline, MarksAMatchAtTheBeginning) {
  mojave->name = "Xylo";
  const QImage before = picture();
  widget.markMatches(QStringLiteral("xy"));
  const QRect changed = changedPart(before, picture());
  const int left = widget.visualRect(group(0)).left() + firstDarkColumn(group(0));
  EXPECT_TRUE(isAbout(changed, QRect(left, changed.top(), boldWidth("Xy"), changed.height())));
}

TEST_F(DrawnOutline, MarksMatchesThatHoldAControlOfWritingDirection) {
  mojave->name = "Mo\u202ejave";
  const QImage before = picture();
  widget.markMatches(QStringLiteral("\u202eJA"));
  const QRect changed = changedPart(before, picture());
  const int left = widget.visualRect(group(0)).left() + firstDarkColumn(group(0)) + boldWidth("Mo");
  EXPECT_TRUE(isAbout(changed, QRect(left, changed.top(), boldWidth("\u21c4ja"), changed.height())));
  EXPECT_EQ(text(group(0)), "Mo\u202ejave");
}

TEST_F(DrawnOutline, TellsInATooltipWhatIsCutOffWithItsControlsVisible) {
  mojave->name = "A name that is too long \u202e<b>for</b> its cell";
  EXPECT_EQ(tooltipOfCutOffName(),
            "<p>\u2068"
            "A name that is too long \u21c4&lt;b&gt;for&lt;/b&gt; its cell\u2069</p>"
            "<p>What A name that is too long \u21c4&lt;b&gt;for&lt;/b&gt; its cell is</p>");
}

TEST_F(DrawnOutline, TellsInATooltipANameThatIsCutOffByAPoint) {
  mojave->name = "A name that is too long for its cell";
  const auto drawnIn = [this](int width) {
    setFirstColumnWidth(width);
    return picture().copy(widget.visualRect(group(0)).adjusted(0, 0, -2, 0));
  };
  int width = 60;
  setFirstColumnWidth(width);
  while (tooltipOfName().starts_with("<p>A name") && width < 1000) setFirstColumnWidth(++width);
  const QImage whole = drawnIn(width);
  EXPECT_EQ(drawnIn(width + 40).copy(whole.rect()), whole);
  const QImage cutOff = drawnIn(width - 1);
  EXPECT_NE(whole.copy(cutOff.rect()), cutOff);
}

TEST_F(DrawnOutline, AddsNothingToANameInATooltipThatNeedsNoDirection) {
  mojave->name = "A name that is too long for its cell";
  EXPECT_EQ(tooltipOfCutOffName(),
            "<p>A name that is too long for its cell</p><p>What A name that is too long for its cell is</p>");
}

TEST_F(DrawnOutline, SaysWhereWasLookedWhenItIsEmptyWithoutMakingRowsOfIt) {
  tree.groups.clear();
  reload();
  const QImage before = picture();
  widget.setPlaceholderText(QStringLiteral("Nothing was found"));
  EXPECT_NE(picture(), before);
  EXPECT_EQ(widget.model()->rowCount(), 0);
}

TEST_F(DrawnOutline, SaysAllOfItWhereItJustFits) {
  tree.groups.clear();
  reload();
  const auto letters = [this](int height) {
    widget.resize(widget.width(), widget.height() - widget.viewport()->height() + height);
    QApplication::processEvents();
    widget.setPlaceholderText({});
    const QImage before = picture();
    widget.setPlaceholderText(QStringLiteral("Nothing by that name was found"));
    return changedPart(before, picture()).size();
  };
  EXPECT_EQ(letters(widget.fontMetrics().height()), letters(200));
}

TEST_F(DrawnOutline, SaysItReadablyOnDarkWhereThePaletteNamesNoColourForIt) {
  tree.groups.clear();
  reload();
  widget.setPlaceholderText(QStringLiteral("Nothing was found"));
  QPalette dark;
  dark.setColor(QPalette::Base, Qt::black);
  dark.setColor(QPalette::Text, Qt::white);
  dark.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
  widget.setPalette(dark);
  const QImage image = picture();
  int lightest = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) lightest = std::max(lightest, image.pixelColor(x, y).lightness());
  EXPECT_GT(lightest, 120);
  EXPECT_LT(lightest, 200) << "fainter than a row";
}

TEST_F(DrawnOutline, ToggleAGroupByReturn) {
  widget.setCurrentIndex(group(0));
  QTest::keyClick(&widget, Qt::Key_Return);
  EXPECT_TRUE(widget.isExpanded(group(0)));
  QTest::keyClick(&widget, Qt::Key_Enter);
  EXPECT_FALSE(widget.isExpanded(group(0)));
  QTest::keyClick(&widget, Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_TRUE(widget.isExpanded(group(0)));
  QTest::keyClick(&widget, Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_TRUE(widget.isExpanded(group(0)));
  QTest::keyClick(&widget, Qt::Key_Left);
  EXPECT_FALSE(widget.isExpanded(group(0)));
  QTest::keyClick(&widget, Qt::Key_Right);
  EXPECT_TRUE(widget.isExpanded(group(0)));
  widget.setCurrentIndex(entry(0, 0));
  QTest::keyClick(&widget, Qt::Key_Return);
  EXPECT_TRUE(widget.isExpanded(group(0)));
}

}  // namespace
}  // namespace pelmarix::test
