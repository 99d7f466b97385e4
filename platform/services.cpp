#include "platform/services.h"

#include <utility>

#include "base/fatal.h"
#include "platform/alert.h"
#include "platform/application.h"
#include "platform/background_task.h"
#include "platform/bundle.h"
#include "platform/file_manager.h"
#include "platform/process_info.h"
#include "platform/save_panel.h"
#include "platform/task.h"
#include "platform/url_session.h"
#include "platform/user_defaults.h"
#include "platform/workspace.h"

namespace pelmarix::platform {
namespace {

const Services* installedServices = nullptr;

const Services& services() { return required(installedServices, "no services are installed"); }

template <typename Function, typename... Arguments>
auto call(const Function& function, Arguments&&... arguments) {
  if (!function) fatalStop("a service that is not installed was called");
  return function(std::forward<Arguments>(arguments)...);
}

}  // namespace

const Services* installServices(const Services* services) {
  return std::exchange(installedServices, services);
}

Application& Application::sharedApplication() { return required(services().application, "no application"); }
Bundle& Bundle::mainBundle() { return required(services().bundle, "no bundle"); }
FileManager& FileManager::defaultManager() { return required(services().fileManager, "no file manager"); }
ProcessInfo& ProcessInfo::processInfo() { return required(services().processInfo, "no process info"); }
URLSession& URLSession::sharedSession() { return required(services().urlSession, "no URL session"); }
UserDefaults& UserDefaults::standardUserDefaults() {
  return required(services().userDefaults, "no user defaults");
}
Workspace& Workspace::sharedWorkspace() { return required(services().workspace, "no workspace"); }

std::unique_ptr<Alert> Alert::make() { return call(services().makeAlert); }
std::unique_ptr<BackgroundTask> BackgroundTask::make() { return call(services().makeBackgroundTask); }
std::unique_ptr<Pipe> Pipe::make() { return call(services().makePipe); }
std::shared_ptr<SavePanel> SavePanel::make() { return call(services().makeSavePanel); }
std::unique_ptr<Task> Task::make() { return call(services().makeTask); }

Date currentDate() { return call(services().currentDate); }
std::string composedForm(std::string_view text) { return call(services().composedForm, text); }
std::string foldedForm(std::string_view text) { return call(services().foldedForm, text); }
bool isValidAddress(const std::string& text) { return call(services().isValidAddress, text); }
void tellSaved(const std::string& path) { call(services().tellSaved, path); }
void dispatchAsyncToMainQueue(std::function<void()> block) {
  call(services().dispatchAsyncToMainQueue, std::move(block));
}

}  // namespace pelmarix::platform
