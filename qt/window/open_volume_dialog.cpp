#include "qt/window/open_volume_dialog.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QPushButton>
#include <QScreen>
#include <utility>

#include "qt/services/text_conversion.h"
#include "qt/widgets/visible_text.h"
#include "ui_open_volume_dialog.h"

namespace pelmarix::qt {

OpenVolumeDialog::OpenVolumeDialog(QWidget* window, const QList<MacVolume>& volumes, Opener opener)
    : QDialog(window), ui_(std::make_unique<Ui::OpenVolumeDialog>()), opener_(std::move(opener)) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  const QFontMetrics metrics = fontMetrics();
  const QSize wanted(metrics.averageCharWidth() * 90, metrics.lineSpacing() * 18);
  resize(wanted.boundedTo(screen()->availableSize() * 9 / 10));
  ui_->volumes->header()->resizeSection(0, metrics.averageCharWidth() * 30);

  connect(ui_->volumes, &QTreeWidget::currentItemChanged, this, &OpenVolumeDialog::proposePartner);
  connect(ui_->chooseFolder, &QPushButton::clicked, this, &OpenVolumeDialog::chooseFolder);
  for (const MacVolume& volume : volumes) add(volume);
  ui_->volumes->setCurrentItem(ui_->volumes->topLevelItem(0));
  proposePartner();
  updateControls();
  (volumes_.isEmpty() ? static_cast<QWidget*>(ui_->chooseFolder) : ui_->volumes)->setFocus();
}

OpenVolumeDialog::~OpenVolumeDialog() = default;

qsizetype OpenVolumeDialog::add(const MacVolume& volume) {
  for (qsizetype i = 0; i < volumes_.size(); ++i)
    if (volumes_[i].path == volume.path) return i;
  volumes_ += volume;
  auto* row =
      new QTreeWidgetItem(ui_->volumes, {visibleInOneLine(volume.name), visibleInOneLine(volume.path)});
  row->setToolTip(0, row->text(0));
  row->setToolTip(1, row->text(1));
  return volumes_.size() - 1;
}

void OpenVolumeDialog::addFolder(const QString& path) {
  const auto volumeAt = [](const QString& folder) { return MacVolume{QFileInfo(folder).fileName(), folder}; };
  const qsizetype place = add(volumeAt(path));
  const QString partner = partnerPath(path);
  if (QFileInfo(partner).isDir()) add(volumeAt(partner));
  ui_->volumes->setCurrentItem(ui_->volumes->topLevelItem(static_cast<int>(place)));
  ui_->volumes->setFocus();
  proposePartner();  // the row may have been the current one before
  updateControls();
}

void OpenVolumeDialog::chooseFolder() {
  auto* panel = new QFileDialog(this, tr("Choose Folder"), QStringLiteral("/media"));
  panel->setAttribute(Qt::WA_DeleteOnClose);
  panel->setFileMode(QFileDialog::Directory);
  panel->setOption(QFileDialog::ShowDirsOnly);
  panel->setOption(QFileDialog::ReadOnly);
  connect(panel, &QFileDialog::fileSelected, this, &OpenVolumeDialog::addFolder);
  panel->open();
}

qsizetype OpenVolumeDialog::chosen() const {
  return ui_->volumes->indexOfTopLevelItem(ui_->volumes->currentItem());
}

void OpenVolumeDialog::proposePartner() {
  ui_->partner->clear();
  ui_->partner->addItem(tr("No other volume"), -1);
  if (chosen() < 0) return;
  const std::optional<qsizetype> partner = partnerOf(volumes_, chosen());
  for (qsizetype i = 0; i < volumes_.size(); ++i) {
    if (i == chosen()) continue;
    const QTreeWidgetItem& row = *ui_->volumes->topLevelItem(static_cast<int>(i));
    ui_->partner->addItem(tr("%1 (%2)").arg(row.text(0), row.text(1)), i);
    if (i == partner) ui_->partner->setCurrentIndex(ui_->partner->count() - 1);
  }
}

void OpenVolumeDialog::updateControls() {
  ui_->nothingMounted->setVisible(volumes_.isEmpty());
  ui_->partner->setEnabled(volumes_.size() > 1);
  ui_->buttons->button(QDialogButtonBox::Open)->setEnabled(!volumes_.isEmpty());
}

void OpenVolumeDialog::accept() {
  const qsizetype place = chosen();
  if (place < 0) return;
  std::vector<std::string> folders{toFileName(volumes_[place].path)};
  if (const qsizetype partner = ui_->partner->currentData().toLongLong(); partner >= 0) {
    const bool isSystem = areSystemAndData(volumes_[partner], volumes_[place]);
    folders.insert(isSystem ? folders.begin() : folders.end(), toFileName(volumes_[partner].path));
  }
  if (opener_(folders, this)) QDialog::accept();
}

}  // namespace pelmarix::qt
