// The folders of this machine that may stand for a Mac's "/".
#pragma once

#include <QList>
#include <QString>
#include <optional>

namespace pelmarix::qt {

struct MacVolume {
  QString name;  ///< as it is called where it was made, or the last part of its path
  QString path;
};

/// Those of `volumes` that hold a Mac's install history, and their partners.
QList<MacVolume> withInstallHistory(const QList<MacVolume>& volumes);

/// The same of the volumes that are mounted just now, in the system's order.
QList<MacVolume> mountedMacVolumes();

/// True when they are one Mac's, as macOS calls them since Catalina: "X" and "X - Data", by path or by name.
bool areSystemAndData(const MacVolume& system, const MacVolume& data);

/// Where the other one lies if they lie side by side: "X - Data" for "X", and the other way.
QString partnerPath(const QString& path);

/// Where in `volumes` the other volume of the Mac is that the one at `place` belongs to. Those that lie side
/// by side come before those that are only called so.
std::optional<qsizetype> partnerOf(const QList<MacVolume>& volumes, qsizetype place);

}  // namespace pelmarix::qt
