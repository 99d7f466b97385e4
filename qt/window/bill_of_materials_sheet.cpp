#include "qt/window/bill_of_materials_sheet.h"

#include <QFontDatabase>
#include <QFontInfo>

#include "ui_bill_of_materials_sheet.h"

namespace pelmarix::qt {

BillOfMaterialsSheet::BillOfMaterialsSheet(QWidget* window)
    : QDialog(window), ui_(std::make_unique<Ui::BillOfMaterialsSheet>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  ui_->listing->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  resize(window->size() * 9 / 10);

  text_ = std::make_unique<TextAdapter>(*ui_->listing);
  controller_.outputTextbox = text_.get();
  controller_.outputScrollView = &scroller_;
  controller_.setDismisser([this](platform::ViewController&) { reject(); });
  connect(ui_->close, &QPushButton::clicked, this, [this] { controller_.closeButton(nullptr); });

  ui_->findBar->setTarget(*ui_->listing, *ui_->listing);
  connect(ui_->listing, &PlainTextView::zoomRequested, this, [listing = ui_->listing](int steps) {
    listing->setPointSize(listing->fontInfo().pointSizeF() + steps);
  });
}

BillOfMaterialsSheet::~BillOfMaterialsSheet() = default;

void BillOfMaterialsSheet::present() {
  controller_.viewDidLoad();
  open();
  controller_.viewDidAppear();
}

}  // namespace pelmarix::qt
