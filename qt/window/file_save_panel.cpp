#include "qt/window/file_save_panel.h"

#include <QFileDialog>
#include <QLineEdit>
#include <utility>

#include "qt/services/text_conversion.h"

namespace pelmarix::qt {

class FileSavePanel::Dialog final : public QFileDialog {
 public:
  explicit Dialog(QWidget* parent) : QFileDialog(parent) {
    setAcceptMode(AcceptSave);
    setFileMode(AnyFile);
    // The Mac's own panel completes names by itself; the dialogs of other desktops don't.
#ifndef Q_OS_MACOS
    setOption(DontUseNativeDialog);
#endif
  }

  void setTypes(const QStringList& types) {
    types_ = types;
    QStringList patterns;
    for (const QString& type : types) patterns += QStringLiteral("*.") + type;
    setNameFilters({tr("Text files (%1)").arg(patterns.join(QLatin1Char(' '))), tr("All files (*)")});
#ifdef Q_OS_MACOS
    setDefaultSuffix(types.value(0));
#endif
  }

 protected:
  void accept() override {
    // Before the dialog asks whether an existing file is to be replaced, so that it asks for the right one.
    // There is no public way: selectFile leaves the name alone while it is being typed, and the default
    // suffix is not added to "report 10.14".
    auto* name = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    if (name != nullptr && needsType(name->text()))
      name->setText(name->text() + QLatin1Char('.') + types_.value(0));
    QFileDialog::accept();
  }

 private:
  bool needsType(const QString& name) const {
    if (types_.isEmpty() || name.isEmpty() || name.endsWith(QLatin1Char('/'))) return false;
    const QFileInfo file(directory(), name);
    return !file.isDir() && !types_.contains(file.suffix(), Qt::CaseInsensitive);
  }

  QStringList types_;
};

FileSavePanel::FileSavePanel(QWidget* parent) : dialog_(new Dialog(parent)) {}

FileSavePanel::~FileSavePanel() {
  // Later, since the dialog may be telling just now that it has ended.
  if (dialog_ != nullptr) dialog_->deleteLater();
}

void FileSavePanel::setCanCreateDirectories(bool canCreate) {
  dialog_->setOption(QFileDialog::ReadOnly, !canCreate);
}

void FileSavePanel::setAllowedFileTypes(const std::vector<std::string>& types) {
  QStringList list;
  for (const std::string& type : types) list += toQString(type);
  dialog_->setTypes(list);
}

void FileSavePanel::beginWithCompletionHandler(std::function<void(int response)> handler) {
  // The dialog keeps the panel alive until it ends.
  QObject::connect(
      dialog_, &QDialog::finished, dialog_,
      [self = shared_from_this(), handler = std::move(handler)](int result) {
        handler(result == QDialog::Accepted ? platform::modalResponseOK : platform::modalResponseCancel);
      },
      Qt::SingleShotConnection);
  dialog_->show();
}

std::optional<std::string> FileSavePanel::path() const {
  const QStringList files = dialog_->selectedFiles();
  if (files.isEmpty()) return std::nullopt;
  return toFileName(files.first());
}

}  // namespace pelmarix::qt
