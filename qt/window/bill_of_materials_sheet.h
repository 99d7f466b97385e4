// The sheet with one receipt's bill of materials.
#pragma once

#include <QDialog>
#include <memory>
#include <string_view>

#include "platform/controls.h"
#include "qt/widgets/text_adapter.h"
#include "ui/bom_over_view_controller.h"

namespace Ui {
class BillOfMaterialsSheet;
}

namespace pelmarix::qt {

/// Made anew for each opening; deletes itself once it is closed.
class BillOfMaterialsSheet final : public QDialog {
  Q_OBJECT

 public:
  explicit BillOfMaterialsSheet(QWidget* window);
  ~BillOfMaterialsSheet() override;

  ui::BoMoverViewController& controller() { return controller_; }
  /// Whose bill of materials it is: the heading. Without a receipt there is none.
  void setReceipt(const QString& package, const QString& date);
  /// Loads the controller's view and shows the sheet over its window.
  void present();
  /// Selects what the listing has of a file and brings it into view; nothing where it isn't in there.
  void selectLines(std::string_view lines);

 private:
  void changeTextSize(int steps);
  // Those of the lines that are selected, or of all.
  void copyPaths();
  void save();

  std::unique_ptr<Ui::BillOfMaterialsSheet> ui_;
  ui::BoMoverViewController controller_;
  std::unique_ptr<TextAdapter> text_;
  platform::ScrollView scroller_;
};

}  // namespace pelmarix::qt
