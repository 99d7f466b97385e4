// The real main window over services that a test scripts.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/task.h"
#include "qt/services/text_conversion.h"
#include "qt/window/main_interface.h"
#include "tests/app/app_fixture.h"
#include "tests/ui/main_window_fixture.h"

namespace pelmarix::test {

/// What the report shows at first.
inline const std::string skippedNewestFirst =
    "\n\nMRTConfigData: 1.50 2019-11-01 08:00:00 +0000\n"
    "macOS 10.15 Update: 10.15 2019-10-08 08:00:00 +0000\n"
    "macOS Mojave: 10.14 2018-09-25 08:00:00 +0000\n";

/// A lister that is quick and says what the test wants.
class InstantLister {
 public:
  explicit InstantLister(platform::Services& services) {
    services.makePipe = [this] { return std::make_unique<InstantPipe>(*this); };
    services.makeTask = [this] { return std::make_unique<InstantTask>(*this); };
  }

  std::string output = "./Applications/Safari.app\t1\n";
  bool cannotBeStarted = false;
  std::function<void()> whileRunning = [] {};
  std::vector<std::string> listed;  ///< the files that were listed, in order

 private:
  struct InstantPipe final : platform::Pipe {
    explicit InstantPipe(InstantLister& pipesLister) : lister(pipesLister) {}
    Result<std::string, std::error_code> readDataToEndOfFile() override { return lister.output; }
    InstantLister& lister;
  };
  struct InstantTask final : platform::Task {
    explicit InstantTask(InstantLister& tasksLister) : lister(tasksLister) {}
    void setLaunchPath(const std::string& /*path*/) override {}
    void setArguments(const std::vector<std::string>& arguments) override { file = arguments.back(); }
    void setStandardOutput(platform::Pipe& /*pipe*/) override {}
    void launch() override {
      if (lister.cannotBeStarted) throw platform::TaskLaunchError("no such program");
      lister.listed.push_back(file);
      lister.whileRunning();
    }
    void waitUntilExit() override {}
    int terminationStatus() const override { return 0; }
    InstantLister& lister;
    std::string file;
  };
};

class MainInterface : public testing::Test {
 protected:
  MainInterface() {
    platform::Services& platform = services.services;
    platform.application = &application;
    platform.fileManager = &fileManager;
    platform.processInfo = &processInfo;
    platform.workspace = &workspace;
    platform.bundle = &bundle;
    platform.currentDate = [] { return Date{575287872}; };
    platform.composedForm = [](std::string_view text) { return std::string(text); };
    platform.isValidAddress = qt::isValidAddress;
    platform.tellSaved = [this](const std::string& path) { interface->tellSaved(path); };
    platform.makeSavePanel = [this] { return savePanels.emplace_back(std::make_shared<PlainSavePanel>()); };
    setHistory({{"macOS Mojave", "10.14", "", "2018-09-25T08:00:00Z"},
                {"Core Suggestions", "5", "config-data", "2018-10-01T08:00:00Z"},
                {"macOS 10.15 Update", "10.15", "", "2019-10-08T08:00:00Z"},
                {"MRTConfigData", "1.50", "config-data", "2019-11-01T08:00:00Z"}});
    addReceipt("com.example.old", "2018-01-01T00:00:00Z");
    addReceipt("com.example.new", "2019-01-01T00:00:00Z");
  }

  void setHistory(const std::vector<EntryText>& entries) {
    fileManager.files["/Library/Receipts/InstallHistory.plist"] = installHistory(entries);
  }
  void addReceipt(const std::string& name, const std::string& date) {
    const std::string folder = "/System/Library/Receipts/";
    fileManager.folders[folder].push_back(name + ".plist");
    fileManager.files[folder + name + ".plist"] = receipt(name, date);
  }

  /// What the services have at this moment is loaded.
  void show() {
    interface = std::make_unique<qt::MainInterface>(delegate, volume);
    interface->show();
    window().activateWindow();
    QApplication::processEvents();
  }

  qt::MainWindow& window() { return interface->window(); }
  template <typename Widget>
  Widget& find(const char* name) {
    auto* widget = window().findChild<Widget*>(QLatin1String(name));
    if (widget == nullptr) throw std::runtime_error(name);
    return *widget;
  }
  qt::OutlineWidget& outline() { return find<qt::OutlineWidget>("outline"); }
  qt::TableWidget& table() { return find<qt::TableWidget>("receiptsTable"); }
  qt::PlainTextView& report() { return find<qt::PlainTextView>("report"); }
  void click(const char* name) { QTest::mouseClick(&find<QAbstractButton>(name), Qt::LeftButton); }
  void choose(const char* action) { find<QAction>(action).trigger(); }
  std::string receiptName(int row) { return table().model()->index(row, 1).data().toString().toStdString(); }
  std::string shownReport() { return *report().text(); }
  double reportSize() { return report().font().pointSizeF(); }
  QPointer<qt::BillOfMaterialsSheet> sheet() { return window().findChild<qt::BillOfMaterialsSheet*>(); }
  static std::string listing(const qt::BillOfMaterialsSheet& sheet) {
    return *sheet.findChild<qt::PlainTextView*>(QStringLiteral("listing"))->text();
  }
  static void finishClosing() {
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  TestServices services;
  MemoryFileManager fileManager;
  PlainApplication application;
  PlainProcessInfo processInfo;
  RecordingWorkspace workspace;
  FixedBundle bundle;
  InstantLister lister{services.services};
  std::vector<std::shared_ptr<PlainSavePanel>> savePanels;
  AppDelegate delegate;
  posix::Volume volume;
  std::unique_ptr<qt::MainInterface> interface;
};

}  // namespace pelmarix::test
