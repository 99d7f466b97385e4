#include "qt/widgets/elided_label.h"

#include <gtest/gtest.h>

#include <QHelpEvent>
#include <QTest>
#include <QToolTip>

namespace pelmarix::qt {
namespace {

class ElidedLabelOnScreen : public testing::Test {
 protected:
  ElidedLabelOnScreen() {
    label.setText(text);
    label.resize(label.sizeHint());
    label.show();
  }
  QImage picture() { return label.grab().toImage(); }
  QString tip() {
    QToolTip::hideText();
    QHelpEvent event(QEvent::ToolTip, QPoint(2, 2), label.mapToGlobal(QPoint(2, 2)));
    EXPECT_TRUE(QApplication::sendEvent(&label, &event)) << "or its parent would show one of its own";
    return QToolTip::text();
  }

  const QString text = QStringLiteral("com.example.<b>pkg</b>.Core");
  ElidedLabel label;
};

TEST_F(ElidedLabelOnScreen, IsALabelLikeOthersWhereThereIsRoom) {
  QLabel plain(text);
  plain.setTextFormat(Qt::PlainText);
  for (const int height : {label.height(), 3 * label.height()}) {
    label.resize(label.width(), height);
    plain.resize(label.size());
    EXPECT_EQ(picture(), plain.grab().toImage());
  }
  EXPECT_EQ(tip(), QString());
}

TEST_F(ElidedLabelOnScreen, TakesTheRoomThereIsAndNeedsThatOfTenLetters) {
  EXPECT_EQ(label.minimumSizeHint().width(), 10 * label.fontMetrics().averageCharWidth());
  EXPECT_EQ(label.sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
}

TEST_F(ElidedLabelOnScreen, LeavesItsMiddleOutWhereThereIsNoRoomAndHasATooltipOfAll) {
  label.resize(label.width() / 2, label.height());
  EXPECT_GE(label.width(), label.minimumSizeHint().width());
  QLabel plain(label.fontMetrics().elidedText(text, Qt::ElideMiddle, label.width()));
  plain.resize(label.size());
  EXPECT_EQ(picture(), plain.grab().toImage());
  EXPECT_EQ(tip(), QStringLiteral("<p>com.example.&lt;b&gt;pkg&lt;/b&gt;.Core</p>"));
}

}  // namespace
}  // namespace pelmarix::qt
