#include "qt/window/file_save_panel.h"

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <optional>
#include <vector>

#include "tests/support/temporary_folder.h"

namespace pelmarix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FileSavePanel : public testing::Test {
 protected:
  /// The panel on screen, its handler noting what it is called with.
  QFileDialog& begin() {
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);  // one before, if there was one
    auto panel = std::make_shared<qt::FileSavePanel>(&window);
    panel->setCanCreateDirectories(true);
    panel->setAllowedFileTypes({"text", "txt"});
    weakPanel = panel;
    panel->beginWithCompletionHandler([this, raw = panel.get()](int response) {
      responses.push_back(response);
      path = raw->path();
    });
    auto& dialog = *window.findChild<QFileDialog*>();
    dialog.setDirectory(QString::fromStdString(folder.path()));
    return dialog;
  }
  static void type(QFileDialog& dialog, const std::string& name) {
    auto* line = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    line->setText(QString::fromStdString(name));
    QTest::keyClick(line, Qt::Key_Return);
  }
  /// Types a name and presses Return.
  std::optional<std::string> choose(const std::string& name) {
    type(begin(), name);
    EXPECT_THAT(responses, ElementsAre(platform::modalResponseOK));
    return path;
  }

  TemporaryFolder folder;
  QWidget window;
  std::weak_ptr<platform::SavePanel> weakPanel;
  std::vector<int> responses;
  std::optional<std::string> path;
};

TEST_F(FileSavePanel, IsNotModalAndHasNothingPreset) {
  const QFileDialog& dialog = begin();
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_FALSE(dialog.isModal());
  EXPECT_EQ(dialog.windowModality(), Qt::NonModal);
  EXPECT_EQ(dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text(), QString());
  EXPECT_FALSE(dialog.testOption(QFileDialog::ReadOnly)) << "folders can be made";
  EXPECT_THAT(responses, IsEmpty());
}

TEST_F(FileSavePanel, LetsNoFoldersBeMadeWhereItIsToldSo) {
  qt::FileSavePanel panel(&window);
  panel.setCanCreateDirectories(false);
  EXPECT_TRUE(window.findChild<QFileDialog*>()->testOption(QFileDialog::ReadOnly));
}

TEST_F(FileSavePanel, OffersTextFilesAndAllOthers) {
  EXPECT_EQ(begin().nameFilters().join(QLatin1Char('|')).toStdString(),
            "Text files (*.text *.txt)|All files (*)");
}

TEST_F(FileSavePanel, LetsTheUserChooseWhatIsSaved) {
  auto panel = std::make_shared<qt::FileSavePanel>(&window);
  panel->setTitle("Export");
  panel->setAllowedFileTypes({"csv"});
  panel->setContents({"Install history", "Receipts"});
  std::vector<std::size_t> contents;
  panel->beginWithCompletionHandler([&, raw = panel.get()](int) {
    contents.push_back(raw->chosenContent());
    path = raw->path();
  });
  auto& dialog = *window.findChild<QFileDialog*>();
  EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Export"));
  auto& types = *dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
  ASSERT_EQ(types.count(), 2);
  EXPECT_EQ(types.currentText(), QStringLiteral("Install history (*.csv)"));
  EXPECT_EQ(types.itemText(1), QStringLiteral("Receipts (*.csv)"));
  EXPECT_EQ(panel->chosenContent(), 0U);
  QTest::keyClick(&types, Qt::Key_Down);
  dialog.setDirectory(QString::fromStdString(folder.path()));
  type(dialog, "receipts");
  EXPECT_THAT(contents, ElementsAre(1U));
  EXPECT_EQ(path, folder / "receipts.csv");
}

TEST_F(FileSavePanel, OpensAFolderThatIsSelectedWhereNoNameIsTyped) {
  folder.addFolder("reports");
  QFileDialog& dialog = begin();
  auto& list = *dialog.findChild<QListView*>(QStringLiteral("listView"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return list.model()->rowCount(list.rootIndex()) == 1; }));
  list.setCurrentIndex(list.model()->index(0, 0, list.rootIndex()));
  dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->clear();
  dialog.findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"))
      ->button(QDialogButtonBox::Save)
      ->setEnabled(true);
  dialog.findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"))->button(QDialogButtonBox::Save)->click();
  EXPECT_EQ(dialog.directory().absolutePath().toStdString(), folder / "reports");
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_THAT(responses, IsEmpty());
}

TEST_F(FileSavePanel, GivesTheChosenFile) { EXPECT_EQ(choose("report.text"), folder / "report.text"); }

TEST_F(FileSavePanel, TakesEitherTypeInAnyLetters) { EXPECT_EQ(choose("report.TXT"), folder / "report.TXT"); }

TEST_F(FileSavePanel, GivesANameWithoutATypeTheFirst) { EXPECT_EQ(choose("report"), folder / "report.text"); }

TEST_F(FileSavePanel, GivesANameWithAnotherTypeTheFirst) {
  EXPECT_EQ(choose("report 10.14"), folder / "report 10.14.text");
}

TEST_F(FileSavePanel, GivesANameThatEndsInADotNoSecondOne) {
  EXPECT_EQ(choose("report."), folder / "report.text");
}

TEST_F(FileSavePanel, TakesQuotesForLetters) {
  folder.addFolder("best");
  EXPECT_EQ(choose("my \"best\" report"), folder / "my \"best\" report.text");
}

TEST_F(FileSavePanel, TakesAQuoteAloneForALetter) {
  EXPECT_EQ(choose("19\" screen.txt"), folder / "19\" screen.txt");
  responses.clear();
  EXPECT_EQ(choose("\"\""), folder / "\"\".text");
}

TEST_F(FileSavePanel, KnowsTheHomeFolder) {
  const std::string home = qEnvironmentVariable("HOME").toStdString();
  EXPECT_EQ(choose("~/report"), home + "/report.text");
  responses.clear();
  EXPECT_EQ(choose("~/my \"best\" report.txt"), home + "/my \"best\" report.txt");
  responses.clear();
  EXPECT_EQ(choose("~root/report"), "/root/report.text");
  responses.clear();
  EXPECT_EQ(choose("~nobody of that name"), folder / "~nobody of that name.text");
}

TEST_F(FileSavePanel, TakesAnAbsolutePathAsItStands) {
  EXPECT_EQ(choose("/" + folder / "REPORT.text"), "/" + folder / "REPORT.text");
}

TEST_F(FileSavePanel, LetsTheWriterTellWhatIsWrongWithANameThatNoFileCanHave) {
  const std::string name(300, 'x');
  EXPECT_EQ(choose(name), folder / name + ".text");
  responses.clear();
  QFileDialog& dialog = begin();
  dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(QString::fromStdString(name));
  QPushButton* const save = dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save);
  EXPECT_TRUE(save->isEnabled());
  save->click();
  EXPECT_THAT(responses, ElementsAre(platform::modalResponseOK));
  EXPECT_EQ(path, folder / name + ".text");
}

TEST_F(FileSavePanel, DoesNothingWithoutAName) {
  QFileDialog& dialog = begin();
  auto* save = dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save);
  auto* line = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  line->setText(QStringLiteral("x"));
  EXPECT_TRUE(save->isEnabled());
  line->clear();
  EXPECT_FALSE(save->isEnabled());
  QTest::keyClick(line, Qt::Key_Return);
  EXPECT_THAT(responses, IsEmpty());
  EXPECT_TRUE(dialog.isVisible());
}

TEST_F(FileSavePanel, GivesNamesAsTheFileSystemHasThem) {
  EXPECT_EQ(choose("b\u00e9richt \U0001f600.txt"), folder / "b\u00e9richt \U0001f600.txt");
}

TEST_F(FileSavePanel, AsksBeforeItReplacesTheFileThatTheTypeWasAddedFor) {
  folder.addFile("report.text", "old");
  QString question;
  QTimer::singleShot(0, [&] {
    if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
      question = box->text();
      box->button(QMessageBox::Yes)->click();
    }
  });
  EXPECT_EQ(choose("report"), folder / "report.text");
  EXPECT_TRUE(question.contains(QStringLiteral("report.text"))) << question.toStdString();
}

TEST_F(FileSavePanel, AsksForTheVeryNameAndReplacesNothingWithoutAYes) {
  folder.addFile("<b>\"best\".text", "old");
  QString question;
  QTimer::singleShot(0, [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->textFormat(), Qt::PlainText);
    question = box->text();
    QTest::keyClick(box, Qt::Key_Return);
  });
  QFileDialog& dialog = begin();
  type(dialog, "<b>\"best\"");
  EXPECT_TRUE(question.startsWith(QStringLiteral("<b>\"best\".text already"))) << question.toStdString();
  EXPECT_THAT(responses, IsEmpty());
  EXPECT_TRUE(dialog.isVisible());
}

TEST_F(FileSavePanel, EntersAFolderThatIsNamed) {
  const std::filesystem::path home = qEnvironmentVariable("HOME").toStdString();
  folder.addFolder("inner/my \"best\" reports");
  std::filesystem::create_directory(home / "Documents");
  QFileDialog& dialog = begin();
  const auto entered = [&](const std::string& name) {
    type(dialog, name);
    EXPECT_THAT(responses, IsEmpty()) << path.value_or("");
    EXPECT_EQ(dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text(), QString());
    return dialog.directory().path().toStdString();
  };
  EXPECT_EQ(entered("inner"), folder / "inner");
  EXPECT_EQ(entered("my \"best\" reports"), folder / "inner/my \"best\" reports");
  EXPECT_EQ(entered(".."), folder / "inner");
  EXPECT_EQ(entered("~/Documents"), home / "Documents");
  EXPECT_EQ(entered("~"), home.native());
  std::filesystem::remove(home / "Documents");
}

TEST_F(FileSavePanel, EntersNoFolderThatOnlyTheTypeMakesOfTheName) {
  folder.addFolder("report.text");
  EXPECT_EQ(choose("report"), folder / "report.text");
}

TEST_F(FileSavePanel, TellsWhenItWasCancelled) {
  begin().reject();
  EXPECT_THAT(responses, ElementsAre(platform::modalResponseCancel));
}

TEST_F(FileSavePanel, GoesWithItsDialog) {
  QFileDialog& dialog = begin();
  EXPECT_FALSE(weakPanel.expired());
  dialog.reject();
  EXPECT_TRUE(weakPanel.expired());
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(window.findChild<QFileDialog*>(), nullptr);
}

TEST_F(FileSavePanel, CanBeThereTwice) {
  begin();
  auto second = std::make_shared<qt::FileSavePanel>(&window);
  second->beginWithCompletionHandler([this](int response) { responses.push_back(10 + response); });
  const auto dialogs = window.findChildren<QFileDialog*>();
  ASSERT_EQ(dialogs.size(), 2);
  dialogs[1]->reject();
  dialogs[0]->reject();
  EXPECT_THAT(responses, testing::UnorderedElementsAre(platform::modalResponseCancel,
                                                       10 + platform::modalResponseCancel));
}

TEST_F(FileSavePanel, IsNotToldTheEndWhenTheProgramEndsFirst) {
  {
    QWidget closing;
    auto panel = std::make_shared<qt::FileSavePanel>(&closing);
    weakPanel = panel;
    panel->beginWithCompletionHandler([this](int response) { responses.push_back(response); });
  }
  EXPECT_THAT(responses, IsEmpty());
  EXPECT_TRUE(weakPanel.expired());
}

TEST_F(FileSavePanel, LeavesNoFileInTheHomeFolderNorAmongTheTemporaryOnes) {
  const std::filesystem::path home = qEnvironmentVariable("HOME").toStdString();
  const std::filesystem::path temporaryFiles = home / "temporary";
  std::filesystem::create_directory(temporaryFiles);
  qputenv("TMPDIR", QByteArray::fromStdString(temporaryFiles.native()));
  choose("report.text");
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  std::vector<std::string> left;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(home)) {
    // The system's font library makes a cache there where the system has none that is up to date.
    if (!entry.path().native().starts_with((home / ".cache").native())) left.push_back(entry.path().native());
  }
  EXPECT_THAT(left, ElementsAre(temporaryFiles.native()));
  qunsetenv("TMPDIR");
  std::filesystem::remove(temporaryFiles);
}

}  // namespace
}  // namespace pelmarix::test
