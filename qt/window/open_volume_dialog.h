// The choice of a Mac's volume, or of the two that it has since macOS Catalina.
#pragma once

#include <QDialog>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "qt/services/mac_volumes.h"

namespace Ui {
class OpenVolumeDialog;
}

namespace pelmarix::qt {

/// Offers volumes and the folders that the user adds. Beside the chosen one it proposes its partner. Deletes
/// itself once it is closed.
class OpenVolumeDialog final : public QDialog {
  Q_OBJECT

 public:
  /// Opens the chosen folders, in their order. False, with a message over `front`, leaves the dialog as it
  /// is.
  using Opener = std::function<bool(const std::vector<std::string>& folders, QWidget* front)>;

  OpenVolumeDialog(QWidget* window, const QList<MacVolume>& volumes, Opener opener);
  ~OpenVolumeDialog() override;

  /// Adds a folder, and its partner where that lies beside it, and chooses it.
  void addFolder(const QString& path);

  void accept() override;

 private:
  void chooseFolder();
  // Adds the volume unless it is there, and returns its place.
  qsizetype add(const MacVolume& volume);
  qsizetype chosen() const;
  void proposePartner();
  void updateControls();

  std::unique_ptr<Ui::OpenVolumeDialog> ui_;
  QList<MacVolume> volumes_;  // those of the list's rows
  Opener opener_;
};

}  // namespace pelmarix::qt
