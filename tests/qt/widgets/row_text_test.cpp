#include "qt/widgets/row_text.h"

#include <gtest/gtest.h>

#include <QMimeData>
#include <QStandardItemModel>
#include <memory>
#include <string>

namespace pelmarix::test {
namespace {

/// Two shelves with two books each; the first book has two chapters.
class RowText : public testing::Test {
 protected:
  RowText() {
    const auto add = [](QStandardItem* parent, const char* name) {
      parent->appendRow({new QStandardItem(QLatin1String(name)), new QStandardItem(QStringLiteral("new"))});
      return parent->child(parent->rowCount() - 1);
    };
    first = add(model.invisibleRootItem(), "first");
    book = add(first, "book");
    chapter = add(book, "chapter");
    lastChapter = add(book, "last chapter");
    otherBook = add(first, "other book");
    second = add(model.invisibleRootItem(), "second");
    lastBook = add(second, "last book");
  }

  static std::string text(const QModelIndexList& indexes) {
    return std::unique_ptr<QMimeData>(qt::rowsAsMimeData(indexes))->text().toStdString();
  }

  QStandardItemModel model;
  QStandardItem *first, *book, *chapter, *lastChapter, *otherBook, *second, *lastBook;
};

TEST_F(RowText, StandsInTheOrderOfAViewHoweverDeepARowIs) {
  EXPECT_EQ(text({second->index(), otherBook->index(), lastChapter->index(), lastBook->index(),
                  chapter->index(), book->index(), first->index()}),
            "first\tnew\nbook\tnew\nchapter\tnew\nlast chapter\tnew\nother book\tnew\nsecond\tnew\nlast "
            "book\tnew\n");
}

TEST_F(RowText, LeavesOutTheRowsAboveThatAreNotAskedFor) {
  EXPECT_EQ(text({lastBook->index(), chapter->index()}), "chapter\tnew\nlast book\tnew\n");
  EXPECT_EQ(text({otherBook->index(), chapter->index(), first->index()}),
            "first\tnew\nchapter\tnew\nother book\tnew\n");
}

TEST_F(RowText, HasARowOnceWhicheverOfItsCellsAreGiven) {
  EXPECT_EQ(text({book->index().siblingAtColumn(1), book->index(), second->index(), book->index()}),
            "book\tnew\nsecond\tnew\n");
}

TEST_F(RowText, DoesNotExistOfNoRows) { EXPECT_EQ(qt::rowsAsMimeData({}), nullptr); }

TEST_F(RowText, StaysAsItWasWhenTheRowsChange) {
  const std::unique_ptr<QMimeData> data(qt::rowsAsMimeData({chapter->index()}));
  chapter->setText(QStringLiteral("another"));
  model.clear();
  EXPECT_EQ(data->text().toStdString(), "chapter\tnew\n");
}

}  // namespace
}  // namespace pelmarix::test
