#include "ui/file_search_controller.h"

#include <gmock/gmock.h>

#include <map>

#include "tests/support/fatal_stop.h"
#include "tests/ui/echoing_lister.h"
#include "tests/ui/main_window_fixture.h"
#include "ui/bom_over_view_controller.h"

namespace pelmarix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Listers whose every step is the test's. Real children are run by the tests of the implementation.
class FileSearch : public testing::Test {
 protected:
  FileSearch() {
    services.services.processInfo = &processInfo;
    services.services.foldedForm = [](std::string_view text) { return std::string(text); };
    services.services.makeBackgroundTask = [this] { return std::make_unique<SteppedTask>(*this); };
  }

  struct Running {
    std::function<void(std::string_view)> takeOutput;
    std::function<void(std::optional<int>)> end;
  };

  class SteppedTask final : public platform::BackgroundTask {
   public:
    explicit SteppedTask(FileSearch& testOfTask) : test_(testOfTask) {}
    ~SteppedTask() override { test_.running.erase(file_); }
    void launch(const std::string& program, const std::vector<std::string>& arguments,
                std::function<void(std::string_view)> takeOutput,
                std::function<void(std::optional<int>)> end) override {
      EXPECT_EQ(program, "/usr/bin/lsbom");
      EXPECT_THAT(std::vector(arguments.begin(), arguments.end() - 1), ElementsAre("-f", "-p", "fsT"));
      file_ = arguments.back();
      test_.launched.push_back(file_);
      test_.running[file_] = {std::move(takeOutput), std::move(end)};
    }

   private:
    FileSearch& test_;
    std::string file_;
  };

  ui::FileSearchController& make(int packageCount) {
    std::vector<std::shared_ptr<BoMItem>> packages;
    packages.reserve(static_cast<std::size_t>(packageCount));
    for (int i = 0; i < packageCount; ++i)
      packages.push_back(std::make_shared<BoMItem>("pkg" + std::to_string(i), Date{0}, std::to_string(i)));
    controller = std::make_unique<ui::FileSearchController>(std::move(packages));
    controller->filesTable = &table;
    controller->changed = [this] { ++changes; };
    return *controller;
  }

  void print(int number, std::string_view output) {
    const auto takeOutput = running.at(std::to_string(number) + ".bom").takeOutput;
    takeOutput(output);
  }
  void end(int number, std::optional<int> status = 0) {
    const auto finish = running.at(std::to_string(number) + ".bom").end;
    finish(status);
  }
  void list(int number, std::string_view output, std::optional<int> status = 0) {
    print(number, output);
    end(number, status);
  }

  std::vector<std::string> runningFiles() const {
    std::vector<std::string> files;
    for (const auto& [file, task] : running) files.push_back(file);
    return files;
  }
  std::string cell(std::ptrdiff_t row, platform::TableColumn& column) {
    if (controller->tableViewViewForTableColumnRow(table, &column, row) == nullptr) return "none";
    return table.cells.lastText.value_or("nothing");
  }
  std::vector<std::string> rows() {
    std::vector<std::string> all;
    for (std::ptrdiff_t row = 0; row < controller->numberOfRowsInTableView(table); ++row)
      all.push_back(cell(row, package) + cell(row, path));
    return all;
  }

  TestServices services;
  PlainProcessInfo processInfo;
  std::map<std::string, Running> running;
  std::vector<std::string> launched;
  PlainTableView table;
  platform::TableColumn package{"Package"}, path{"Path"}, size{"Size"}, modified{"Modified"};
  int changes = 0;
  std::unique_ptr<ui::FileSearchController> controller;
};

TEST_F(FileSearch, ListsAsManyPackagesAtATimeAsThereAreProcessors) {
  make(5).find("a");
  EXPECT_THAT(runningFiles(), ElementsAre("0.bom", "1.bom"));
  list(1, "");
  EXPECT_THAT(runningFiles(), ElementsAre("0.bom", "2.bom"));
  for (const int number : {0, 2, 3, 4}) list(number, "");
  EXPECT_FALSE(controller->isSearching());
  EXPECT_THAT(launched, ElementsAre("0.bom", "1.bom", "2.bom", "3.bom", "4.bom"));
}

TEST_F(FileSearch, NeverListsMoreThanEight) {
  processInfo.processors = 64;
  make(20).find("a");
  EXPECT_EQ(running.size(), 8U);
}

TEST_F(FileSearch, ShowsWhatItFoundInTheOrderOfThePackages) {
  make(3).find("a");
  list(1, "./a1\t12\tThu Sep 27 04:03:27 2018\n./b\t1\td\n");
  EXPECT_THAT(rows(), IsEmpty());
  list(0, "./a0\t1\td\n");
  EXPECT_THAT(rows(), ElementsAre("pkg0/a0", "pkg1/a1"));
  list(2, "./x\t1\td\n./a2\t1\td\n");
  EXPECT_THAT(rows(), ElementsAre("pkg0/a0", "pkg1/a1", "pkg2/a2"));
  EXPECT_EQ(cell(1, size), "12");
  EXPECT_EQ(cell(1, modified), "Thu Sep 27 04:03:27 2018");
  EXPECT_EQ(cell(-1, path), "none");
  EXPECT_EQ(cell(3, path), "none");
}

TEST_F(FileSearch, TellsHowFarItIs) {
  EXPECT_EQ(make(3).status(), "");
  controller->find("a");
  EXPECT_EQ(controller->status(), "0 of 3 packages, 0 files");
  const int before = changes;
  list(0, "./a\t1\td\n");
  EXPECT_EQ(controller->status(), "1 of 3 packages, 1 file");
  EXPECT_EQ(controller->searchedCount(), 1U);
  EXPECT_GT(changes, before);
  EXPECT_EQ(make(1).packageCount(), 1U);
  controller->find("a");
  EXPECT_EQ(controller->status(), "0 of 1 package, 0 files");
}

TEST_F(FileSearch, CountsAPackageWithoutAListAndGoesOn) {
  make(5).find("a");
  list(0, "./a\t1\td\n", 1);
  list(1, "./a\t1\td\n./\xE9\t1\td\n");
  EXPECT_EQ(controller->statusOfMissing(), "2 packages have no list");
  end(2, std::nullopt);
  list(4, "./a\t1\td\n./b", 0);
  list(3, "./a\t1\td\n");
  EXPECT_THAT(rows(), ElementsAre("pkg3/a"));
  EXPECT_THAT(controller->missing(), ElementsAre("pkg0", "pkg1", "pkg2", "pkg4"));
  EXPECT_EQ(controller->status(), "5 of 5 packages, 1 file");
}

TEST_F(FileSearch, HasNothingToSayOfMissingListsWhereThereAreNone) {
  make(1).find("a");
  EXPECT_EQ(controller->statusOfMissing(), "");
  end(0, 1);
  EXPECT_EQ(controller->statusOfMissing(), "1 package has no list");
}

TEST_F(FileSearch, NarrowsWhatIsThereWithoutReadingItAgain) {
  make(4).find("a");
  list(0, "./a\t1\td\n./ab\t1\td\n");
  print(1, "./ab\t1\td\n./a\t1\td\n");
  controller->find("ab");
  EXPECT_THAT(rows(), ElementsAre("pkg0/ab"));
  list(1, "./cab\t1\td\n");
  list(2, "./a\t1\td\n");
  list(3, "./abc\t1\td\n");
  EXPECT_THAT(rows(), ElementsAre("pkg0/ab", "pkg1/ab", "pkg1/cab", "pkg3/abc"));
  controller->find("abc");
  EXPECT_THAT(rows(), ElementsAre("pkg3/abc"));
  EXPECT_EQ(launched.size(), 4U);
}

TEST_F(FileSearch, ReadsAgainWhatWasSoughtOtherwise) {
  make(2).find("ab");
  list(0, "./ab\t1\td\n./b\t1\td\n", 0);
  end(1, 1);
  controller->find("b");
  EXPECT_THAT(rows(), IsEmpty());
  EXPECT_EQ(controller->statusOfMissing(), "");
  list(0, "./ab\t1\td\n./b\t1\td\n");
  list(1, "");
  EXPECT_THAT(rows(), ElementsAre("pkg0/ab", "pkg0/b"));
}

TEST_F(FileSearch, EndsTheListersWhenAnotherTextIsSoughtAndWhenNoneIs) {
  make(2).find("a");
  print(0, "./a\t1\td\n");
  controller->find("");
  EXPECT_THAT(runningFiles(), IsEmpty());
  EXPECT_THAT(rows(), IsEmpty());
  EXPECT_EQ(controller->status(), "");
  EXPECT_FALSE(controller->isSearching());
}

TEST_F(FileSearch, KeepsWhatItFoundWhenItIsStopped) {
  make(4).find("a");
  list(1, "./a1\t1\td\n");
  print(0, "./a0\t1\td\n");
  const int before = changes;
  controller->stopButton(nullptr);
  EXPECT_GT(changes, before);
  EXPECT_THAT(runningFiles(), IsEmpty());
  EXPECT_FALSE(controller->isSearching());
  EXPECT_THAT(rows(), ElementsAre("pkg0/a0", "pkg1/a1"));
  EXPECT_EQ(controller->status(), "1 of 4 packages, 2 files");
}

TEST_F(FileSearch, ReadsAgainAfterItWasStopped) {
  make(2).find("a");
  controller->stopButton(nullptr);
  controller->find("ab");
  EXPECT_THAT(runningFiles(), ElementsAre("0.bom", "1.bom"));
}

TEST_F(FileSearch, EndsTheListersAsItGoes) {
  make(2).find("a");
  controller.reset();
  EXPECT_THAT(runningFiles(), IsEmpty());
}

std::string manyFiles(int count, std::size_t sizeOfName = 1, const std::string& ending = {}) {
  std::string listing;
  for (int i = 0; i < count; ++i) listing += "./" + std::string(sizeOfName, 'a') + ending + "\t1\td\n";
  return listing;
}

TEST_F(FileSearch, KeepsTheFirstHundredThousandFiles) {
  make(3).find("a");
  list(0, manyFiles(60'000));
  list(1, manyFiles(40'000));
  EXPECT_EQ(controller->status(), "2 of 3 packages, 100000 files");
  EXPECT_TRUE(controller->isSearching());
  const int before = changes;
  print(2, manyFiles(1));
  EXPECT_GT(changes, before);
  EXPECT_FALSE(controller->isSearching());
  EXPECT_EQ(controller->status(), "2 of 3 packages, the first 100000 files");
  // What was left out may match, too.
  controller->find("ab");
  EXPECT_TRUE(controller->isSearching());
  EXPECT_EQ(controller->status(), "0 of 3 packages, 0 files");
}

TEST_F(FileSearch, ReadsAgainWhereTheLastFileOfAllWasLeftOut) {
  make(1).find("a");
  print(0, manyFiles(100'000) + "./ab\t1\td");
  end(0);
  EXPECT_EQ(controller->status(), "1 of 1 package, the first 100000 files");
  controller->find("ab");
  EXPECT_TRUE(controller->isSearching());
}

/// About 4 MB of what is kept.
const std::string longPaths = manyFiles(1000, 4000);

TEST_F(FileSearch, KeepsFewerFilesWithLongPaths) {
  make(2).find("a");
  print(1, "./a\t1\td\n");
  const int before = changes;
  for (int i = 0; i < 10 && controller->isSearching(); ++i) print(0, longPaths);
  EXPECT_FALSE(controller->isSearching());
  EXPECT_GT(changes, before);
  EXPECT_THAT(controller->status(), testing::StartsWith("0 of 2 packages, the first 8"));
  EXPECT_EQ(controller->tableViewObjectValueForTableColumnRow(table, &path, 0),
            controller->tableViewObjectValueForTableColumnRow(table, &path,
                                                              controller->numberOfRowsInTableView(table) - 1))
      << "what comes after the first file that is left out is left out, too";
}

TEST_F(FileSearch, HasRoomAgainForWhatItNoLongerKeeps) {
  const std::string otherLongPaths = manyFiles(1000, 4000, "b");
  for (const auto* const next : {"ab", "b"}) {  // narrower, and another
    make(2).find("a");
    for (int i = 0; i < 7; ++i) print(0, longPaths);
    end(0);
    controller->find(next);
    const int number = running.contains("0.bom") ? 0 : 1;
    for (int i = 0; i < 7; ++i) print(number, otherLongPaths);
    EXPECT_TRUE(controller->isSearching()) << next;
    end(number);
    EXPECT_EQ(controller->numberOfRowsInTableView(table), 7000) << next;
  }
}

TEST_F(FileSearch, KeepsFilesOfThirtyTwoMebibytes) {
  make(1).find("a");
  const std::size_t sizeOfName = 4096 - sizeof(ListedFile) - std::string_view("./\t1\td").size();
  print(0, manyFiles(8192, sizeOfName));
  EXPECT_TRUE(controller->isSearching());
  print(0, manyFiles(1));
  EXPECT_FALSE(controller->isSearching());
  EXPECT_EQ(controller->status(), "0 of 1 package, the first 8192 files");
}

TEST_F(FileSearch, KeepsWhatFitsOfThePackageThatIsTooMuch) {
  make(1).find("a");
  const std::size_t sizeOfName = 4096 - sizeof(ListedFile) - std::string_view("./\t1\td").size();
  print(0, manyFiles(8193, sizeOfName));
  EXPECT_EQ(controller->status(), "0 of 1 package, the first 8192 files");
}

TEST_F(FileSearch, HasNoViewWhereNoCellCanBeMade) {
  make(1).find("a");
  list(0, "./a\t1\td\n");
  EXPECT_EQ(controller->tableViewViewForTableColumnRow(table, nullptr, 0), nullptr);
  table.cells.missing = {"Path"};
  table.cells.notCells = {"Size"};
  table.cells.textFieldless = {"Modified"};
  EXPECT_EQ(cell(0, path), "none");
  EXPECT_EQ(cell(0, size), "none");
  EXPECT_EQ(cell(0, modified), "nothing");
}

TEST_F(FileSearch, TellsTheSelectedFile) {
  make(2).find("a");
  EXPECT_EQ(controller->selectedFile(), nullptr);
  list(0, "./a\t1\td\n");
  list(1, "./ab\t1\td\n");
  table.selected = 0;
  ASSERT_NE(controller->selectedFile(), nullptr);
  EXPECT_EQ(controller->selectedFile()->package->name, "pkg0");
  table.selected = 1;
  ASSERT_NE(controller->selectedFile(), nullptr);
  EXPECT_EQ(controller->selectedFile()->package->name, "pkg1");
  EXPECT_EQ(controller->selectedFile()->file.text(), "./ab\t1\td");
  EXPECT_EQ(controller->tableViewObjectValueForTableColumnRow(table, &path, 1),
            controller->selectedFile()->package);
  EXPECT_EQ(controller->tableViewObjectValueForTableColumnRow(table, &path, 2), nullptr);
  EXPECT_EQ(controller->tableViewObjectValueForTableColumnRow(table, &path, -1), nullptr);
  table.selected = 2;
  EXPECT_EQ(controller->selectedFile(), nullptr);
}

TEST_F(FileSearch, GivesNothingToTheSheetWhenNothingIsSelected) {
  make(1);
  ui::BoMoverViewController sheet;
  platform::Segue segue(sheet);
  controller->prepareForSegue(segue, nullptr);
  EXPECT_EQ(*sheet.theOutText, "");
}

TEST_F(FileSearch, GivesTheSheetTheListingOfTheSelectedFilesPackage) {
  std::vector<std::string> listed;
  services.services.makePipe = [&] { return std::make_unique<EchoingPipe>(listed); };
  services.services.makeTask = [&] { return std::make_unique<EchoingTask>(listed, true); };
  make(2).find("a");
  list(0, "./a\t1\td\n");
  list(1, "./a\t1\td\n");
  table.selected = 1;
  ui::BoMoverViewController sheet;
  platform::Segue segue(sheet);
  controller->prepareForSegue(segue, nullptr);
  EXPECT_EQ(*sheet.theOutText, "1.bom\n");
}

TEST_F(FileSearch, ExportsTheFilesAsTheyWereWhenItWasAsked) {
  MemoryFileManager fileManager;
  services.services.fileManager = &fileManager;
  auto panel = std::make_shared<PlainSavePanel>();
  services.services.makeSavePanel = [&] { return panel; };
  make(1).find("a");
  list(0, "./a,b\t12\tThu Sep 27 04:03:27 2018\n");
  controller->exportFiles(nullptr);
  EXPECT_THAT(panel->allowedFileTypes, ElementsAre("csv"));
  controller->find("");
  panel->chosenPath = "/files.csv";
  panel->completionHandler(platform::modalResponseOK);
  EXPECT_EQ(fileManager.files["/files.csv"],
            "Package,Path,Size,Modified\r\npkg0,\"/a,b\",12,Thu Sep 27 04:03:27 2018\r\n");
}

TEST_F(FileSearch, WithoutItsTableStopsTheProgram) {
  make(1).filesTable = nullptr;
  EXPECT_FATAL_STOP(controller->selectedFile());
}

}  // namespace
}  // namespace pelmarix::test
