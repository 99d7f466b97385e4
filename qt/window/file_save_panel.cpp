#include "qt/window/file_save_panel.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QSettings>
#include <utility>

#include "qt/services/text_conversion.h"

namespace pelmarix::qt {
namespace {

/// Qt's dialog keeps its own settings in a file, and this program writes nothing but its user defaults. Below
/// what is no folder no file can be made, so that none is left however the program ends.
void discardSettingsOfDialogs() {
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
}

}  // namespace

class FileSavePanel::Dialog final : public QFileDialog {
 public:
  explicit Dialog(QWidget* parent) : QFileDialog(parent) {
    setAcceptMode(AcceptSave);
    setFileMode(AnyFile);
    setModal(false);
    // The Mac's own panel completes names by itself; the dialogs of other desktops don't, so Qt's is used
    // there.
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

FileSavePanel::FileSavePanel(QWidget* parent) {
  discardSettingsOfDialogs();
  dialog_ = new Dialog(parent);
}

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
      [self = shared_from_this(), handler = std::move(handler)](int result) mutable {
        const std::shared_ptr<FileSavePanel> panel = std::move(self);
        const auto handlerOnce = std::move(handler);
        handlerOnce(result == QDialog::Accepted ? platform::modalResponseOK : platform::modalResponseCancel);
      });
  dialog_->show();
}

std::optional<std::string> FileSavePanel::path() const {
  const QStringList files = dialog_->selectedFiles();
  if (files.isEmpty()) return std::nullopt;
  return toFileName(files.first());
}

}  // namespace pelmarix::qt
