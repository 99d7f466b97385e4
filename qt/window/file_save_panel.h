// The save panel over Qt's file dialog.
#pragma once

#include <QPointer>
#include <memory>

#include "platform/save_panel.h"

class QWidget;

namespace pelmarix::qt {

class FileSavePanel final : public platform::SavePanel, public std::enable_shared_from_this<FileSavePanel> {
 public:
  /// `parent`, null for none, is the window that the panel stands before; it goes on working.
  explicit FileSavePanel(QWidget* parent);
  ~FileSavePanel() override;

  /// Shows the panel of a title (without: that of Qt's own) that is open before a window, in front of it;
  /// false when none is.
  static bool bringToFront(const QWidget& parent, const std::string& title = {});

  void setCanCreateDirectories(bool canCreate) override;
  void setAllowedFileTypes(const std::vector<std::string>& types) override;
  void setTitle(const std::string& title) override;
  void setContents(const std::vector<std::string>& names) override;
  std::size_t chosenContent() const override;
  void beginWithCompletionHandler(std::function<void(int response)> handler) override;
  std::optional<std::string> path() const override;

 private:
  class Dialog;

  QPointer<Dialog> dialog_;  // its parent may be gone first, and the dialog with it
};

}  // namespace pelmarix::qt
