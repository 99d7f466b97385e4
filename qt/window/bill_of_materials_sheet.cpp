#include "qt/window/bill_of_materials_sheet.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>
#include <algorithm>
#include <string_view>

#include "platform/save_panel.h"
#include "qt/services/text_conversion.h"
#include "qt/widgets/row_delegate.h"
#include "qt/window/file_save_panel.h"
#include "ui_bill_of_materials_sheet.h"

namespace pelmarix::qt {
namespace {

// Of lines that end in a size and a date, each behind a tab; each path with a line feed behind it.
std::string pathsOf(std::string_view lines) {
  std::string paths;
  std::size_t entry = 0;
  for (std::size_t begin = 0; begin < lines.size();) {
    const std::size_t end = std::min(lines.find('\n', begin), lines.size());
    const std::string_view soFar = lines.substr(entry, end - entry);
    begin = end + 1;
    const std::size_t tab = soFar.rfind('\t');
    if (tab == std::string_view::npos) continue;  // a name with a line end goes on in the next line
    paths.append(soFar.substr(0, std::min(soFar.rfind('\t', tab - 1), tab))) += '\n';
    entry = begin;
  }
  return paths;
}

}  // namespace

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

  ui_->listing->setColumns({QTextOption::RightTab, QTextOption::LeftTab});  // the size, and the date
  ui_->findBar->addPart(*ui_->listing, *ui_->listing);
  ui_->actionFindNext->setShortcuts(findNextKeys());
  ui_->actionFindPrevious->setShortcuts(findPreviousKeys());
  ui_->actionBiggerText->setShortcuts(
      {QKeySequence(QStringLiteral("Ctrl++")), QKeySequence(QStringLiteral("Ctrl+="))});
  connect(ui_->actionBiggerText, &QAction::triggered, this, [this] { changeTextSize(1); });
  connect(ui_->actionSmallerText, &QAction::triggered, this, [this] { changeTextSize(-1); });
  connect(ui_->listing, &PlainTextView::zoomRequested, this, &BillOfMaterialsSheet::changeTextSize);
  connect(ui_->copyPaths, &QPushButton::clicked, this, &BillOfMaterialsSheet::copyPaths);
  connect(ui_->save, &QPushButton::clicked, this, &BillOfMaterialsSheet::save);
}

BillOfMaterialsSheet::~BillOfMaterialsSheet() = default;

void BillOfMaterialsSheet::setReceipt(const QString& package, const QString& date) {
  ui_->package->setText(RowDelegate().displayText(package, locale()));
  ui_->date->setText(date);
  ui_->package->show();
  ui_->date->show();
}

void BillOfMaterialsSheet::present() {
  controller_.viewDidLoad();
  const std::string& listing = *ui_->listing->text();
  ui_->copyPaths->setEnabled(listing.find('\t') != std::string::npos);
  ui_->save->setEnabled(!listing.empty());
  if (listing.empty()) ui_->listing->setAccessibleDescription(ui_->listing->placeholderText());
  open();
  controller_.viewDidAppear();
}

void BillOfMaterialsSheet::selectLines(std::string_view lines) {
  const std::string& listing = *ui_->listing->text();
  for (std::size_t begin = listing.find(lines); begin != std::string::npos;
       begin = listing.find(lines, begin + 1)) {
    const std::size_t end = begin + lines.size();
    if ((begin > 0 && listing[begin - 1] != '\n') || (end < listing.size() && listing[end] != '\n')) continue;
    ui_->listing->select(end, begin);  // the beginning is what comes into view
    ui_->listing->setFocus();
    return;
  }
}

void BillOfMaterialsSheet::changeTextSize(int steps) {
  // What is drawn may be a little smaller than what was asked for; a size in pixels is known by that alone.
  const bool isInPoints = ui_->listing->font().pointSizeF() > 0;
  const double size = isInPoints ? ui_->listing->font().pointSizeF() : ui_->listing->fontInfo().pointSizeF();
  ui_->listing->setPointSize(size + steps);
}

void BillOfMaterialsSheet::copyPaths() {
  const TextIndex& index = ui_->listing->index();
  const TextRange selected = ui_->listing->selection();
  TextRange range{0, index.text()->size()};
  if (!selected.isEmpty())
    range = {index.line(index.lineAt(selected.begin)).begin, index.line(index.lineAt(selected.end - 1)).end};
  QGuiApplication::clipboard()->setText(toQString(pathsOf(index.part(range))));
}

void BillOfMaterialsSheet::save() {
  if (!FileSavePanel::bringToFront(*this))
    platform::saveThroughPanel({"text", "txt"}, {ui_->listing->text()});
}

}  // namespace pelmarix::qt
