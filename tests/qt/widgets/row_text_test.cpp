#include "qt/widgets/row_text.h"

#include <gtest/gtest.h>

#include <QMimeData>
#include <QStandardItemModel>
#include <memory>
#include <string>

namespace pelmarix::test {
namespace {

/// Two shelves with books.
class RowText : public testing::Test {
 protected:
  RowText() {
    const auto add = [](QStandardItem* parent, const char* name) {
      parent->appendRow({new QStandardItem(QLatin1String(name)), new QStandardItem(QStringLiteral("new"))});
      return parent->child(parent->rowCount() - 1);
    };
    first = add(model.invisibleRootItem(), "first");
    book = add(first, "book");
    otherBook = add(first, "other book");
    second = add(model.invisibleRootItem(), "second");
    lastBook = add(second, "last book");
  }

  static std::string text(const QModelIndexList& indexes) {
    return std::unique_ptr<QMimeData>(qt::rowsAsMimeData(indexes))->text().toStdString();
  }

  QStandardItemModel model;
  QStandardItem *first, *book, *otherBook, *second, *lastBook;
};

TEST_F(RowText, StandsInTheOrderOfAView) {
  EXPECT_EQ(text({second->index(), otherBook->index(), lastBook->index(), book->index(), first->index()}),
            "first\tnew\nbook\tnew\nother book\tnew\nsecond\tnew\nlast book\tnew\n");
}

TEST_F(RowText, LeavesOutTheRowsAboveThatAreNotAskedFor) {
  EXPECT_EQ(text({lastBook->index(), book->index()}), "book\tnew\nlast book\tnew\n");
  EXPECT_EQ(text({otherBook->index(), first->index()}), "first\tnew\nother book\tnew\n");
}

TEST_F(RowText, HasARowOnceWhicheverOfItsCellsAreGiven) {
  EXPECT_EQ(text({book->index().siblingAtColumn(1), book->index(), second->index(), book->index()}),
            "book\tnew\nsecond\tnew\n");
}

TEST_F(RowText, HasABlankForATabOrALineEndInsideACell) {
  book->setText(QStringLiteral("\ttabs\tand\nline\r\nends\v\f\u0085\u2028\u2029\u202e\u00a0"));
  EXPECT_EQ(text({book->index()}), " tabs and line  ends     \u202e\u00a0\tnew\n");
}

TEST_F(RowText, KeepsOtherControlsInsideACell) {
  book->setText(QStringLiteral("a\u0001b\u0008c\u000ed\u0086e"));
  EXPECT_EQ(text({book->index()}), "a\u0001b\u0008c\u000ed\u0086e\tnew\n");
}

TEST_F(RowText, DoesNotExistOfNoRows) { EXPECT_EQ(qt::rowsAsMimeData({}), nullptr); }

TEST_F(RowText, StaysAsItWasWhenTheRowsChange) {
  const std::unique_ptr<QMimeData> data(qt::rowsAsMimeData({book->index()}));
  book->setText(QStringLiteral("another"));
  model.clear();
  EXPECT_EQ(data->text().toStdString(), "book\tnew\n");
}

}  // namespace
}  // namespace pelmarix::test
