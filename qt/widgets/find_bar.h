// The bar below a window's content that finds text in it.
#pragma once

#include <QTimer>
#include <QWidget>
#include <memory>

#include "qt/widgets/searchable.h"

namespace Ui {
class FindBar;
}

namespace pelmarix::qt {

/// Hidden until it is opened. Escape closes it and gives the focus back to what was searched.
class FindBar final : public QWidget {
  Q_OBJECT

 public:
  explicit FindBar(QWidget* parent = nullptr);
  ~FindBar() override;

  /// What is searched from now on: one object, which isn't owned and is there whenever the bar is used.
  void setTarget(QWidget& widget, Searchable& searchable);
  void open();
  void endSearch();
  void findNext();
  void findPrevious();
  /// To be called when what is searched has changed.
  void countMatches();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void find(SearchStart start, SearchDirection direction);
  // Shows it beside the text, and tells it to a screen reader that is in there.
  void setOutcome(const QString& outcome);
  void setPlaceholderColor();

  std::unique_ptr<Ui::FindBar> ui_;
  QString usualDescription_;
  // Matches are counted when the one that was found is on screen.
  QTimer counting_;
  QWidget* targetWidget_ = nullptr;
  Searchable* target_ = nullptr;
};

}  // namespace pelmarix::qt
