// A main window of plain objects: what a controller's tests connect to its outlets and install as services.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/application.h"
#include "platform/process_info.h"
#include "tests/support/memory_file_manager.h"
#include "tests/support/plain_save_panel.h"
#include "tests/support/property_list_text.h"
#include "tests/support/test_services.h"
#include "tests/ui/plain_views.h"
#include "ui/view_controller.h"

namespace pelmarix::test {

class PlainWindow final : public platform::Window {
 public:
  PlainWindow() : Window({}, platform::WindowStyleMask::all, platform::BackingStore::buffered, false) {}
  void setDelegate(platform::WindowDelegate* windowDelegate) override { delegate = windowDelegate; }
  void setTitle(const std::string& text) override { title = text; }
  platform::WindowDelegate* delegate = nullptr;
  std::string title;
};

class PlainApplication final : public platform::Application {
 public:
  void terminate(platform::Object* sender) override { terminatedBy.push_back(sender); }
  platform::Menu* helpMenu() override { return nullptr; }
  std::vector<platform::Object*> terminatedBy;
};

class PlainProcessInfo final : public platform::ProcessInfo {
 public:
  std::string operatingSystemVersionString() const override { return "Version 10.14.6 (Build 18G103)"; }
  platform::OperatingSystemVersion operatingSystemVersion() const override { return {10, 14, 6}; }
  std::size_t activeProcessorCount() const override { return processors; }
  std::size_t processors = 2;
};

/// A controller with everything connected and nothing loaded yet.
class MainWindow : public testing::Test {
 protected:
  MainWindow() {
    platform::Services& platform = services.services;
    platform.application = &application;
    platform.fileManager = &fileManager;
    platform.processInfo = &processInfo;
    platform.currentDate = [this] { return now; };
    platform.makeSavePanel = [this] { return savePanels.emplace_back(std::make_shared<PlainSavePanel>()); };
    fileManager.files[installHistory] = test::installHistory({});
    controller.outputText = &reportView;
    controller.bsvOutlineView = &outline;
    controller.BoMTable = &table;
    controller.skipCheckbox = &skip;
    controller.newestLastCheckbox = &newestLast;
    controller.setWindow(&window);
  }

  void setHistory(const std::vector<EntryText>& entries) {
    fileManager.files[installHistory] = test::installHistory(entries);
  }
  void addReceipt(const std::string& name, const std::string& date) {
    fileManager.folders[receipts].push_back(name + ".plist");
    fileManager.files[receipts + name + ".plist"] = test::receipt(name, date);
  }
  void click(PlainButton& checkBox) {
    checkBox.value = checkBox.value == platform::stateOff ? platform::stateOn : platform::stateOff;
  }
  std::string shownReport() const { return *reportView.shown.string; }
  std::vector<std::string> receiptNames() const {
    std::vector<std::string> names;
    for (const auto& item : controller.boms.children) names.push_back(item->name);
    return names;
  }

  static inline const std::string installHistory = "/Library/Receipts/InstallHistory.plist";
  static inline const std::string receipts = "/System/Library/Receipts/";

  TestServices services;
  MemoryFileManager fileManager;
  PlainApplication application;
  PlainProcessInfo processInfo;
  Date now{575287872};
  std::vector<std::shared_ptr<PlainSavePanel>> savePanels;
  PlainTextView reportView;
  PlainOutlineView outline;
  PlainTableView table;
  PlainButton skip, newestLast;
  PlainWindow window;
  ui::ViewController controller;
};

}  // namespace pelmarix::test
