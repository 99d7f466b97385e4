// The sheet that finds a file among all packages.
#pragma once

#include <QDialog>
#include <QTimer>
#include <memory>
#include <vector>

#include "qt/widgets/table_adapter.h"
#include "ui/file_search_controller.h"

namespace Ui {
class FileSearchSheet;
}

namespace pelmarix::qt {

/// Made anew for each opening; ends the search and deletes itself once it is closed.
class FileSearchSheet final : public QDialog {
  Q_OBJECT

 public:
  FileSearchSheet(QWidget* window, std::vector<std::shared_ptr<BoMItem>> packages);
  ~FileSearchSheet() override;

  ui::FileSearchController& controller() { return controller_; }

 signals:
  /// The user asks for the bill of materials of the selected file's package.
  void fileOpened();

 private:
  void find(const QString& text);
  void goToFiles();
  void showState();
  void showMissing();
  void updateActions();

  std::unique_ptr<Ui::FileSearchSheet> ui_;
  ui::FileSearchController controller_;
  std::unique_ptr<TableAdapter> table_;
  // Shows what has changed since the last time, however much it is.
  QTimer showing_;
};

}  // namespace pelmarix::qt
