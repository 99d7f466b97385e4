#include "qt/window/file_search_sheet.h"

#include <gmock/gmock.h>

#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <map>

#include "platform/background_task.h"
#include "qt/widgets/plain_text_view.h"
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

TEST_F(FileSearchSheet, SaysWhatItsEmptyTableIsFor) {
  EXPECT_EQ(files().accessibleDescription().toStdString(),
            "Type a path, or a part of one, to find the package that brought it");
  sought().setText("no such file");
  EXPECT_EQ(files().accessibleDescription(), "");
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
  bill->close();
  finishClosing();
  EXPECT_TRUE(search().isVisible());
}

TEST_F(FileSearchSheet, SelectsNothingWhereTheBillHasChanged) {
  lister.output = "./a/usr/bin/a\t12\tThu Sep 27 04:03:27 2018\n./usr/bin/a\t12\tThu Sep 27 04:03:27 20189\n";
  sought().setText("a");
  listBoth();
  files().selectRow(0);
  button("showBillOfMaterials").click();
  auto* bill = search().findChild<qt::BillOfMaterialsSheet*>();
  ASSERT_NE(bill, nullptr);
  EXPECT_TRUE(bill->findChild<qt::PlainTextView*>(QStringLiteral("listing"))->selection().isEmpty());
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

TEST_F(FileSearchSheet, EnablesWhatHasSomethingToWorkOn) {
  EXPECT_FALSE(button("showBillOfMaterials").isEnabled());
  EXPECT_FALSE(button("exportFiles").isEnabled());
  sought().setText("a");
  listBoth();
  EXPECT_TRUE(button("exportFiles").isEnabled());
  EXPECT_FALSE(button("showBillOfMaterials").isEnabled());
  files().selectRow(0);
  EXPECT_TRUE(button("showBillOfMaterials").isEnabled());
  sought().setText("ab");
  EXPECT_FALSE(button("showBillOfMaterials").isEnabled());
  EXPECT_FALSE(button("exportFiles").isEnabled());
}

TEST_F(FileSearchSheet, CopiesAndExportsItsRows) {
  sought().setText("usr");
  listBoth();
  files().selectRow(0);
  QTest::keyClick(&files(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
            "com.example.new\t/usr/bin/a\t12\tThu Sep 27 04:03:27 2018\n");
  part<QAction>("actionCopy").trigger();
  button("exportFiles").click();
  ASSERT_EQ(savePanels.size(), 1U);
  EXPECT_THAT(savePanels[0]->allowedFileTypes, ElementsAre("csv"));
}

TEST_F(FileSearchSheet, EndsTheListersWhenItIsClosed) {
  for (const bool isByEscape : {false, true}) {
    sought().setText("a");
    EXPECT_EQ(running.size(), 2U);
    if (isByEscape)
      QTest::keyClick(&sought(), Qt::Key_Escape);
    else
      button("close").click();
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
  QTimer::singleShot(0, qApp, &QCoreApplication::quit);
  QApplication::exec();
  EXPECT_THAT(running, IsEmpty());
}

}  // namespace
}  // namespace pelmarix::test
