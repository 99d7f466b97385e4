#include <QApplication>
#include <QSettings>
#include <algorithm>
#include <cstdlib>
#include <memory>

#include "app/app_delegate.h"
#include "platform/application.h"
#include "qt/services/machine_services.h"
#include "qt/services/network_session.h"
#include "qt/widgets/quiet_application.h"
#include "qt/window/application_adapter.h"
#include "qt/window/close_requests.h"
#include "qt/window/file_save_panel.h"
#include "qt/window/first_painting.h"
#include "qt/window/main_interface.h"
#include "qt/window/message_alert.h"

namespace pelmarix {
namespace {

// The window that an alert or a panel belongs to; null as long as none is on screen.
QWidget* windowInFront(QWidget& mainWindow) {
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  return mainWindow.isVisible() ? &mainWindow : nullptr;
}

}  // namespace

void platform::applicationMain(int argc, char** argv) {
  int nameAlone = std::min(argc, 1);  // Qt would take options
  const std::unique_ptr<QApplication> qtApplication = qt::makeApplication(nameAlone, argv);
  QApplication::setApplicationName(QStringLiteral("Pelmarix"));
  // The program ends by Application::terminate: an alert before the main window must not be taken for the
  // last window.
  QApplication::setQuitOnLastWindowClosed(false);
  // Qt's file dialog keeps settings of its own, but this program writes nothing but its user defaults. Below
  // something that is no folder no file can be made. On macOS there is no way to keep it from that.
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));

  AppDelegate delegate;  // outlives whatever may still call it
  qt::MachineServices machine;
  qt::NetworkSession session;
  qt::MainInterface interface(delegate, machine.volume());
  qt::ApplicationAdapter application(interface.helpMenu());

  platform::Services& services = machine.services();
  services.application = &application;
  services.urlSession = &session;
  services.makeAlert = [&] {
    return std::make_unique<qt::MessageAlert>(windowInFront(interface.window()), machine.mainQueue(),
                                              [&] { return application.isTerminating(); });
  };
  services.makeSavePanel = [&] {
    return std::make_shared<qt::FileSavePanel>(windowInFront(interface.window()));
  };
  services.tellSaved = [&](const std::string& path) { interface.tellSaved(path); };
  platform::installServices(&services);

#ifndef Q_OS_MACOS
  const qt::CloseRequests closeRequests(interface.window());
#endif
  qt::FirstPainting firstPainting(interface.window(), [&] { delegate.applicationDidFinishLaunching(); });
  interface.show();
  if (!application.isTerminating()) QApplication::exec();
  firstPainting.waitNoLonger();  // what is done at launch is done once in any case: it stores defaults, too
  delegate.applicationWillTerminate();
  // Nothing is unsaved, so the end needn't wait for a name that is being looked up.
  if (session.shutDown() == qt::NetworkSession::ShutDown::lookUpPending) std::_Exit(EXIT_SUCCESS);
  platform::installServices(nullptr);
}

}  // namespace pelmarix
