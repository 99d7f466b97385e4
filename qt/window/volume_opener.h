// Opens the volumes that the user chooses, each in a window of its own.
#pragma once

#include <QObject>
#include <functional>
#include <string>
#include <vector>

#include "qt/services/mac_volumes.h"

class QUrl;
class QWidget;

namespace pelmarix::qt {

class OpenVolumeDialog;

/// What is chosen is shown by the program started once more. A window with nothing in it makes way for that.
/// What can't be opened is told by a message.
class VolumeOpener final : public QObject {
 public:
  /// Takes folders that are dropped on `window`, which isn't owned and outlives the opener. `isEmpty` tells
  /// whether there is anything in it.
  VolumeOpener(QWidget& window, std::function<bool()> isEmpty);

  /// Offers what there is.
  void offerVolumes();

 private:
  bool eventFilter(QObject* window, QEvent* event) override;
  OpenVolumeDialog& offer(const QList<MacVolume>& volumes);
  void openDropped(const QList<QUrl>& urls);
  // False when there is a message over `front` now.
  bool open(const std::vector<std::string>& folders, QWidget* front);

  QWidget& window_;
  std::function<bool()> isEmpty_;
};

}  // namespace pelmarix::qt
