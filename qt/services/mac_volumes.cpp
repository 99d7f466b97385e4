#include "qt/services/mac_volumes.h"

#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>
#include <set>

namespace pelmarix::qt {
namespace {

bool holdsInstallHistory(const MacVolume& volume) {
  return QFile::exists(volume.path + QLatin1String("/Library/Receipts/InstallHistory.plist"));
}

constexpr QLatin1String dataSuffix(" - Data");

bool areNamedAlike(const QString& system, const QString& data) { return data == system + dataSuffix; }

}  // namespace

bool areSystemAndData(const MacVolume& system, const MacVolume& data) {
  return areNamedAlike(system.path, data.path) || areNamedAlike(system.name, data.name);
}

QString partnerPath(const QString& path) {
  return path.endsWith(dataSuffix) ? path.chopped(dataSuffix.size()) : path + dataSuffix;
}

std::optional<qsizetype> partnerOf(const QList<MacVolume>& volumes, qsizetype place) {
  for (QString MacVolume::*field : {&MacVolume::path, &MacVolume::name}) {
    const QString partner = partnerPath(volumes[place].*field);
    for (qsizetype i = 0; i < volumes.size(); ++i)
      if (volumes[i].*field == partner) return i;
  }
  return std::nullopt;
}

QList<MacVolume> withInstallHistory(const QList<MacVolume>& volumes) {
  std::set<qsizetype> places;
  for (qsizetype i = 0; i < volumes.size(); ++i) {
    if (!holdsInstallHistory(volumes[i])) continue;
    places.insert(i);
    if (const auto partner = partnerOf(volumes, i)) places.insert(*partner);
  }
  QList<MacVolume> found;
  for (const qsizetype place : places) found += volumes[place];
  return found;
}

QList<MacVolume> mountedMacVolumes() {
  QList<MacVolume> mounted;
  for (const QStorageInfo& storage : QStorageInfo::mountedVolumes()) {
    // It has no path where that isn't UTF-8.
    const QString path = storage.rootPath();
    if (path.isEmpty()) continue;
    const QString name = storage.name();
    mounted += {name.isEmpty() ? QFileInfo(path).fileName() : name, path};
  }
  return withInstallHistory(mounted);
}

}  // namespace pelmarix::qt
