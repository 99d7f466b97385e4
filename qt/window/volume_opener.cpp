#include "qt/window/volume_opener.h"

#include <QCoreApplication>
#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QProcess>
#include <QScopeGuard>
#include <QUrl>
#include <utility>

#include "posix/volume.h"
#include "qt/services/text_conversion.h"
#include "qt/widgets/sentence_box.h"
#include "qt/window/open_volume_dialog.h"

namespace pelmarix::qt {
namespace {

// Not as Qt's text, which has no bytes that aren't UTF-8.
std::string pathOrAddress(const QUrl& url) {
  if (!url.isLocalFile() || !url.host().isEmpty()) return toUtf8(url.toDisplayString());
  const QString path = url.path(QUrl::FullyEncoded | QUrl::StripTrailingSlash);
  return QByteArray::fromPercentEncoding(path.toLatin1()).toStdString();
}

// In the environment of the new program alone: this one's lister looks where it always looked.
bool startAgain(const std::string& volume) {
  constexpr const char* name = "PELMARIX_VOLUME";
  const bool wasSet = qEnvironmentVariableIsSet(name);
  const auto restore =
      qScopeGuard([wasSet, before = qgetenv(name)] { wasSet ? qputenv(name, before) : qunsetenv(name); });
  qputenv(name, QByteArray::fromStdString(volume));
  return QProcess::startDetached(QCoreApplication::applicationFilePath(), {});
}

}  // namespace

VolumeOpener::VolumeOpener(QWidget& window, std::function<bool()> isEmpty)
    : window_(window), isEmpty_(std::move(isEmpty)) {
  window.setAcceptDrops(true);
  window.installEventFilter(this);
}

void VolumeOpener::offerVolumes() { offer(mountedMacVolumes()).open(); }

OpenVolumeDialog& VolumeOpener::offer(const QList<MacVolume>& volumes) {
  return *new OpenVolumeDialog(&window_, volumes,
                               [this](const auto& folders, QWidget* front) { return open(folders, front); });
}

bool VolumeOpener::eventFilter(QObject* /*window*/, QEvent* event) {
  if (event->type() != QEvent::DragEnter && event->type() != QEvent::Drop) return false;
  auto& drop = static_cast<QDropEvent&>(*event);
  if (!drop.mimeData()->hasUrls()) return false;
  drop.setDropAction(Qt::CopyAction);  // where it comes from, nothing goes
  drop.accept();
  if (event->type() == QEvent::Drop) openDropped(drop.mimeData()->urls());
  return true;
}

void VolumeOpener::openDropped(const QList<QUrl>& urls) {
  std::vector<std::string> folders;
  for (const QUrl& url : urls) folders.push_back(pathOrAddress(url));
  const QString first = toQString(folders.front());
  if (folders.size() > 1 || !QFileInfo(first).isDir() || !QFileInfo(partnerPath(first)).isDir()) {
    open(folders, &window_);
    return;
  }
  OpenVolumeDialog& dialog = offer({});
  dialog.addFolder(first);
  dialog.open();
}

bool VolumeOpener::open(const std::vector<std::string>& folders, QWidget* front) {
  const auto volume = posix::Volume::valueForFolders(folders);
  if (!volume || !startAgain(*volume)) {
    SentenceBox::tell(front, volume ? "Pelmarix couldn't be started again." : volume.error().sentence);
    return false;
  }
  if (isEmpty_()) window_.close();
  return true;
}

}  // namespace pelmarix::qt
