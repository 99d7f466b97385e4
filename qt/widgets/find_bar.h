// The bar below a window's content that finds text in it.
#pragma once

#include <QKeySequence>
#include <QTimer>
#include <QWidget>
#include <memory>
#include <vector>

#include "qt/widgets/announcer.h"
#include "qt/widgets/searchable.h"

namespace Ui {
class FindBar;
}

namespace pelmarix::qt {

/// The keys for the next match and the one before, in any window.
inline QList<QKeySequence> findNextKeys() {
  return {QKeySequence(QStringLiteral("Ctrl+G")), QKeySequence(QStringLiteral("F3"))};
}
inline QList<QKeySequence> findPreviousKeys() {
  return {QKeySequence(QStringLiteral("Ctrl+Shift+G")), QKeySequence(QStringLiteral("Shift+F3"))};
}

/// Hidden until it is opened. Escape closes it and gives the focus back to what was searched.
class FindBar final : public QWidget {
  Q_OBJECT

 public:
  explicit FindBar(QWidget* parent = nullptr);
  ~FindBar() override;

  /// One of the parts that are searched, in their order: one object, which isn't owned and is there whenever
  /// the bar is used. The first is searched until another one is chosen.
  void addPart(QWidget& widget, Searchable& searchable);
  /// The part that is searched from now on, alone or before the others; what is no part changes nothing.
  void setPart(const QWidget& widget);
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
  struct Part {
    QWidget* widget;
    Searchable* searchable;
  };
  void find(SearchStart start, SearchDirection direction);
  bool selectMatch(const QString& text, SearchStart start, SearchDirection direction);
  bool isAllSearched() const;
  QString notFound() const;
  // By the placeholder, and by the marks in the parts that are searched.
  void showScope();
  // Shows it beside the text, and tells it to a screen reader, behind what was found.
  void setOutcome(const QString& outcome, const QString& found = {});
  void setPlaceholderColor();

  std::unique_ptr<Ui::FindBar> ui_;
  QString usualDescription_;
  // Matches are counted when the one that was found is on screen.
  QTimer counting_;
  Announcer announcer_{this};
  std::vector<Part> parts_;
  std::size_t current_ = 0;
};

}  // namespace pelmarix::qt
