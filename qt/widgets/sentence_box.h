// A message that is a sentence, often about a path.
#pragma once

#include <QMessageBox>
#include <string>

namespace pelmarix::qt {

/// A box with the sentence alone. Nothing in it is markup; signs stand for what can't be
/// seen, and for the middle of a very long one.
class SentenceBox final : public QMessageBox {
 public:
  /// `parent`, null for none, is the window that it belongs to.
  SentenceBox(QWidget* parent, const std::string& sentence);

  /// Opens one over `window`; it goes when it is closed.
  static void tell(QWidget* window, const std::string& sentence);
};

}  // namespace pelmarix::qt
