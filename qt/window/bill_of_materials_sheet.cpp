#include "qt/window/bill_of_materials_sheet.h"

#include <QFontDatabase>

#include "ui_bill_of_materials_sheet.h"

namespace pelmarix::qt {

BillOfMaterialsSheet::BillOfMaterialsSheet(QWidget* window)
    : QDialog(window), ui_(std::make_unique<Ui::BillOfMaterialsSheet>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  ui_->listing->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  const auto setTabStops = [listing = ui_->listing] {
    listing->setTabStopDistance(8 * QFontMetricsF(listing->font()).horizontalAdvance(QLatin1Char(' ')));
  };
  setTabStops();
  resize(window->size() * 9 / 10);

  text_ = std::make_unique<TextAdapter>(*ui_->listing);
  controller_.outputTextbox = text_.get();
  controller_.outputScrollView = &scroller_;
  controller_.setDismisser([this](platform::ViewController&) { reject(); });
  connect(ui_->close, &QPushButton::clicked, this, [this] { controller_.closeButton(nullptr); });

  ui_->findBar->setTarget(*ui_->listing, *ui_->listing);
  connect(ui_->listing, &PlainTextWidget::zoomRequested, this, [this, setTabStops](int steps) {
    ui_->listing->zoomIn(steps);
    setTabStops();
  });
}

BillOfMaterialsSheet::~BillOfMaterialsSheet() = default;

void BillOfMaterialsSheet::present() {
  controller_.viewDidLoad();
  open();
  controller_.viewDidAppear();
}

}  // namespace pelmarix::qt
