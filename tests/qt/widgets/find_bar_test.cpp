#include "qt/widgets/find_bar.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPalette>

namespace pelmarix::qt {
namespace {

QColor placeholderIn(const QWidget& bar) {
  return bar.findChild<QLineEdit*>()->palette().color(QPalette::PlaceholderText);
}

TEST(FindBarColors, FollowThePaletteWhereItNamesNoReadableOne) {
  QWidget window;
  FindBar bar(&window);
  QPalette palette;
  for (const QColor text : {Qt::white, Qt::black, Qt::yellow}) {
    palette.setColor(QPalette::Base, text == Qt::black ? Qt::white : Qt::black);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
    window.setPalette(palette);
    const QColor placeholder = placeholderIn(bar);
    EXPECT_EQ(placeholder.rgb(), text.rgb()) << text.name().toStdString();
    EXPECT_LT(placeholder.alpha(), 255);
  }
}

}  // namespace
}  // namespace pelmarix::qt
