// What the delegate's tests put in place of the machine: a clock, a network, a browser, a Help menu and a
// main queue that runs when the test says so.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/app_delegate.h"
#include "platform/application.h"
#include "platform/bundle.h"
#include "platform/controls.h"
#include "platform/process_info.h"
#include "platform/url_session.h"
#include "platform/workspace.h"
#include "tests/support/test_services.h"

namespace pelmarix::test {

class FixedBundle final : public platform::Bundle {
 public:
  std::optional<platform::InfoDictionary> infoDictionary() const override { return info; }
  std::optional<platform::InfoDictionary> info;
};

class FixedProcessInfo final : public platform::ProcessInfo {
 public:
  std::string operatingSystemVersionString() const override { return "Version 10.14.6 (Build 18G103)"; }
  platform::OperatingSystemVersion operatingSystemVersion() const override { return version; }
  std::size_t activeProcessorCount() const override { return 1; }
  platform::OperatingSystemVersion version;
};

/// Keeps what the browser was to show.
class RecordingWorkspace final : public platform::Workspace {
 public:
  void openURL(const platform::URL& url) override { opened.push_back(url.absoluteString()); }
  std::vector<std::string> opened;
};

/// Keeps the requests that were started, for the test to answer.
class RecordingSession final : public platform::URLSession {
 public:
  struct Request {
    std::string address;
    platform::URLSessionCompletionHandler completionHandler;
  };

  std::unique_ptr<platform::URLSessionDataTask> dataTaskWithURLCompletionHandler(
      const platform::URL& url, platform::URLSessionCompletionHandler completionHandler) override {
    return std::make_unique<Task>(*this, Request{url.absoluteString(), std::move(completionHandler)});
  }
  std::vector<Request> requests;

 private:
  class Task final : public platform::URLSessionDataTask {
   public:
    Task(RecordingSession& session, Request request) : session_(session), request_(std::move(request)) {}
    void resume() override { session_.requests.push_back(std::move(request_)); }

   private:
    RecordingSession& session_;
    Request request_;
  };
};

class HelpMenu final : public platform::Menu {
 public:
  struct Item final : platform::MenuItem {
    void setState(int newState) override { state = newState; }
    void setTitle(const std::string& newTitle) override { title = newTitle; }
    std::string title = "Update not checked";
    int state = platform::stateOff;
  };

  platform::MenuItem* itemWithTitle(const std::string& title) override {
    return item.title == title ? &item : nullptr;
  }
  Item item;
};

class ApplicationWithHelpMenu final : public platform::Application {
 public:
  void terminate(platform::Object* /*sender*/) override {}
  platform::Menu* helpMenu() override { return menu; }
  HelpMenu help;
  platform::Menu* menu = &help;
};

class AppTest : public testing::Test {
 protected:
  AppTest() {
    bundle.info = platform::InfoDictionary{{"CFBundleShortVersionString", std::string("1.2")}};
    services.services.application = &application;
    services.services.bundle = &bundle;
    services.services.processInfo = &processInfo;
    services.services.urlSession = &session;
    services.services.workspace = &workspace;
    services.services.currentDate = [this] { return clock(); };
    services.services.dispatchAsyncToMainQueue = [this](std::function<void()> block) {
      mainQueue.push_back(std::move(block));
    };
  }

  void runMainQueue() {
    for (const auto& block : std::exchange(mainQueue, {})) block();
  }

  TestServices services;
  ApplicationWithHelpMenu application;
  FixedBundle bundle;
  FixedProcessInfo processInfo;
  RecordingSession session;
  RecordingWorkspace workspace;
  std::vector<std::function<void()>> mainQueue;
  std::function<Date()> clock = [] { return Date{600'000'000.25}; };
  AppDelegate delegate;
};

}  // namespace pelmarix::test
