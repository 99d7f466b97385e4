// The widget behind the receipts table.
#pragma once

#include <QTableView>

#include "qt/widgets/rows_view.h"

namespace pelmarix::qt {

class TableWidget final : public QTableView, public RowsView {
  Q_OBJECT

 public:
  explicit TableWidget(QWidget* parent = nullptr);

  void keyboardSearch(const QString& typed) override { goToTyped(typed); }

 signals:
  /// The user opened the selected row: by a double click on it, by Return or by Space.
  void rowOpened();

 protected:
  bool isOpen(const QModelIndex& /*row*/) const override { return false; }
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override { openContextMenu(*event); }
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void initViewItemOption(QStyleOptionViewItem* option) const override;

 private:
  void fitRows();
};

}  // namespace pelmarix::qt
