// The main window's status bar: what is shown, and what the user is at in it.
#pragma once

#include <QAbstractItemView>
#include <QStatusBar>
#include <string>
#include <vector>

#include "qt/widgets/elided_label.h"

namespace pelmarix::qt {

/// Tells the folders that stand for the Mac's "/", how much there is in the lists, and, of the list that was
/// used last, what its current row is or how many rows are selected. What doesn't fit is left out in the
/// middle: the window may be as narrow as it could be without the bar.
class StatusBar final : public QStatusBar {
  Q_OBJECT

 public:
  explicit StatusBar(QWidget* parent = nullptr);

  /// To be called once, with the lists loaded: their rows may change their order later, not their number.
  void tellOf(const std::vector<std::string>& folders, const QAbstractItemView& history,
              const QAbstractItemView& receipts);

  /// Stands until the user goes to another row.
  void tellSaved(const std::string& path);

 private:
  void follow(const QAbstractItemView& list, int rowCount);

  ElidedLabel* row_;
  ElidedLabel* counts_;
  ElidedLabel* volume_;
  const QAbstractItemView* list_ = nullptr;  // the one that was used last
};

}  // namespace pelmarix::qt
