#include "qt/widgets/row_delegate.h"

#include <gtest/gtest.h>

#include <QLocale>
#include <QTest>
#include <algorithm>
#include <string>

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
}

TEST(RowDelegate, DrawsOnlyTheBeginningOfAnEndlessText) {
  EXPECT_LT(displayed(QString(10'000'000, QLatin1Char('x'))).size(), 10'000U);
}

class DrawnOutline : public OutlineOfATree {
 protected:
  QImage picture() {
    QApplication::processEvents();
    return widget.viewport()->grab().toImage();
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

TEST_F(DrawnOutline, MarksMatches) {
  const QImage before = picture();
  widget.markMatches(QStringLiteral("jav"));
  const QRect changed = changedPart(before, picture());
  QFont bold = widget.font();
  bold.setBold(true);
  const QFontMetrics letters(bold);
  const QRect row = widget.visualRect(group(0));
  const int left = row.left() + firstDarkColumn(group(0)) + letters.horizontalAdvance(QStringLiteral("Mo"));
  const int width = letters.horizontalAdvance(QStringLiteral("jav"));
  EXPECT_TRUE(row.contains(changed));
  EXPECT_TRUE(isAbout(changed, QRect(left, changed.top(), width, changed.height())));
  EXPECT_GE(changed.height(), letters.height() - 2);
  widget.markMatches({});
  EXPECT_EQ(picture(), before);
}

TEST_F(DrawnOutline, SaysWhereWasLookedWhenItIsEmptyWithoutMakingRowsOfIt) {
  tree.groups.clear();
  reload();
  const QImage before = picture();
  widget.setPlaceholderText(QStringLiteral("Nothing was found"));
  EXPECT_NE(picture(), before);
  EXPECT_EQ(widget.model()->rowCount(), 0);
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
}

TEST_F(DrawnOutline, ToggleAGroupByReturn) {
  widget.setCurrentIndex(group(0));
  QTest::keyClick(&widget, Qt::Key_Return);
  EXPECT_TRUE(widget.isExpanded(group(0)));
  QTest::keyClick(&widget, Qt::Key_Enter);
  EXPECT_FALSE(widget.isExpanded(group(0)));
  QTest::keyClick(&widget, Qt::Key_Right);
  EXPECT_TRUE(widget.isExpanded(group(0)));
  widget.setCurrentIndex(entry(0, 0));
  QTest::keyClick(&widget, Qt::Key_Return);
  EXPECT_TRUE(widget.isExpanded(group(0)));
}

}  // namespace
}  // namespace pelmarix::test
