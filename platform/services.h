// The one object through which the program reaches the machine and the toolkit. The entry point installs it;
// tests install their own. Each class's own accessor (UserDefaults::standardUserDefaults() and so on) reads
// it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "base/date.h"

namespace pelmarix::platform {

class Alert;
class Application;
class BackgroundTask;
class Bundle;
class FileManager;
class Pipe;
class ProcessInfo;
class SavePanel;
class Task;
class URLSession;
class UserDefaults;
class Workspace;

/// Nothing is owned: what is pointed to outlives the installation. A test fills only what its subject needs;
/// asking for anything else stops the program.
struct Services {
  Application* application = nullptr;
  Bundle* bundle = nullptr;
  FileManager* fileManager = nullptr;
  ProcessInfo* processInfo = nullptr;
  URLSession* urlSession = nullptr;
  UserDefaults* userDefaults = nullptr;
  Workspace* workspace = nullptr;

  std::function<std::unique_ptr<Alert>()> makeAlert;
  std::function<std::unique_ptr<BackgroundTask>()> makeBackgroundTask;
  std::function<std::unique_ptr<Pipe>()> makePipe;
  std::function<std::shared_ptr<SavePanel>()> makeSavePanel;
  std::function<std::unique_ptr<Task>()> makeTask;

  /// The clock.
  std::function<Date()> currentDate;
  /// Unicode's composed form (NFC) of a text; bytes that are not UTF-8 become U+FFFD.
  std::function<std::string(std::string_view)> composedForm;
  /// The composed form of a text without the difference of upper and lower case, and of a blank and a
  /// no-break space.
  std::function<std::string(std::string_view)> foldedForm;
  /// True when the text keeps to the generic syntax of RFC 3986, as the platform's own parser reads it, so
  /// that what is taken for an address here is one everywhere. An address need not have a scheme.
  std::function<bool(const std::string&)> isValidAddress;
  /// Tells the user that a file has been written where the user chose.
  std::function<void(const std::string& path)> tellSaved;
  /// Runs a block on the main thread, after what runs there now. Callable from any thread.
  std::function<void(std::function<void()>)> dispatchAsyncToMainQueue;
};

/// Makes `services` the installed ones, null for none. Returns those installed before.
const Services* installServices(const Services* services);

/// The time now.
Date currentDate();

std::string composedForm(std::string_view text);

std::string foldedForm(std::string_view text);

bool isValidAddress(const std::string& text);

void tellSaved(const std::string& path);

void dispatchAsyncToMainQueue(std::function<void()> block);

}  // namespace pelmarix::platform
