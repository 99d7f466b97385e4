#include "qt/services/machine_services.h"

#include <QCoreApplication>
#include <chrono>
#include <memory>
#include <utility>

#include "posix/posix_task.h"
#include "qt/services/child_process.h"
#include "qt/services/text_conversion.h"

namespace pelmarix::qt {
namespace {

Date now() {
  const std::chrono::duration<double> sinceUnixEpoch = std::chrono::system_clock::now().time_since_epoch();
  return Date{sinceUnixEpoch.count() - secondsFromUnixEpochToReferenceDate};
}

}  // namespace

MachineServices::MachineServices() : fileManager_(volume_), processInfo_(fileManager_, volume_) {
  services_.bundle = &bundle_;
  services_.fileManager = &fileManager_;
  services_.processInfo = &processInfo_;
  services_.userDefaults = &userDefaults_;
  services_.workspace = &workspace_;
  const std::string folder = toFileName(QCoreApplication::applicationDirPath());
  services_.makeBackgroundTask = [folder] { return std::make_unique<ChildProcess>(folder); };
  services_.makePipe = [] { return std::make_unique<posix::PosixPipe>(); };
  services_.makeTask = [folder] { return std::make_unique<posix::PosixTask>(folder); };
  services_.currentDate = now;
  services_.composedForm = composedForm;
  services_.foldedForm = foldedForm;
  services_.isValidAddress = isValidAddress;
  services_.dispatchAsyncToMainQueue = [this](auto block) { mainQueue_.dispatch(std::move(block)); };
}

}  // namespace pelmarix::qt
