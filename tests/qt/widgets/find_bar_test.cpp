#include "qt/widgets/find_bar.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <string>

#include "qt/widgets/palette_colors.h"
#include "qt/widgets/plain_text_view.h"

namespace pelmarix::qt {
namespace {

QColor placeholderIn(const QWidget& bar) {
  return bar.findChild<QLineEdit*>()->palette().color(QPalette::PlaceholderText);
}

TEST(FindBarColors, FollowThePaletteWhereItNamesNoReadableOne) {
  QWidget window;
  FindBar bar(&window);
  EXPECT_EQ(placeholderIn(bar), placeholderColor(bar.palette()));
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

/// A window with two texts to search.
class FindBarInAWindow : public testing::Test {
 protected:
  FindBarInAWindow() {
    report.showText(platform::shareText("Mail\nSafari\nMail\nSafari\nMail\n"));
    for (PlainTextView* text : {&report, &other}) text->resize(300, 200);
    other.move(0, 200);
    bar.move(0, 400);
    window.resize(600, 500);
    window.show();
    window.activateWindow();
    QApplication::processEvents();
    report.setAccessibleName(QStringLiteral("Report"));
    other.setAccessibleName(QStringLiteral("Other"));
    bar.addPart(report, report);
    bar.addPart(other, other);
    plain = picture();
  }

  QImage picture() {
    other.setFocus();  // a text that has the focus shows its caret
    return report.viewport()->grab().toImage();
  }
  /// Opens the bar and types.
  void find(const char* text) {
    bar.open();
    QTest::keyClicks(line, QLatin1String(text));
    report.select(0, 0);  // so that a selection makes no difference between pictures
  }
  void pressReturnOn(const char* name) {
    auto* button = bar.findChild<QPushButton*>(QLatin1String(name));
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Return);
  }
  std::size_t foundLine() const { return report.index().lineAt(report.caret()); }

  QWidget window;
  PlainTextView report{&window}, other{&window};
  FindBar bar{&window};
  QLineEdit* line = bar.findChild<QLineEdit*>();
  QLabel* outcome = bar.findChild<QLabel*>();
  QCheckBox* allParts = bar.findChild<QCheckBox*>();
  QImage plain;
};

TEST_F(FindBarInAWindow, ComesWithItsLastTextSelectedWhenItIsOpenedOrTheNextMatchIsWanted) {
  EXPECT_FALSE(bar.isVisible());
  bar.findNext();
  EXPECT_TRUE(bar.isVisible()) << "there is nothing yet to look for";
  EXPECT_TRUE(line->hasFocus());
  EXPECT_EQ(line->placeholderText(), QStringLiteral("Find in Report"));
  find("safari");
  QTest::keyClick(line, Qt::Key_Escape);
  bar.open();
  EXPECT_EQ(line->selectedText(), QStringLiteral("safari"));
  line->deselect();
  bar.open();
  EXPECT_EQ(line->selectedText(), QStringLiteral("safari")) << "where it has the keyboard already, too";
  EXPECT_EQ(line->findChild<QToolButton*>()->accessibleName(), QStringLiteral("Clear"));
}

TEST_F(FindBarInAWindow, LeavesOtherKeysToOthers) {
  QKeyEvent event(QEvent::KeyPress, Qt::Key_F5, Qt::NoModifier);
  QApplication::sendEvent(&bar, &event);
  EXPECT_FALSE(event.isAccepted());
}

TEST_F(FindBarInAWindow, GoesToTheNextAndThePreviousMatchByReturnOnTheButtons) {
  find("mail");
  pressReturnOn("next");
  EXPECT_EQ(foundLine(), 0U);
  pressReturnOn("next");
  EXPECT_EQ(foundLine(), 2U);
  pressReturnOn("previous");
  EXPECT_EQ(foundLine(), 0U);
  EXPECT_TRUE(bar.isVisible());
}

TEST_F(FindBarInAWindow, EndsTheSearchByReturnOnDone) {
  find("safari");
  pressReturnOn("done");
  EXPECT_FALSE(bar.isVisible());
  EXPECT_TRUE(report.hasFocus());
  find("safari");
  bar.setPart(other);
  QTest::keyClick(line, Qt::Key_Escape);
  EXPECT_TRUE(other.hasFocus()) << "which was searched";
}

TEST_F(FindBarInAWindow, TellsNoOutcomeOfAPartThatWasNotSearched) {
  find("mail");
  bar.setPart(other);
  QApplication::processEvents();
  EXPECT_EQ(outcome->text(), QString());
}

TEST_F(FindBarInAWindow, GoesForwardByReturnInTheTextAndBackWithShift) {
  find("mail");
  QTest::keyClick(line, Qt::Key_Return);
  EXPECT_EQ(foundLine(), 0U);
  QTest::keyClick(line, Qt::Key_Enter);
  EXPECT_EQ(foundLine(), 2U);
  QTest::keyClick(line, Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(foundLine(), 0U);
}

TEST_F(FindBarInAWindow, TellsThatNothingWasFoundAlsoToAScreenReader) {
  const QString usualDescription = line->accessibleDescription();
  find("notes");
  EXPECT_EQ(outcome->text(), QStringLiteral("Not found in Report"));
  EXPECT_EQ(line->accessibleDescription(), QStringLiteral("Not found in Report"));
  line->setText(QStringLiteral("mail"));
  EXPECT_EQ(outcome->text(), QString());
  EXPECT_EQ(line->accessibleDescription(), usualDescription);
  line->setText(QStringLiteral("notes"));
  bar.setPart(other);
  EXPECT_EQ(outcome->text(), QString());
  EXPECT_EQ(line->accessibleDescription(), usualDescription);
}

TEST_F(FindBarInAWindow, TellsAloudWhatWasFoundAndThatNothingWas) {
  report.showText(platform::shareText("Mail\nSafari 12\nMail\n" + std::string(1'000'000, 'x') + "Safari 13"));
  bar.open();
  QAccessibleInterface& notification = *QAccessible::queryAccessibleInterface(bar.findChild<Announcer*>());
  EXPECT_EQ(notification.role(), QAccessible::Notification);
  const auto told = [&](const char* expectedOutcome) {
    EXPECT_TRUE(QTest::qWaitFor([&] { return outcome->text() == QLatin1String(expectedOutcome); }));
    return notification.text(QAccessible::Name).toStdString();
  };
  QTest::keyClicks(line, QStringLiteral("fari"));
  EXPECT_EQ(told("Report: 1 of 2"), "Safari 12. Report: 1 of 2");
  QTest::keyClick(line, Qt::Key_Return);
  EXPECT_EQ(told("Report: 2 of 2"), "fari 13. Report: 2 of 2");
  line->setText(QStringLiteral("notes"));
  EXPECT_EQ(told("Not found in Report"), "Not found in Report");
  line->setText(QStringLiteral("xxxx"));
  const std::string endless = told("Report: 1 of 250000");
  EXPECT_TRUE(endless.starts_with("xxxxx"));
  EXPECT_EQ(endless, std::string(1000, 'x') + ". Report: 1 of 250000") << "nobody listens for longer";
}

TEST_F(FindBarInAWindow, CountsTheMatchesAlsoForAScreenReader) {
  find("mail");
  EXPECT_TRUE(QTest::qWaitFor([this] { return outcome->text() == QStringLiteral("Report: 3 matches"); }));
  EXPECT_EQ(line->accessibleDescription(), QStringLiteral("Report: 3 matches"));
  EXPECT_EQ(QAccessible::queryAccessibleInterface(bar.findChild<Announcer*>())->text(QAccessible::Name),
            QStringLiteral("Report: 3 matches"))
      << "none is selected";
  line->setText(QStringLiteral("Mail\u00a0"));
  EXPECT_EQ(outcome->text(), QStringLiteral("Not found in Report"));
  line->setText(QStringLiteral("R"));
  EXPECT_TRUE(QTest::qWaitFor([this] { return outcome->text() == QStringLiteral("Report: 1 of 2"); }));
  QObject::connect(&report, &PlainTextView::textChanged, &bar, &FindBar::countMatches);
  report.showText(platform::shareText("Safari"));
  EXPECT_EQ(outcome->text(), QStringLiteral("Report: 1 match"));
  report.showText(platform::shareText("Mail"));
  EXPECT_EQ(outcome->text(), QStringLiteral("Not found in Report"));
  line->clear();
  EXPECT_EQ(outcome->text(), QString());
}

TEST_F(FindBarInAWindow, TellsWhichMatchOfHowManyIsSelected) {
  find("mail");
  QTest::keyClick(line, Qt::Key_Return);
  QTest::keyClick(line, Qt::Key_Return);
  EXPECT_TRUE(QTest::qWaitFor([this] { return outcome->text() == QStringLiteral("Report: 2 of 3"); }));
  QTest::keyClick(line, Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_TRUE(QTest::qWaitFor([this] { return outcome->text() == QStringLiteral("Report: 1 of 3"); }));
}

TEST_F(FindBarInAWindow, SearchesOnePartUnlessAllAreToBeSearched) {
  other.showText(platform::shareText("Mail\nMaps\n"));
  find("maps");
  EXPECT_EQ(outcome->text(), QStringLiteral("Not found in Report"));
  EXPECT_EQ(line->placeholderText(), QStringLiteral("Find in Report"));
  QTest::keyClick(line, Qt::Key_A, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([this] { return allParts->isChecked(); }));
  EXPECT_EQ(window.focusWidget(), line) << "so that one types on";
  EXPECT_EQ(other.index().part(other.selection()), "Maps");
  EXPECT_EQ(line->placeholderText(), QStringLiteral("Find in all parts"));
  EXPECT_TRUE(
      QTest::qWaitFor([this] { return outcome->text() == QStringLiteral("Other: 1 of 1, 1 in all"); }));
  line->setText(QStringLiteral("notes"));
  EXPECT_EQ(outcome->text(), QStringLiteral("Not found in any part"));
  allParts->click();
  EXPECT_EQ(outcome->text(), QStringLiteral("Not found in Other"));
}

TEST_F(FindBarInAWindow, GoesThroughAllPartsOneAfterTheOtherInBothDirections) {
  other.showText(platform::shareText("Maps\nMail\nSafari\nMail"));
  find("mail");
  allParts->click();
  const auto goTo = [this](Qt::KeyboardModifiers modifiers, const QString& expected) {
    line->setFocus();
    QTest::keyClick(line, Qt::Key_Return, modifiers);
    EXPECT_TRUE(QTest::qWaitFor([&] { return outcome->text() == expected + QStringLiteral(", 5 in all"); }))
        << outcome->text().toStdString();
  };
  goTo({}, QStringLiteral("Report: 2 of 3"));
  goTo({}, QStringLiteral("Report: 3 of 3"));
  goTo({}, QStringLiteral("Other: 1 of 2"));
  goTo({}, QStringLiteral("Other: 2 of 2"));
  goTo({}, QStringLiteral("Report: 1 of 3"));
  goTo(Qt::ShiftModifier, QStringLiteral("Other: 2 of 2"));
  goTo(Qt::ShiftModifier, QStringLiteral("Other: 1 of 2"));
  goTo(Qt::ShiftModifier, QStringLiteral("Report: 3 of 3"));
}

TEST_F(FindBarInAWindow, GoesThroughThreePartsInTheirOrderAndPastThoseWithoutAMatch) {
  PlainTextView third(&window);
  third.setAccessibleName(QStringLiteral("Third"));
  third.show();
  bar.addPart(third, third);
  other.showText(platform::shareText("Mail"));
  third.showText(platform::shareText("Mail"));
  report.showText(platform::shareText("Mail"));
  find("mail");
  allParts->click();
  const auto goTo = [this](Qt::KeyboardModifiers modifiers, const char* part, int all) {
    line->setFocus();
    QTest::keyClick(line, Qt::Key_Return, modifiers);
    const QString expected = QStringLiteral("%1: 1 of 1, %2 in all").arg(QLatin1String(part)).arg(all);
    EXPECT_TRUE(QTest::qWaitFor([&] { return outcome->text() == expected; })) << expected.toStdString();
  };
  for (const char* const part : {"Other", "Third", "Report", "Other"}) goTo({}, part, 3);
  for (const char* const part : {"Report", "Third", "Other"}) goTo(Qt::ShiftModifier, part, 3);
  third.showText(platform::shareText("Safari"));
  for (const char* const part : {"Report", "Other", "Report"}) goTo({}, part, 2);
  other.showText(platform::shareText("Safari"));
  for (const auto modifiers : {Qt::NoModifier, Qt::ShiftModifier}) goTo(modifiers, "Report", 1);
}

TEST_F(FindBarInAWindow, KeepsItsOutcomeForTheSamePartAndForAWidgetThatIsNone) {
  find("notes");
  bar.setPart(report);
  bar.setPart(window);
  EXPECT_EQ(outcome->text(), QStringLiteral("Not found in Report"));
  EXPECT_EQ(line->placeholderText(), QStringLiteral("Find in Report"));
}

TEST_F(FindBarInAWindow, CountsNothingWhereNothingIsSought) {
  bar.open();
  bar.countMatches();
  EXPECT_EQ(outcome->text(), QString());
  find("mail");
  QTest::keyClick(line, Qt::Key_Escape);
  bar.countMatches();
  EXPECT_EQ(outcome->text(), QString()) << "it is closed";
}

TEST_F(FindBarInAWindow, MarksTheMatchesOfAllPartsWhereAllAreSearched) {
  find("safari");
  bar.setPart(other);
  EXPECT_EQ(picture(), plain);
  allParts->click();
  report.select(0, 0);
  EXPECT_NE(picture(), plain);
  QTest::keyClick(line, Qt::Key_Escape);
  EXPECT_EQ(picture(), plain);
}

TEST_F(FindBarInAWindow, OffersAllPartsOnlyWhereThereAreSeveral) {
  bar.open();
  EXPECT_TRUE(allParts->isVisible());
  FindBar single(&window);
  single.addPart(report, report);
  single.open();
  EXPECT_FALSE(single.findChild<QCheckBox*>()->isVisible());
}

TEST_F(FindBarInAWindow, MarksMatchesUntilTheSearchEnds) {
  find("safari");
  EXPECT_NE(picture(), plain);
  QTest::keyClick(line, Qt::Key_Escape);
  EXPECT_EQ(picture(), plain);
}

TEST_F(FindBarInAWindow, MarksTheMatchesOfItsLastTextWhenItIsOpenedAgain) {
  find("safari");
  const QImage marked = picture();
  QTest::keyClick(line, Qt::Key_Escape);
  bar.open();
  EXPECT_EQ(picture(), marked);
}

TEST_F(FindBarInAWindow, MarksMatchesUntilSomethingElseIsSearched) {
  find("safari");
  EXPECT_NE(picture(), plain);
  bar.setPart(other);
  EXPECT_EQ(picture(), plain);
}

}  // namespace
}  // namespace pelmarix::qt
