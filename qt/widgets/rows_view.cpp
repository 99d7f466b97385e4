#include "qt/widgets/rows_view.h"

#include <QApplication>
#include <QClipboard>
#include <QItemSelectionModel>
#include <QMenu>
#include <algorithm>

#include "qt/widgets/placeholder.h"
#include "qt/widgets/row_text.h"
#include "qt/widgets/text_search.h"

namespace pelmarix::qt {
namespace {

// An invalid index stands for the place before the first row and after the last.

// The row after `row`, or after all rows below it when those are not to be entered.
QModelIndex rowAfter(const QAbstractItemModel& model, QModelIndex row, bool isEntered) {
  if (isEntered && model.rowCount(row) > 0) return model.index(0, 0, row);
  while (row.isValid()) {
    const QModelIndex next = row.siblingAtRow(row.row() + 1);
    if (next.isValid()) return next;
    row = row.parent();
  }
  return {};
}

// The row before `row`, those below others included.
QModelIndex rowBefore(const QAbstractItemModel& model, const QModelIndex& row) {
  if (row.isValid() && row.row() == 0) return row.parent();
  QModelIndex before = row.isValid() ? row.siblingAtRow(row.row() - 1) : QModelIndex();
  while (const int count = model.rowCount(before)) before = model.index(count - 1, 0, before);
  return before;
}

// The first that holds a text; -1 when none does.
int columnWith(const QModelIndex& row, const QString& text) {
  for (int column = 0; column < row.model()->columnCount(); ++column)
    if (indexOfIgnoringCase(row.siblingAtColumn(column).data().toString(), text) >= 0) return column;
  return -1;
}

// The first row that `matches`; `next` goes from one to the other.
template <typename Matches, typename Next>
QModelIndex firstMatch(const QModelIndex& current, SearchStart start, Matches matches, Next next) {
  if (start == SearchStart::upToSelection && !current.isValid()) return {};
  const bool isFromEdge = start == SearchStart::atEdge || start == SearchStart::upToSelection;
  const bool isFromCurrent = start == SearchStart::atSelection && current.isValid();
  QModelIndex row = isFromCurrent ? current : next(isFromEdge ? QModelIndex() : current);
  for (; row.isValid(); row = next(row)) {
    if (matches(row)) return row;
    if (start == SearchStart::upToSelection && row == current) break;
  }
  return {};
}

}  // namespace

RowsView::RowsView(QAbstractItemView& view, QHeaderView& header)
    : view_(view), header_(header), delegate_(new RowDelegate(&view)) {
  view_.setItemDelegate(delegate_);
  view_.setEditTriggers(QAbstractItemView::NoEditTriggers);
  view_.setSelectionMode(QAbstractItemView::ExtendedSelection);
  view_.setSelectionBehavior(QAbstractItemView::SelectRows);
  view_.setAlternatingRowColors(true);
  view_.setDragEnabled(true);
  view_.setDragDropMode(QAbstractItemView::DragOnly);
  view_.setTabKeyNavigation(false);
  view_.setTextElideMode(Qt::ElideMiddle);  // names of one maker begin alike
  view_.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  header_.setHighlightSections(false);
  header_.setStretchLastSection(false);
  header_.setSectionsMovable(false);
}

void RowsView::setColumns(const std::vector<ColumnDescription>& columns) {
  columns_ = columns;
  const auto name = std::find_if(columns.begin(), columns.end(),
                                 [](const ColumnDescription& column) { return column.usualText.isEmpty(); });
  nameColumn_ = static_cast<int>(name - columns.begin());
  fitColumns();
}

int RowsView::widthForText(const QString& text) const {
  const int margin = view_.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &view_) + 1;
  return view_.fontMetrics().horizontalAdvance(text) + 4 * margin;
}

int RowsView::usualWidth(int column) const {
  return widthForText(columns_[static_cast<std::size_t>(column)].usualText);
}

void RowsView::fitColumns() {
  for (int column = 0; column < std::ssize(columns_); ++column)
    if (column != nameColumn_) header_.resizeSection(column, usualWidth(column));
  fitNames();
}

void RowsView::fitNames() {
  const auto widthForCharacters = [this](int count) {
    return widthForText(QString(count, QLatin1Char('0'))) + indentationOfNames();
  };
  const int least = widthForCharacters(22);
  const int usual = widthForCharacters(columns_[static_cast<std::size_t>(nameColumn_)].usualLength);
  const int last = static_cast<int>(std::ssize(columns_)) - 1;
  int room = view_.viewport()->width();
  for (int column = 0; column <= last; ++column) {
    if (column == nameColumn_) continue;
    room -= column == last ? usualWidth(column) : header_.sectionSize(column);
  }
  int width = nameColumn_ == last ? room : std::min(room, std::max(usual, room / 2));
  if (room < least) width = std::max(std::min(usual, view_.viewport()->width()), least);
  header_.resizeSection(nameColumn_, width);
  if (nameColumn_ != last) header_.resizeSection(last, usualWidth(last) + std::max(room - width, 0));
}

QModelIndexList RowsView::selectedRows() const {
  // Not Qt's own, which looks through the whole selection again for each row of it.
  QModelIndexList rows;
  for (const QItemSelectionRange& range : view_.selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row)
      rows += view_.model()->index(row, 0, range.parent());
  return rows;
}

void RowsView::copy() const {
  const QModelIndexList rows = selectedRows();
  if (!rows.isEmpty()) QApplication::clipboard()->setMimeData(rowsAsMimeData(rows));
}

void RowsView::copyNames() const {
  const QModelIndexList rows = selectedRows();
  if (!rows.isEmpty()) QApplication::clipboard()->setText(cellsAsText(rows, nameColumn_));
}

bool RowsView::takesKey(const QKeyEvent& key) {
  if (key.matches(QKeySequence::Copy)) {
    copy();
    return true;
  }
  // Of the two keys for it, Qt knows the menu key alone on X11.
  if (key.key() != Qt::Key_F10 || key.modifiers() != Qt::ShiftModifier) return false;
  openContextMenuAtCurrentRow();
  return true;
}

void RowsView::openContextMenu(const QContextMenuEvent& event) {
  if (event.reason() == QContextMenuEvent::Keyboard) return openContextMenuAtCurrentRow();
  openContextMenu(event.globalPos());
}

void RowsView::openContextMenuAtCurrentRow() {
  const QRect shown = view_.viewport()->rect();
  const QRect row = view_.visualRect(view_.currentIndex()).intersected(shown);
  openContextMenu(view_.viewport()->mapToGlobal(row.isEmpty() ? shown.center() : row.bottomLeft()));
}

void RowsView::openContextMenu(QPoint place) {
  auto* const menu = new QMenu(&view_);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->addActions(view_.actions());
  menu->popup(place);
}

void RowsView::markMatches(const QString& text) {
  delegate_->setMarkedText(text);
  view_.viewport()->update();
}

bool RowsView::selectMatchAhead(const QString& text, SearchStart start, SearchDirection direction) {
  const QAbstractItemModel& model = *view_.model();
  const auto matches = [&text](const QModelIndex& row) { return columnWith(row, text) >= 0; };
  const auto next = [&](const QModelIndex& row) {
    return direction == SearchDirection::forward ? rowAfter(model, row, true) : rowBefore(model, row);
  };
  const QModelIndex match = firstMatch(view_.currentIndex().siblingAtColumn(0), start, matches, next);
  if (!match.isValid()) return false;
  selectAlone(match);
  view_.scrollTo(match.siblingAtColumn(columnWith(match, text)));
  return true;
}

MatchCount RowsView::countMatches(const QString& text) const {
  const QAbstractItemModel& model = *view_.model();
  const QModelIndex selected = view_.currentIndex().siblingAtColumn(0);
  MatchCount count;
  for (QModelIndex row = rowAfter(model, {}, true); row.isValid(); row = rowAfter(model, row, true)) {
    if (columnWith(row, text) < 0) continue;
    ++count.matches;
    if (row == selected) count.selected = count.matches;
  }
  return count;
}

QString RowsView::selectedMatchInWords() const {
  const QModelIndex firstCell = view_.currentIndex().siblingAtColumn(0);
  const QString name = firstCell.data().toString().trimmed();
  const QString description = firstCell.data(Qt::AccessibleDescriptionRole).toString();
  return description.isEmpty() ? name : name + QStringLiteral(", ") + description;
}

bool RowsView::isTyping() const {
  return sinceTyped_.isValid() && sinceTyped_.elapsed() <= QApplication::keyboardInputInterval();
}

void RowsView::goToTyped(const QString& typed) {
  if (!isTyping()) typed_.clear();
  sinceTyped_.start();
  // The same letter again and again goes from one row to the next.
  if (typed_ != typed) typed_ += typed;
  const bool isFirst = typed_ == typed;
  const auto matches = [&](const QModelIndex& row) {
    const QString name = row.siblingAtColumn(nameColumn_).data().toString();
    return indexOfIgnoringCase(QStringView(name).trimmed().left(typed_.size()), typed_) == 0;
  };
  const auto next = [&](const QModelIndex& row) {
    return rowAfter(*view_.model(), row, !row.isValid() || isOpen(row));
  };
  // From a row that is not shown: from the one that hides it.
  QModelIndex current = view_.currentIndex().siblingAtColumn(0);
  if (const QModelIndex group = current.parent(); group.isValid() && !isOpen(group)) current = group;
  QModelIndex match =
      firstMatch(current, isFirst ? SearchStart::pastSelection : SearchStart::atSelection, matches, next);
  if (!match.isValid()) match = firstMatch(current, SearchStart::upToSelection, matches, next);
  if (match.isValid()) selectAlone(match);
}

void RowsView::selectAlone(const QModelIndex& row) {
  if (!row.isValid()) return;
  view_.selectionModel()->setCurrentIndex(row,
                                          QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  view_.scrollTo(row);
}

void RowsView::setPlaceholderText(const QString& text) {
  placeholderText_ = text;
  view_.setAccessibleDescription(text);
  view_.viewport()->update();
}

void RowsView::showAction(QWidget& action) {
  action_ = &action;
  placeAction();
  action.raise();
  action.show();
}

void RowsView::placeAction() {
  if (action_ == nullptr) return;
  const QSize size = action_->sizeHint();
  const QRect room = view_.viewport()->rect();
  // Below the middle, but not beyond the lower edge: the text ends above it.
  const int top = std::min(room.height() * 11 / 20, room.height() - size.height());
  const QPoint place(room.center().x() - size.width() / 2, top);
  action_->setGeometry({view_.viewport()->mapTo(view_.parentWidget(), place), size});
}

void RowsView::paintPlaceholder() {
  if (view_.model() != nullptr && view_.model()->rowCount() == 0)
    qt::paintPlaceholder(view_, placeholderText_, action_);
}

}  // namespace pelmarix::qt
