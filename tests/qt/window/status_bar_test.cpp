#include "qt/window/status_bar.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QLabel>

#include "tests/qt/window/main_interface_fixture.h"

namespace pelmarix::test {
namespace {

using testing::ElementsAre;

class StatusBar : public MainInterface {
 protected:
  qt::StatusBar& bar() { return find<qt::StatusBar>("statusBar"); }

  /// The texts in it from left to right.
  std::vector<std::string> texts() {
    QApplication::processEvents();
    QList<QLabel*> labels = bar().findChildren<QLabel*>();
    std::sort(labels.begin(), labels.end(), [](auto* label, auto* other) { return label->x() < other->x(); });
    std::vector<std::string> texts;
    for (const QLabel* label : labels) texts.push_back(label->text().toStdString());
    return texts;
  }
  std::string row() { return texts().front(); }

  QModelIndex entry(int group, int row) {
    return outline().model()->index(row, 0, outline().model()->index(group, 0));
  }
  void saveAs(const char* action, const std::string& path) {
    choose(action);
    savePanels.back()->chosenPath = path;
    savePanels.back()->completionHandler(platform::modalResponseOK);
  }
};

TEST_F(StatusBar, TellsTheVolumeAndHowMuchWasFound) {
  volume = posix::Volume("/mnt/Macintosh HD/:/mnt/Macintosh HD - Data");
  show();
  EXPECT_THAT(texts(), ElementsAre("macOS 10.15 Update 10.15: 2 entries", "2 groups, 4 entries, 2 receipts",
                                   "/mnt/Macintosh HD, /mnt/Macintosh HD - Data"));
}

TEST_F(StatusBar, CountsOneOfEach) {
  setHistory({{"macOS Mojave", "10.14"}});
  fileManager.folders["/System/Library/Receipts/"].pop_back();
  show();
  EXPECT_THAT(texts(), ElementsAre("macOS Mojave 10.14: 1 entry", "1 group, 1 entry, 1 receipt", "/"));
}

TEST_F(StatusBar, TellsNothingOfRowsWhereThereAreNone) {
  fileManager.files.clear();
  fileManager.folders.clear();
  show();
  EXPECT_THAT(texts(), ElementsAre("", "0 groups, 0 entries, 0 receipts", "/"));
}

TEST_F(StatusBar, TellsWhatTheCurrentRowIs) {
  show();
  outline().setCurrentIndex(entry(0, 1));
  EXPECT_EQ(row(), "Core Suggestions: configuration data, 5");
  QTest::keyClick(&outline(), Qt::Key_Up);
  EXPECT_EQ(row(), "macOS Mojave: system install or upgrade, 10.14");
  table().setFocus();
  table().selectRow(1);
  EXPECT_EQ(row(), "com.example.old");
}

TEST_F(StatusBar, TellsOfTheListThatIsUsed) {
  show();
  outline().setCurrentIndex(entry(0, 1));
  table().setFocus();
  table().selectRow(0);
  for (int time = 0; time < 2; ++time) {
    outline().setFocus();
    EXPECT_EQ(row(), "Core Suggestions: configuration data, 5");
    table().setFocus();
    EXPECT_EQ(row(), "com.example.new");
  }
}

TEST_F(StatusBar, TellsHowManyRowsAreSelected) {
  show();
  choose("actionExpandAll");
  outline().setFocus();
  choose("actionSelectAll");
  EXPECT_EQ(row(), "6 of 6 selected");
  outline().setCurrentIndex(entry(0, 0));
  QTest::keyClick(&outline(), Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(row(), "2 of 6 selected");
  QTest::keyClick(&outline(), Qt::Key_Up);
  EXPECT_EQ(row(), "macOS Mojave: system install or upgrade, 10.14");
  table().setFocus();
  choose("actionSelectAll");
  EXPECT_EQ(row(), "2 of 2 selected");
}

TEST_F(StatusBar, TellsWhatWasSavedUntilTheUserGoesToAnotherRow) {
  show();
  outline().setCurrentIndex(entry(0, 1));
  saveAs("actionSave", "/home/report.text");
  EXPECT_EQ(row(), "Saved /home/report.text");
  find<QPushButton>("save").setFocus();
  outline().setFocus();  // as when the panel has gone
  EXPECT_EQ(row(), "Saved /home/report.text");
  saveAs("actionExport", "/home/history.csv");
  EXPECT_EQ(row(), "Saved /home/history.csv");
  QTest::keyClick(&outline(), Qt::Key_Up);
  EXPECT_EQ(row(), "macOS Mojave: system install or upgrade, 10.14");
}

TEST_F(StatusBar, SaysNothingOfAFileThatWasNotWritten) {
  fileManager.writeFailure = std::make_error_code(std::errc::no_space_on_device);
  show();
  const std::string before = row();
  saveAs("actionSave", "/home/report.text");
  EXPECT_EQ(row(), before);
  EXPECT_EQ(services.alerts.size(), 1);
}

TEST_F(StatusBar, ShowsWhatCannotBeSeenInNamesAndPathsAsSigns) {
  setHistory({{"macOS Mojave", "10.14"}, {"Security Update\u202e\n2", "&lt;b&gt;1"}});
  volume = posix::Volume("/mnt/a\nb\u202e");
  show();
  outline().setCurrentIndex(entry(0, 1));
  EXPECT_THAT(texts(), ElementsAre("Security Update\u21c4\u240a2: security update, <b>1", testing::_,
                                   "/mnt/a\u240ab\u21c4"));
  saveAs("actionSave", "/home/a\tb");
  EXPECT_EQ(row(), "Saved /home/a\u2409b");
  for (const QLabel* label : bar().findChildren<QLabel*>()) EXPECT_EQ(label->textFormat(), Qt::PlainText);
}

TEST_F(StatusBar, LeavesTheWindowAsNarrowAsItWasHoweverLongItsTextsAre) {
  show();
  const int before = window().minimumSizeHint().width();
  volume = posix::Volume("/" + std::string(3000, 'x'));
  show();
  saveAs("actionSave", "/" + std::string(3000, 'y'));
  QApplication::processEvents();
  EXPECT_EQ(window().minimumSizeHint().width(), before);
  window().resize(700, 500);
  QApplication::processEvents();
  EXPECT_EQ(window().width(), 700);
  for (const QLabel* label : bar().findChildren<QLabel*>()) {
    EXPECT_GE(label->width(), label->fontMetrics().averageCharWidth() * 10);
    EXPECT_TRUE(bar().rect().contains(label->geometry()));
  }
}

TEST_F(StatusBar, IsHeardByScreenReaders) {
  show();
  QAccessibleInterface* status = QAccessible::queryAccessibleInterface(&bar());
  EXPECT_EQ(status->role(), QAccessible::StatusBar);
  EXPECT_EQ(status->text(QAccessible::Name), QStringLiteral("Status"));
  QStringList heard;
  for (int child = 0; child < status->childCount(); ++child)
    heard += status->child(child)->text(QAccessible::Name);
  EXPECT_TRUE(heard.contains(QStringLiteral("2 groups, 4 entries, 2 receipts")));
}

}  // namespace
}  // namespace pelmarix::test
