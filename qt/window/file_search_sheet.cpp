#include "qt/window/file_search_sheet.h"

#include <QCoreApplication>
#include <algorithm>
#include <chrono>

#include "qt/services/text_conversion.h"
#include "qt/widgets/visible_text.h"
#include "qt/window/file_save_panel.h"
#include "ui_file_search_sheet.h"

namespace pelmarix::qt {
namespace {

constexpr std::chrono::milliseconds timeBetweenShowings(100);

// In a tooltip.
constexpr std::size_t mostNames = 20;

}  // namespace

FileSearchSheet::FileSearchSheet(QWidget* window, std::vector<std::shared_ptr<BoMItem>> packages)
    : QDialog(window), ui_(std::make_unique<Ui::FileSearchSheet>()), controller_(std::move(packages)) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  resize(window->size() * 9 / 10);
  ui_->statusLayout->setSpacing(2 * fontMetrics().averageCharWidth());

  table_ = std::make_unique<TableAdapter>(
      *ui_->files,
      std::vector<ColumnDescription>{
          {"Package", tr("Package"), {"Package"}, QStringLiteral("com.example.pkg.Application")},
          {"Path", tr("Path"), {"Path"}, {}, 100},
          {"Size", tr("Size"), {"Size"}, QStringLiteral("000000000")},
          {"Modified", tr("Modified"), {"Modified"}, QStringLiteral("Wed Nov 30 00:00:00 2000")},
      },
      controller_, controller_);
  controller_.filesTable = table_.get();
  controller_.changed = [this] {
    const bool isSearching = controller_.isSearching();
    if (isSearching && showing_.isActive()) return;
    showing_.start(isSearching ? timeBetweenShowings : std::chrono::milliseconds(0));
  };
  connect(&showing_, &QTimer::timeout, this, &FileSearchSheet::showState);

  connect(ui_->sought, &QLineEdit::textChanged, this, &FileSearchSheet::find);
  connect(ui_->sought, &QLineEdit::returnPressed, this, &FileSearchSheet::goToFiles);
  connect(ui_->actionCopy, &QAction::triggered, this, [this] { ui_->files->copy(); });
  connect(ui_->files->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &FileSearchSheet::updateActions);
  connect(ui_->showBillOfMaterials, &QPushButton::clicked, this, &FileSearchSheet::fileOpened);
  connect(ui_->exportFiles, &QPushButton::clicked, this, [this] {
    if (!FileSavePanel::bringToFront(*this)) controller_.exportFiles(nullptr);
  });

  const auto stop = [this] { controller_.stopButton(nullptr); };
  connect(ui_->stop, &QPushButton::clicked, this, stop);
  connect(this, &QDialog::finished, this, stop);
  connect(qApp, &QCoreApplication::aboutToQuit, this, stop);
  showState();
  updateActions();
}

FileSearchSheet::~FileSearchSheet() = default;

void FileSearchSheet::find(const QString& text) {
  ui_->files->clearSelection();
  ui_->files->scrollToTop();
  controller_.find(toUtf8(text));
  showState();
}

void FileSearchSheet::goToFiles() {
  if (ui_->files->model()->rowCount() == 0) return;
  if (!ui_->files->selectionModel()->hasSelection()) ui_->files->selectRow(0);
  ui_->files->setFocus();
}

void FileSearchSheet::showState() {
  showing_.stop();
  ui_->progress->setMaximum(static_cast<int>(controller_.packageCount()));
  ui_->progress->setValue(static_cast<int>(controller_.searchedCount()));
  const bool isSearching = controller_.isSearching();
  // What is disabled loses the focus to whatever comes next.
  if (!isSearching && ui_->stop->hasFocus()) ui_->files->setFocus();
  ui_->stop->setEnabled(isSearching);
  const QString status = toQString(controller_.status());
  ui_->files->setPlaceholderText(
      status.isEmpty() ? tr("Type a path, or a part of one, to find the package that brought it")
      : isSearching    ? QString()
                       : tr("No file was found"));
  table_->reloadData();
  ui_->exportFiles->setEnabled(ui_->files->model()->rowCount() > 0);
  ui_->status->setText(status);
  // For a screen reader that is in there.
  ui_->sought->setAccessibleDescription(status.isEmpty() || isSearching ? ui_->sought->toolTip() : status);
  showMissing();
}

void FileSearchSheet::showMissing() {
  const std::vector<std::string>& names = controller_.missing();
  ui_->missing->setText(toQString(controller_.statusOfMissing()));
  QStringList lines;
  for (std::size_t i = 0; i < std::min(names.size(), mostNames); ++i)
    lines += visibleInOneLine(toQString(names[i]).left(200));
  if (names.size() > mostNames) lines += tr("and %1 more").arg(names.size() - mostNames);
  ui_->missing->setAccessibleDescription(lines.join(QStringLiteral(", ")));
  // As rich text, so that no markup in it takes effect.
  const QString tip = lines.join(QLatin1Char('\n')).toHtmlEscaped().replace(QLatin1Char('\n'), "<br>");
  ui_->missing->setToolTip(tip.isEmpty() ? tip
                                         : QStringLiteral("<p style='white-space:pre'>%1</p>").arg(tip));
}

void FileSearchSheet::updateActions() {
  const bool isSelected = ui_->files->selectionModel()->hasSelection();
  ui_->actionCopy->setEnabled(isSelected);
  ui_->actionShowBillOfMaterials->setEnabled(isSelected);
  ui_->showBillOfMaterials->setEnabled(isSelected);
}

}  // namespace pelmarix::qt
