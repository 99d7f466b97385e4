#include "qt/window/file_search_sheet.h"

#include <gmock/gmock.h>

#include <QClipboard>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QScrollBar>
#include <QSignalSpy>
#include <map>

#include "platform/background_task.h"
#include "qt/widgets/plain_text_view.h"
#include "qt/window/file_save_panel.h"
#include "tests/qt/window/main_interface_fixture.h"

namespace pelmarix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The sheet over the real main window with two receipts, com.example.new and com.example.old, whose listings
/// come when the test wants.
class FileSearchSheet : public MainInterface {
 protected:
  FileSearchSheet() {
    services.services.foldedForm = qt::foldedForm;
    services.services.makeBackgroundTask = [this] { return std::make_unique<HeldTask>(*this); };
    show();
    choose("actionFindFile");
    QApplication::processEvents();
  }
  // The sheet's tasks go before what they tell of themselves.
  ~FileSearchSheet() override { interface.reset(); }

  class HeldTask final : public platform::BackgroundTask {
   public:
    explicit HeldTask(FileSearchSheet& testOfTask) : test_(testOfTask) {}
    ~HeldTask() override { test_.running.erase(file_); }
    void launch(const std::string& /*path*/, const std::vector<std::string>& arguments,
                std::function<void(std::string_view)> takeOutput,
                std::function<void(std::optional<int>)> end) override {
      file_ = arguments.back();
      test_.running[file_] = [takeOutput, end](const std::string& listing, int status) {
        takeOutput(listing);
        end(status);
      };
    }

   private:
    FileSearchSheet& test_;
    std::string file_;
  };

  void list(const std::string& name, const std::string& listing, int status = 0) {
    const auto task = running.at("/System/Library/Receipts/" + name + ".bom");
    task(listing, status);
  }
  void listNext(const std::string& listing, int status = 0) {
    const auto task = running.begin()->second;
    task(listing, status);
  }
  // In a sheet of its own, named by two digits from 10 on, the newest first.
  void showPackages(int count, const std::string& endOfName = {}) {
    fileManager.folders.clear();
    for (int i = 10; i < 10 + count; ++i)
      addReceipt(std::to_string(i) + endOfName, "2019-01-01T00:00:" + std::to_string(i) + "Z");
    search().close();
    finishClosing();
    interface.reset();
    show();
    choose("actionFindFile");
  }
  void listBoth() {
    list("com.example.new", "./usr/bin/a\t12\tThu Sep 27 04:03:27 2018\n./b\t1\td\n");
    list("com.example.old", "./opt/usr/bin/a\t1\td\n");
    waitForShowing();
  }
  void waitForShowing() {
    ASSERT_TRUE(QTest::qWaitFor([this] { return label("status") == search().controller().status(); }));
  }

  qt::FileSearchSheet& search() {
    auto* sheetOfSearch = window().findChild<qt::FileSearchSheet*>();
    if (sheetOfSearch == nullptr) throw std::runtime_error("no sheet");
    return *sheetOfSearch;
  }
  template <typename Widget>
  Widget& part(const char* name) {
    return *search().findChild<Widget*>(QLatin1String(name));
  }
  QLineEdit& sought() { return part<QLineEdit>("sought"); }
  qt::TableWidget& files() { return part<qt::TableWidget>("files"); }
  QPushButton& button(const char* name) { return part<QPushButton>(name); }
  std::string label(const char* name) { return part<QLabel>(name).text().toStdString(); }
  std::vector<std::string> rows() {
    std::vector<std::string> all;
    for (int row = 0; row < files().model()->rowCount(); ++row)
      all.push_back(files().model()->index(row, 1).data().toString().toStdString());
    return all;
  }

  std::map<std::string, std::function<void(const std::string&, int)>> running;
};

TEST_F(FileSearchSheet, IsASheetOverTheWindowThatIsThereOnce) {
  EXPECT_TRUE(search().isVisible());
  EXPECT_EQ(search().windowModality(), Qt::WindowModal);
  EXPECT_TRUE(sought().hasFocus());
  choose("actionFindFile");
  EXPECT_EQ(window().findChildren<qt::FileSearchSheet*>().size(), 1);
  EXPECT_THAT(running, IsEmpty());
}

TEST_F(FileSearchSheet, HasNamesAndALabelForItsField) {
  EXPECT_EQ(sought().accessibleName(), "File to find");
  EXPECT_EQ(files().accessibleName(), "Files found");
  EXPECT_EQ(button("stop").accessibleName(), "Stop");
  EXPECT_EQ(part<QProgressBar>("progress").accessibleName(), "Packages searched");
  EXPECT_EQ(part<QLabel>("soughtLabel").buddy(), &sought());
  EXPECT_EQ(search().size(), window().size() * 9 / 10);
}

TEST_F(FileSearchSheet, IsWalkedThroughByTheTabKey) {
  sought().setText("a");
  std::vector<std::string> reached;
  for (int i = 0; i < 5; ++i) {
    reached.push_back(search().focusWidget()->objectName().toStdString());
    QTest::keyClick(search().focusWidget(), Qt::Key_Tab);
  }
  EXPECT_THAT(reached, ElementsAre("sought", "files", "stop", "close", "sought"));
}

TEST_F(FileSearchSheet, ShowsTheFilesThatItFinds) {
  QTest::keyClicks(&sought(), "USR/bin");
  listBoth();
  EXPECT_THAT(rows(), ElementsAre("/usr/bin/a", "/opt/usr/bin/a"));
  const auto cell = [this](int column) {
    return files().model()->index(0, column).data().toString().toStdString();
  };
  EXPECT_EQ(cell(0), "com.example.new");
  EXPECT_EQ(cell(2), "12");
  EXPECT_EQ(cell(3), "Thu Sep 27 04:03:27 2018");
  EXPECT_EQ(label("status"), "2 of 2 packages, 2 files");
  QTest::keyClicks(&sought(), "/a");
  EXPECT_THAT(rows(), ElementsAre("/usr/bin/a", "/opt/usr/bin/a"));
  sought().setText("/usr/bin/a");
  EXPECT_THAT(rows(), ElementsAre("/usr/bin/a"));
}

TEST_F(FileSearchSheet, ShowsHowFarItIsAndStops) {
  auto& progress = part<QProgressBar>("progress");
  EXPECT_EQ(progress.value(), 0);
  EXPECT_FALSE(button("stop").isEnabled());
  sought().setText("a");
  EXPECT_TRUE(button("stop").isEnabled());
  EXPECT_EQ(label("status"), "0 of 2 packages, 0 files");
  list("com.example.new", "./a\t1\td\n");
  waitForShowing();
  EXPECT_EQ(progress.value(), 1);
  EXPECT_EQ(progress.maximum(), 2);
  button("stop").setFocus();
  QTest::keyClick(&button("stop"), Qt::Key_Space);
  EXPECT_THAT(running, IsEmpty());
  ASSERT_TRUE(QTest::qWaitFor([this] { return !button("stop").isEnabled(); }));
  EXPECT_TRUE(files().hasFocus());
  EXPECT_THAT(rows(), ElementsAre("/a"));
}

TEST_F(FileSearchSheet, ShowsTheEndOfTheSearchInTheNextRound) {
  sought().setText("a");
  list("com.example.new", "./a\t1\td\n");
  list("com.example.old", "./a\t1\td\n");
  QApplication::processEvents();
  EXPECT_EQ(label("status"), "2 of 2 packages, 2 files");
  EXPECT_FALSE(button("stop").isEnabled());
  const QSignalSpy later(files().model(), &QAbstractItemModel::dataChanged);
  QTest::qWait(20);
  EXPECT_EQ(later.count(), 0) << "there is nothing new";
}

TEST_F(FileSearchSheet, ShowsWhatItFindsHoweverFastMoreComes) {
  showPackages(30);
  sought().setText("a");
  for (int i = 0; i < 29 && label("status") == "0 of 30 packages, 0 files"; ++i) {
    listNext("./a\t1\td\n");
    QTest::qWait(20);
  }
  EXPECT_NE(label("status"), "0 of 30 packages, 0 files");
  EXPECT_TRUE(search().controller().isSearching());
}

TEST_F(FileSearchSheet, KeepsTheSelectionWhileMoreIsFound) {
  sought().setText("a");
  list("com.example.new", "./a1\t1\td\n./a2\t1\td\n");
  waitForShowing();
  files().selectRow(1);
  list("com.example.old", "./a3\t1\td\n");
  waitForShowing();
  EXPECT_THAT(rows(), ElementsAre("/a1", "/a2", "/a3"));
  EXPECT_TRUE(files().selectionModel()->isRowSelected(1));
}

TEST_F(FileSearchSheet, BeginsAtTheTopWithNothingSelectedWhenAnotherTextIsTyped) {
  sought().setText("a");
  std::string many;
  for (int i = 0; i < 1000; ++i) many += "./a/b\t1\td\n";
  list("com.example.new", many);
  waitForShowing();
  files().selectRow(3);
  files().scrollToBottom();
  sought().setText("a/b");
  EXPECT_EQ(files().model()->rowCount(), 1000);
  EXPECT_EQ(files().verticalScrollBar()->value(), 0);
  EXPECT_FALSE(files().selectionModel()->hasSelection());
}

TEST_F(FileSearchSheet, SaysWhatItsEmptyTableIsFor) {
  EXPECT_EQ(files().accessibleDescription().toStdString(),
            "Type a path, or a part of one, to find the package that brought it");
  sought().setText("no such file");
  EXPECT_EQ(files().accessibleDescription(), "");
  EXPECT_EQ(sought().accessibleDescription(), sought().toolTip()) << "nothing is said while it goes on";
  listBoth();
  EXPECT_EQ(files().accessibleDescription().toStdString(), "No file was found");
  EXPECT_EQ(sought().accessibleDescription().toStdString(), "2 of 2 packages, 0 files");
  sought().clear();
  EXPECT_NE(sought().accessibleDescription().toStdString(), "2 of 2 packages, 0 files");
}

TEST_F(FileSearchSheet, NamesThePackagesWithoutAList) {
  sought().setText("a");
  list("com.example.new", "", 1);
  list("com.example.old", "", 1);
  waitForShowing();
  EXPECT_EQ(label("missing"), "2 packages have no list");
  EXPECT_EQ(part<QLabel>("missing").accessibleDescription(), "com.example.new, com.example.old");
  EXPECT_THAT(part<QLabel>("missing").toolTip().toStdString(),
              testing::HasSubstr("com.example.new<br>com.example.old"));
  sought().clear();
  EXPECT_EQ(label("missing"), "");
  EXPECT_EQ(part<QLabel>("missing").toolTip(), "");
}

TEST_F(FileSearchSheet, TakesNoNameForMarkup) {
  fileManager.folders.clear();
  addReceipt("&lt;b&gt;bold&lt;/b&gt;\u202E", "2019-01-01T00:00:00Z");
  search().close();
  finishClosing();
  interface.reset();
  show();
  choose("actionFindFile");
  sought().setText("a");
  running.begin()->second("", 1);
  waitForShowing();
  EXPECT_THAT(part<QLabel>("missing").toolTip().toStdString(),
              testing::HasSubstr("&lt;b&gt;bold&lt;/b&gt;\u21C4"));
}

TEST_F(FileSearchSheet, NamesSomeOfManyPackagesWithoutAListAndLongNamesInPart) {
  showPackages(22, std::string(300, 'x'));
  sought().setText("a");
  while (!running.empty()) listNext("", 1);
  waitForShowing();
  const QStringList lines = part<QLabel>("missing").accessibleDescription().split(QStringLiteral(", "));
  ASSERT_EQ(lines.size(), 21);
  EXPECT_EQ(lines[19], "12" + QString(198, QLatin1Char('x')));
  EXPECT_EQ(lines[20], "and 2 more");
  EXPECT_EQ(part<QLabel>("missing").toolTip().count(QStringLiteral("<br>")), 20);
}

TEST_F(FileSearchSheet, GoesToTheFilesByReturn) {
  QTest::keyClick(&sought(), Qt::Key_Return);
  EXPECT_TRUE(sought().hasFocus()) << "there are none";
  EXPECT_TRUE(search().isVisible());
  sought().setText("a");
  listBoth();
  files().selectRow(1);
  QTest::keyClick(&sought(), Qt::Key_Return);
  EXPECT_TRUE(files().hasFocus());
  EXPECT_TRUE(files().selectionModel()->isRowSelected(1));
  EXPECT_FALSE(files().selectionModel()->isRowSelected(0));
}

TEST_F(FileSearchSheet, OpensTheBillOfMaterialsAtTheSelectedFile) {
  lister.output = "./x\t1\td\n./usr/bin/a\t12\tThu Sep 27 04:03:27 2018\n./y\t1\td\n";
  sought().setText("a");
  listBoth();
  QTest::keyClick(&sought(), Qt::Key_Return);
  EXPECT_TRUE(files().hasFocus());
  QTest::keyClick(&files(), Qt::Key_Return);
  auto* bill = search().findChild<qt::BillOfMaterialsSheet*>();
  ASSERT_NE(bill, nullptr);
  EXPECT_THAT(lister.listed, ElementsAre("/System/Library/Receipts/com.example.new.bom"));
  const auto& listing = *bill->findChild<qt::PlainTextView*>(QStringLiteral("listing"));
  EXPECT_EQ(*listing.text(), lister.output);
  EXPECT_EQ(
      lister.output.substr(listing.selection().begin, listing.selection().end - listing.selection().begin),
      "./usr/bin/a\t12\tThu Sep 27 04:03:27 2018");
  EXPECT_EQ(bill->focusWidget(), &listing);
  EXPECT_EQ(bill->findChild<QLabel*>(QStringLiteral("package"))->text(), "com.example.new");
  EXPECT_EQ(bill->findChild<QLabel*>(QStringLiteral("date"))->text(), "2019-01-01 00:00:00 +0000");
  button("showBillOfMaterials").click();
  EXPECT_EQ(search().findChildren<qt::BillOfMaterialsSheet*>().size(), 1) << "it is there once";
  bill->close();
  finishClosing();
  EXPECT_TRUE(search().isVisible());
}

TEST_F(FileSearchSheet, ShowsABusyPointerWhileTheBillIsListed) {
  sought().setText("a");
  listBoth();
  files().selectRow(0);
  Qt::CursorShape shape = Qt::ArrowCursor;
  lister.whileRunning = [&] {
    if (const QCursor* pointer = QGuiApplication::overrideCursor()) shape = pointer->shape();
  };
  part<QAction>("actionShowBillOfMaterials").trigger();
  EXPECT_NE(search().findChild<qt::BillOfMaterialsSheet*>(), nullptr);
  EXPECT_EQ(shape, Qt::WaitCursor);
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(FileSearchSheet, SelectsNothingWhereTheBillHasChanged) {
  lister.output =
      "./a./usr/bin/a\t12\tThu Sep 27 04:03:27 2018\n./usr/bin/a\t12\tThu Sep 27 04:03:27 20189\n";
  sought().setText("a");
  listBoth();
  files().selectRow(0);
  button("showBillOfMaterials").click();
  auto* bill = search().findChild<qt::BillOfMaterialsSheet*>();
  ASSERT_NE(bill, nullptr);
  EXPECT_TRUE(bill->findChild<qt::PlainTextView*>(QStringLiteral("listing"))->selection().isEmpty());
}

TEST_F(FileSearchSheet, TellsWhenTheVolumeIsGone) {
  sought().setText("a");
  listBoth();
  files().selectRow(0);
  fileManager.folders.clear();
  button("showBillOfMaterials").click();
  const auto boxes = search().findChildren<QMessageBox*>();
  ASSERT_EQ(boxes.size(), 1);
  EXPECT_EQ(boxes[0]->text().toStdString(),
            "The Mac's volume isn't there any more. What was read from it is still shown.");
}

TEST_F(FileSearchSheet, StaysWhenTheListerCannotBeStarted) {
  sought().setText("a");
  listBoth();
  files().selectRow(0);
  lister.cannotBeStarted = true;
  button("showBillOfMaterials").click();
  EXPECT_EQ(search().findChild<qt::BillOfMaterialsSheet*>(), nullptr);
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(FileSearchSheet, GivesPathsTheRoomThatThereIs) {
  const auto widths = [this](int width) {
    search().resize(width, 400);
    QApplication::processEvents();
    return std::vector{files().columnWidth(0), files().columnWidth(1), files().columnWidth(2),
                       files().columnWidth(3)};
  };
  const int unit = files().fontMetrics().averageCharWidth();
  const std::vector<int> narrow = widths(120 * unit);
  const std::vector<int> wide = widths(150 * unit);
  EXPECT_EQ(wide, (std::vector{narrow[0], narrow[1] + 30 * unit, narrow[2], narrow[3]}));
  EXPECT_EQ(wide[0] + wide[1] + wide[2] + wide[3], files().viewport()->width());
}

TEST_F(FileSearchSheet, EnablesWhatHasSomethingToWorkOn) {
  EXPECT_FALSE(button("showBillOfMaterials").isEnabled());
  EXPECT_FALSE(button("exportFiles").isEnabled());
  sought().setText("a");
  listBoth();
  EXPECT_TRUE(button("exportFiles").isEnabled());
  EXPECT_FALSE(button("showBillOfMaterials").isEnabled());
  EXPECT_FALSE(part<QAction>("actionShowBillOfMaterials").isEnabled());
  EXPECT_FALSE(part<QAction>("actionCopy").isEnabled());
  files().selectRow(0);
  EXPECT_TRUE(button("showBillOfMaterials").isEnabled());
  EXPECT_TRUE(part<QAction>("actionShowBillOfMaterials").isEnabled());
  EXPECT_TRUE(part<QAction>("actionCopy").isEnabled());
  EXPECT_THAT(files().actions(),
              ElementsAre(&part<QAction>("actionCopy"), &part<QAction>("actionShowBillOfMaterials")));
  sought().setText("ab");
  EXPECT_FALSE(button("showBillOfMaterials").isEnabled());
  EXPECT_FALSE(button("exportFiles").isEnabled());
}

TEST_F(FileSearchSheet, CopiesAndExportsItsRows) {
  sought().setText("usr");
  listBoth();
  files().selectRow(0);
  const auto copyKeys = [this] { QTest::keyClick(&files(), Qt::Key_C, Qt::ControlModifier); };
  const auto copyAction = [this] { part<QAction>("actionCopy").trigger(); };
  for (const auto& copy : std::vector<std::function<void()>>{copyKeys, copyAction}) {
    QGuiApplication::clipboard()->clear();
    copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
              "com.example.new\t/usr/bin/a\t12\tThu Sep 27 04:03:27 2018\n");
  }
  button("exportFiles").click();
  ASSERT_EQ(savePanels.size(), 1U);
  EXPECT_THAT(savePanels[0]->allowedFileTypes, ElementsAre("csv"));
}

TEST_F(FileSearchSheet, BringsItsSavePanelThatIsOpenToTheFront) {
  services.services.makeSavePanel = [this] { return std::make_shared<qt::FileSavePanel>(&search()); };
  sought().setText("usr");
  listBoth();
  button("exportFiles").click();
  button("exportFiles").click();
  EXPECT_EQ(search().findChildren<QFileDialog*>().size(), 1);
}

TEST_F(FileSearchSheet, EndsTheListersWhenItIsClosed) {
  const auto escape = [this] { QTest::keyClick(&sought(), Qt::Key_Escape); };
  const auto closeKeys = [this] { QTest::keyClick(&sought(), Qt::Key_W, Qt::ControlModifier); };
  const auto closeButton = [this] { button("close").click(); };
  for (const auto& close : std::vector<std::function<void()>>{escape, closeKeys, closeButton}) {
    search().activateWindow();
    QApplication::processEvents();
    sought().setText("a");
    EXPECT_EQ(running.size(), 2U);
    close();
    EXPECT_THAT(running, IsEmpty());
    finishClosing();
    EXPECT_EQ(window().findChild<qt::FileSearchSheet*>(), nullptr);
    choose("actionFindFile");
  }
}

TEST_F(FileSearchSheet, IsOfferedWhereThereAreReceipts) {
  EXPECT_TRUE(find<QAction>("actionFindFile").isEnabled());
  interface.reset();
  fileManager.folders.clear();
  show();
  EXPECT_FALSE(find<QAction>("actionFindFile").isEnabled());
}

TEST_F(FileSearchSheet, EndsTheListersWhenTheProgramEnds) {
  sought().setText("a");
  QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(); });  // which closes no window
  QApplication::exec();
  EXPECT_THAT(running, IsEmpty());
}

}  // namespace
}  // namespace pelmarix::test
