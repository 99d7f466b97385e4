// The widget behind the receipts table.
#pragma once

#include <QTableView>

#include "qt/widgets/rows_view.h"

namespace pelmarix::qt {

class TableWidget final : public RowsView<QTableView> {
  Q_OBJECT
  Q_PROPERTY(QString placeholderText READ placeholderText WRITE setPlaceholderText)

 public:
  explicit TableWidget(QWidget* parent = nullptr);

  void setModel(QAbstractItemModel* model) override;

 signals:
  /// The user opened the selected row: by a double click on it, by Return or by Space.
  void rowOpened();

 protected:
  int nameColumn() const override { return 1; }
  QModelIndex rowAfter(const QModelIndex& row) const override;
  QModelIndex rowBefore(const QModelIndex& row) const override;
  QModelIndex shownRowAfter(const QModelIndex& row) const override { return rowAfter(row); }
  QModelIndex shownRow(const QModelIndex& row) const override { return row; }
  void fitColumns() override;
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace pelmarix::qt
