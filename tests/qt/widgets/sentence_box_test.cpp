#include "qt/widgets/sentence_box.h"

#include <gtest/gtest.h>

namespace pelmarix::test {
namespace {

TEST(SentenceBox, TakesNothingForMarkupOrForAnEndOfLine) {
  const qt::SentenceBox box(nullptr, "/media/<b>Mac</b>\nOK\u202e doesn't exist.");
  EXPECT_EQ(box.textFormat(), Qt::PlainText);
  EXPECT_EQ(box.text(), QStringLiteral("/media/<b>Mac</b>\u240aOK\u21c4 doesn't exist."));
  EXPECT_EQ(box.windowTitle(), QStringLiteral("Pelmarix"));
}

TEST(SentenceBox, HasWhatIsWrongAtTheEndOfAVeryLongOne) {
  const qt::SentenceBox box(nullptr, "/" + std::string(1'000'000, 'x') + " doesn't exist.");
  EXPECT_EQ(box.text().size(), 1001);
  EXPECT_TRUE(box.text().startsWith(QStringLiteral("/xxx")));
  EXPECT_TRUE(box.text().endsWith(QStringLiteral("x doesn't exist.")));
}

TEST(SentenceBox, HasAllOfALongOne) {
  const std::string most(1000, 'x');
  EXPECT_EQ(qt::SentenceBox(nullptr, most).text().toStdString(), most);
  EXPECT_EQ(
      qt::SentenceBox(nullptr, most + "y").text(),
      QString(500, QLatin1Char('x')) + QChar(u'\u2026') + QString(499, QLatin1Char('x')) + QLatin1Char('y'));
}

}  // namespace
}  // namespace pelmarix::test
