// What the outline and the table have in common as widgets.
#pragma once

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QPainter>

#include "qt/widgets/palette_colors.h"
#include "qt/widgets/row_delegate.h"
#include "qt/widgets/row_text.h"
#include "qt/widgets/searchable.h"
#include "qt/widgets/text_search.h"

namespace pelmarix::qt {

/// Whole rows are selected, copied and dragged as text; typing goes to the row whose name begins so; an empty
/// list says what its placeholder says. `View` is the Qt view that is extended.
template <typename View>
class RowsView : public View, public Searchable {
 public:
  explicit RowsView(QWidget* parent) : View(parent), delegate_(new RowDelegate(this)) {
    this->setItemDelegate(delegate_);
    this->setEditTriggers(QAbstractItemView::NoEditTriggers);
    this->setSelectionMode(QAbstractItemView::ExtendedSelection);
    this->setSelectionBehavior(QAbstractItemView::SelectRows);
    this->setAlternatingRowColors(true);
    this->setDragEnabled(true);
    this->setDragDropMode(QAbstractItemView::DragOnly);
    this->setTabKeyNavigation(false);
  }

  QString placeholderText() const { return placeholderText_; }
  void setPlaceholderText(const QString& text) { placeholderText_ = text; }

  /// Puts the selected rows on the clipboard; nothing selected leaves it alone.
  void copyRows() {
    // Not selectedRows(), which looks through the whole selection again for each row of it.
    QModelIndexList rows;
    for (const QItemSelectionRange& range : this->selectionModel()->selection())
      for (int row = range.top(); row <= range.bottom(); ++row)
        rows += this->model()->index(row, 0, range.parent());
    if (!rows.isEmpty()) QApplication::clipboard()->setMimeData(rowsAsMimeData(rows));
  }

  void markMatches(const QString& text) override {
    delegate_->setMarkedText(text);
    this->viewport()->update();
  }

  bool selectMatch(const QString& text, SearchStart start, SearchDirection direction) override {
    const QModelIndex current = this->currentIndex().siblingAtColumn(0);
    const auto matches = [&](const QModelIndex& row) {
      for (int column = 0; column < this->model()->columnCount(); ++column)
        if (indexOfIgnoringCase(row.siblingAtColumn(column).data().toString(), text) >= 0) return true;
      return false;
    };
    const QModelIndex match = firstRow(current, start, matches, [&](const QModelIndex& row) {
      return direction == SearchDirection::forward ? rowAfter(row) : rowBefore(row);
    });
    if (match.isValid()) selectAlone(match);
    return match.isValid();
  }

  /// Goes to the next row whose name begins with what was typed without a pause.
  void keyboardSearch(const QString& typed) override {
    if (!isTyping()) typed_.clear();
    sinceTyped_.start();
    // The same letter again and again goes from one row to the next.
    const bool isRepeated = typed_ == typed;
    if (!isRepeated) typed_ += typed;
    const auto matches = [&](const QModelIndex& row) {
      const QString name = row.siblingAtColumn(nameColumn()).data().toString();
      return indexOfIgnoringCase(QStringView(name).trimmed().left(typed_.size()), typed_) == 0;
    };
    const bool isFirst = typed_ == typed;
    const QModelIndex match = firstRow(shownRow(this->currentIndex().siblingAtColumn(0)),
                                       isFirst ? SearchStart::pastSelection : SearchStart::atSelection,
                                       matches, [&](const QModelIndex& row) { return shownRowAfter(row); });
    if (match.isValid()) selectAlone(match);
  }

 protected:
  virtual int nameColumn() const = 0;
  /// The row after `row`, those in collapsed groups included; invalid after the last. An invalid `row` stands
  /// for the place before the first and after the last.
  virtual QModelIndex rowAfter(const QModelIndex& row) const = 0;
  virtual QModelIndex rowBefore(const QModelIndex& row) const = 0;
  /// As rowAfter, from a row that is shown and without those in collapsed groups.
  virtual QModelIndex shownRowAfter(const QModelIndex& row) const = 0;
  /// The row itself, or the collapsed group that hides it.
  virtual QModelIndex shownRow(const QModelIndex& row) const = 0;
  /// Gives the columns the widths that their usual content needs.
  virtual void fitColumns() = 0;

  /// True while the user types the beginning of a name.
  bool isTyping() const {
    return sinceTyped_.isValid() && sinceTyped_.elapsed() <= QApplication::keyboardInputInterval();
  }

  /// The width that a cell needs for `text`, in the view's font.
  int cellWidth(const QString& text) const {
    const int margin = this->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1;
    return this->fontMetrics().horizontalAdvance(text) + 4 * margin;
  }

  void paintEvent(QPaintEvent* event) override {
    View::paintEvent(event);
    if (this->model() == nullptr || this->model()->rowCount() > 0) return;
    QPainter painter(this->viewport());
    painter.setPen(placeholderColor(this->palette()));
    const int margin = this->fontMetrics().averageCharWidth() * 2;
    painter.drawText(this->viewport()->rect().adjusted(margin, margin, -margin, -margin),
                     Qt::AlignCenter | Qt::TextWordWrap, placeholderText_);
  }

  void keyPressEvent(QKeyEvent* event) override {
    if (event->matches(QKeySequence::Copy)) {
      copyRows();
      event->accept();
      return;
    }
    View::keyPressEvent(event);
  }

  void changeEvent(QEvent* event) override {
    View::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) fitColumns();
  }

 private:
  /// Whichever keys are held down just now.
  void selectAlone(const QModelIndex& row) {
    this->selectionModel()->setCurrentIndex(row,
                                            QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    this->scrollTo(row);
  }

  /// The first row from `current` on, all the way round, that `matches`; `next` goes from one to the other.
  template <typename Matches, typename Next>
  QModelIndex firstRow(const QModelIndex& current, SearchStart start, Matches matches, Next next) const {
    if (this->model() == nullptr || this->model()->rowCount() == 0) return {};
    QModelIndex first = start == SearchStart::atSelection ? current : next(current);
    if (!first.isValid()) first = next({});
    QModelIndex row = first;
    do {
      if (matches(row)) return row;
      row = next(row);
      if (!row.isValid()) row = next({});
    } while (row != first);
    return {};
  }

  RowDelegate* delegate_;
  QString placeholderText_;
  QString typed_;
  QElapsedTimer sinceTyped_;
};

}  // namespace pelmarix::qt
