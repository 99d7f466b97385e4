#include "qt/window/file_save_panel.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <utility>

#include "qt/services/text_conversion.h"
#include "qt/widgets/visible_text.h"

namespace pelmarix::qt {
namespace {

QStringList toQStrings(const std::vector<std::string>& texts) {
  QStringList list;
  for (const std::string& text : texts) list += toQString(text);
  return list;
}

}  // namespace

// The Mac's own panel judges names itself. Qt's takes quotes for marks around each of several names, and
// doesn't answer to a name that no file can have: here what is typed becomes a path, and where there can't be
// such a file the one who writes it is told. The panels of Linux desktops that Qt 6.4 can show, GTK's and the
// portal's, don't know which type a name gets, and ask about replacing another file than the one that is
// written.
class FileSavePanel::Dialog final : public QFileDialog {
 public:
  explicit Dialog(QWidget* parent) : QFileDialog(parent) {
    setAcceptMode(AcceptSave);
    setFileMode(AnyFile);
#ifndef Q_OS_MACOS
    setOption(DontUseNativeDialog);
    name_ = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    // After the dialog, which switches Save off for names that it takes for impossible.
    connect(name_, &QLineEdit::textChanged, this, [this](const QString& text) {
      auto* buttons = findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"));
      if (!text.isEmpty()) buttons->button(QDialogButtonBox::Save)->setEnabled(true);
    });
#endif
  }

  QString ownTitle() const { return ownTitle_; }
  void setOwnTitle(const QString& title) {
    ownTitle_ = title;
    setWindowTitle(title);
  }

  void setTypes(const QStringList& types) {
    types_ = types;
    setContents({tr("Text files")});
    setNameFilters(nameFilters() << tr("All files (*)"));
#ifdef Q_OS_MACOS
    setDefaultSuffix(types.value(0));
#endif
  }

  void setContents(const QStringList& names) {
    QStringList filters;
    for (const QString& name : names)
      filters += QStringLiteral("%1 (*.%2)").arg(name, types_.join(QLatin1String(" *.")));
    setNameFilters(filters);
  }

#ifdef Q_OS_MACOS
  QString chosenFile() const { return selectedFiles().value(0); }
#else
  QString chosenFile() const { return chosenFile_; }

 protected:
  void accept() override {
    if (name_->text().isEmpty()) return QFileDialog::accept();  // it may open a folder that is selected
    const QString path = typedPath();
    if (QFileInfo(path).isDir()) {
      setDirectory(path);
      name_->clear();
      return;
    }
    const QFileInfo file(withType(path));
    if (file.exists() && !file.isDir() && !isToBeReplaced(file)) return;
    chosenFile_ = file.filePath();
    QDialog::accept();  // NOLINT(bugprone-parent-virtual-call): the file dialog's would judge the name itself
  }

 private:
  QString typedPath() {
    const QString name = name_->text();
    const QString first = name.section(QLatin1Char('/'), 0, 0);
    if (!first.startsWith(QLatin1Char('~')) || first.contains(QLatin1Char('"')))
      return directory().absoluteFilePath(name);
    // Whose home folder that is only the dialog knows, and it tells for what stands in its line, unless it
    // has something selected to tell.
    const QSignalBlocker blocker(name_);
    findChild<QListView*>(QStringLiteral("listView"))->clearSelection();
    name_->setText(first);
    const QString home = selectedFiles().value(0);
    name_->setText(name);
    return home + name.mid(first.size());
  }

  QString withType(const QString& path) const {
    const bool isFolder = path.endsWith(QLatin1Char('/'));
    if (isFolder || types_.isEmpty() || types_.contains(QFileInfo(path).suffix(), Qt::CaseInsensitive))
      return path;
    return path + (path.endsWith(QLatin1Char('.')) ? QString() : QStringLiteral(".")) + types_.front();
  }

  bool isToBeReplaced(const QFileInfo& file) {
    QMessageBox question(QMessageBox::Warning, windowTitle(),
                         tr("%1 already exists.\nDo you want to replace it?").arg(visible(file.fileName())),
                         QMessageBox::Yes | QMessageBox::No, this);
    question.setTextFormat(Qt::PlainText);
    question.setDefaultButton(QMessageBox::No);
    return question.exec() == QMessageBox::Yes;
  }

  QLineEdit* name_;
  QString chosenFile_;
#endif

 private:
  QString ownTitle_;
  QStringList types_;
};

FileSavePanel::FileSavePanel(QWidget* parent) : dialog_(new Dialog(parent)) {}

FileSavePanel::~FileSavePanel() {
  // Later, since the dialog may be telling just now that it has ended.
  if (dialog_ != nullptr) dialog_->deleteLater();
}

bool FileSavePanel::bringToFront(const QWidget& parent, const std::string& title) {
  for (auto* child : parent.findChildren<QFileDialog*>(QString(), Qt::FindDirectChildrenOnly)) {
    auto* panel = dynamic_cast<Dialog*>(child);
    if (panel == nullptr || panel->ownTitle() != toQString(title)) continue;
    if (!panel->isVisible()) continue;  // it has ended and goes soon
    panel->setWindowState(panel->windowState() & ~Qt::WindowMinimized);
    panel->raise();
    panel->activateWindow();
    return true;
  }
  return false;
}

void FileSavePanel::setCanCreateDirectories(bool canCreate) {
  dialog_->setOption(QFileDialog::ReadOnly, !canCreate);
}

void FileSavePanel::setAllowedFileTypes(const std::vector<std::string>& types) {
  dialog_->setTypes(toQStrings(types));
}

void FileSavePanel::setTitle(const std::string& title) { dialog_->setOwnTitle(toQString(title)); }

void FileSavePanel::setContents(const std::vector<std::string>& names) {
  dialog_->setContents(toQStrings(names));
}

std::size_t FileSavePanel::chosenContent() const {
  return static_cast<std::size_t>(dialog_->nameFilters().indexOf(dialog_->selectedNameFilter()));
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
  const QString file = dialog_->chosenFile();
  if (file.isEmpty()) return std::nullopt;
  return toFileName(file);
}

}  // namespace pelmarix::qt
