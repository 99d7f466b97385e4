#include <gmock/gmock.h>

#include <QClipboard>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>

#include "app/addresses.h"
#include "tests/qt/window/main_interface_fixture.h"

namespace pelmarix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(MainInterface, OpensTheHelpPages) {
  show();
  choose("actionSupport");
  choose("actionSystemUpdates");
  EXPECT_THAT(workspace.opened, ElementsAre(supportPageAddress, newerSystemUpdatesPageAddress));
}

TEST_F(MainInterface, HasTheMakersAddressesRight) {
  for (const char* address : {updateListAddress, downloadHostPrefix, supportPageAddress,
                              olderSystemUpdatesPageAddress, newerSystemUpdatesPageAddress})
    EXPECT_TRUE(platform::URL::fromString(address)) << address;
}

TEST_F(MainInterface, HasAMenuItemThatTellsOfTheUpdateCheck) {
  show();
  qt::MenuAdapter menu(interface->helpMenu());
  ASSERT_NE(menu.itemWithTitle("Update not checked"), nullptr);
  menu.itemWithTitle("Update not checked")->setState(platform::stateOn);
  EXPECT_TRUE(find<QAction>("actionUpdateCheck").isChecked());
}

TEST_F(MainInterface, TellsItsVersionItsLicenseAndItsPageBesideItsIcon) {
  bundle.info = platform::InfoDictionary{{"CFBundleShortVersionString", std::string("1.2")}};
  show();
  QPixmap drawing(16, 16);
  drawing.fill(Qt::red);
  window().setWindowIcon(drawing);
  choose("actionAbout");
  auto* box = window().findChild<QDialog*>(QStringLiteral("AboutBox"));
  ASSERT_NE(box, nullptr);
  EXPECT_TRUE(box->isVisible());
  box->activateWindow();
  QApplication::processEvents();
  EXPECT_EQ(find<QLabel>("name").text(), QStringLiteral("Pelmarix 1.2"));
  EXPECT_TRUE(find<QLabel>("license").text().contains(QStringLiteral("MIT License")));
  EXPECT_EQ(find<QLabel>("icon").pixmap().toImage().pixelColor(8, 8), QColor(Qt::red));
  QPushButton* const close = find<QDialogButtonBox>("buttons").button(QDialogButtonBox::Close);
  EXPECT_TRUE(close->hasFocus());
  QTest::keyClick(close, Qt::Key_Tab);
  auto& link = find<QLabel>("link");
  ASSERT_TRUE(link.hasFocus());
  QTest::keyClick(&link, Qt::Key_Tab);  // within it, to the address
  EXPECT_THAT(workspace.opened, IsEmpty());
  QTest::keyClick(&link, Qt::Key_Return);
  EXPECT_THAT(workspace.opened, ElementsAre(supportPageAddress));
  EXPECT_TRUE(link.text().contains(QLatin1String(supportPageAddress)));
  QTest::keyClick(box, Qt::Key_Escape);
  finishClosing();
  EXPECT_EQ(window().findChild<QDialog*>(), nullptr);
}

TEST_F(MainInterface, GivesEveryMenuItemAnExplicitRoleAndNoShortcutTwice) {
  show();
  QList<QKeySequence> shortcuts;
  int items = 0;
  for (const QAction* menu : window().menuBar()->actions()) {
    for (const QAction* action : menu->menu()->actions()) {
      if (action->isSeparator()) continue;
      ++items;
      EXPECT_NE(action->menuRole(), QAction::TextHeuristicRole) << action->text().toStdString();
      for (const QKeySequence& shortcut : action->shortcuts()) {
        EXPECT_FALSE(shortcuts.contains(shortcut)) << shortcut.toString().toStdString();
        shortcuts += shortcut;
      }
    }
  }
  EXPECT_GE(items, 19);
  EXPECT_EQ(find<QAction>("actionAbout").menuRole(), QAction::AboutRole);
  EXPECT_EQ(find<QAction>("actionQuit").menuRole(), QAction::QuitRole);
  EXPECT_TRUE(shortcuts.contains(QKeySequence(QStringLiteral("Ctrl+="))));
}

TEST_F(MainInterface, CopiesFromWhatHasTheFocus) {
  show();
  outline().setFocus();
  outline().setCurrentIndex(outline().model()->index(1, 0, outline().model()->index(0, 0)));
  choose("actionCopy");
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
            " Core Suggestions\t2018-10-01 08:00:00 +0000\t5\n");
  table().setFocus();
  choose("actionSelectAll");
  choose("actionCopy");
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
            "2019-01-01 00:00:00 +0000\tcom.example.new\n2018-01-01 00:00:00 +0000\tcom.example.old\n");
  report().setFocus();
  choose("actionSelectAll");
  choose("actionCopy");
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), skippedNewestFirst);
}

TEST_F(MainInterface, CopiesTheNamesInTheListThatHasTheFocus) {
  show();
  outline().setFocus();
  outline().setCurrentIndex(outline().model()->index(1, 0, outline().model()->index(0, 0)));
  choose("actionCopyName");
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "Core Suggestions");
  table().setFocus();
  table().selectAll();
  choose("actionCopyName");
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "com.example.new\ncom.example.old");
}

TEST_F(MainInterface, DisablesWhatCanDoNothingWithWhatHasTheFocus) {
  show();
  // "C" for Copy, "N" for Copy Name, "A" for Select All.
  const auto enabled = [this] {
    std::string letters;
    if (find<QAction>("actionCopy").isEnabled()) letters += 'C';
    if (find<QAction>("actionCopyName").isEnabled()) letters += 'N';
    if (find<QAction>("actionSelectAll").isEnabled()) letters += 'A';
    return letters;
  };
  EXPECT_EQ(enabled(), "A") << "nothing is selected";
  outline().setCurrentIndex(outline().model()->index(0, 0));
  EXPECT_EQ(enabled(), "CNA");
  find<QMenuBar>("menuBar").setFocus();
  EXPECT_EQ(enabled(), "CNA") << "a menu is open";
  find<QPushButton>("save").setFocus();
  EXPECT_EQ(enabled(), "");
  table().setFocus();
  EXPECT_EQ(enabled(), "A");
  table().selectRow(0);
  EXPECT_EQ(enabled(), "CNA");
  table().clearSelection();
  EXPECT_EQ(enabled(), "A");
  report().setFocus();
  EXPECT_EQ(enabled(), "A");
  report().select(0, 5);
  EXPECT_EQ(enabled(), "CA");
  choose("actionFind");
  EXPECT_EQ(enabled(), "");
  auto& text = find<QLineEdit>("text");
  QTest::keyClicks(&text, QStringLiteral("mac"));
  EXPECT_EQ(enabled(), "A");
  text.selectAll();
  EXPECT_EQ(enabled(), "CA");
}

TEST_F(MainInterface, HasNothingToSelectInEmptyLists) {
  fileManager.files.clear();
  fileManager.folders.clear();
  show();
  for (QWidget* list : {static_cast<QWidget*>(&outline()), static_cast<QWidget*>(&table())}) {
    list->setFocus();
    for (const char* name :
         {"actionCopy", "actionCopyName", "actionSelectAll", "actionExpandAll", "actionCollapseAll"})
      EXPECT_FALSE(find<QAction>(name).isEnabled()) << name;
    EXPECT_TRUE(find<QAction>("actionShowBillOfMaterials").isEnabled());
  }
}

TEST_F(MainInterface, DisablesExpandingAndCollapsingWhereNothingIsLeftToExpandOrToCollapse) {
  show();
  const auto enabled = [this] {
    return std::pair(find<QAction>("actionExpandAll").isEnabled(),
                     find<QAction>("actionCollapseAll").isEnabled());
  };
  EXPECT_EQ(enabled(), std::pair(true, true));
  choose("actionExpandAll");
  EXPECT_EQ(enabled(), std::pair(false, true));
  choose("actionCollapseAll");
  EXPECT_EQ(enabled(), std::pair(true, false));
}

TEST_F(MainInterface, OffersInTheMenuOfEachListWhatFitsIt) {
  show();
  const auto names = [](const QWidget& list) {
    QStringList texts;
    for (const QAction* action : list.actions()) texts += action->text().remove(QLatin1Char('&'));
    return texts.join(QLatin1Char('|')).toStdString();
  };
  EXPECT_EQ(names(outline()), "Copy|Copy Name|Expand All|Collapse All");
  EXPECT_EQ(names(table()), "Copy|Copy Name|Show Bill of Materials");
}

TEST_F(MainInterface, ExpandsAndCollapsesAllGroups) {
  show();
  choose("actionExpandAll");
  EXPECT_TRUE(outline().isExpanded(outline().model()->index(0, 0)));
  choose("actionCollapseAll");
  EXPECT_FALSE(outline().isExpanded(outline().model()->index(1, 0)));
}

TEST_F(MainInterface, FindsInWhatHadTheFocusLast) {
  show();
  outline().setFocus();
  choose("actionFind");
  auto& text = find<QLineEdit>("text");
  EXPECT_TRUE(text.isVisible());
  QTest::keyClicks(&text, QStringLiteral("suggest"));
  EXPECT_EQ(outline().currentIndex().data().toString(), QStringLiteral("\tCore Suggestions"));
  EXPECT_TRUE(outline().isExpanded(outline().model()->index(0, 0)));
  QTest::keyClick(&text, Qt::Key_Escape);
  EXPECT_FALSE(text.isVisible());
  EXPECT_TRUE(outline().hasFocus());

  report().setFocus();
  choose("actionFind");
  text.setText(QStringLiteral("10.15"));
  EXPECT_EQ(report().index().part(report().selection()), "10.15");
  const std::size_t first = report().caret();
  choose("actionFindNext");
  EXPECT_GT(report().caret(), first);
  choose("actionFindPrevious");
  EXPECT_EQ(report().caret(), first);
}

TEST_F(MainInterface, GivesTheFocusBackToWhatWasSearchedAndSearchesThatOn) {
  show();
  auto& text = find<QLineEdit>("text");
  for (QWidget* searched : {static_cast<QWidget*>(&table()), static_cast<QWidget*>(&report())}) {
    searched->setFocus();
    choose("actionFind");
    text.setText(QStringLiteral("0"));
    QTest::keyClick(&text, Qt::Key_Escape);
    EXPECT_TRUE(searched->hasFocus());
    choose("actionFind");
    EXPECT_TRUE(text.placeholderText().endsWith(searched->accessibleName()));
    QTest::mouseClick(&find<QPushButton>("done"), Qt::LeftButton);
    EXPECT_TRUE(searched->hasFocus());
  }
}

}  // namespace
}  // namespace pelmarix::test
