// The widget behind the history outline.
#pragma once

#include <QTreeView>

#include "qt/widgets/rows_view.h"

namespace pelmarix::qt {

class OutlineWidget final : public RowsView<QTreeView> {
  Q_OBJECT
  Q_PROPERTY(QString placeholderText READ placeholderText WRITE setPlaceholderText)

 public:
  explicit OutlineWidget(QWidget* parent = nullptr);

  void setModel(QAbstractItemModel* model) override;

 signals:
  /// With an invalid index for a double click that hit no row.
  void rowDoubleClicked(const QModelIndex& index);

 protected:
  int nameColumn() const override { return 0; }
  QModelIndex rowAfter(const QModelIndex& row) const override;
  QModelIndex rowBefore(const QModelIndex& row) const override;
  QModelIndex shownRowAfter(const QModelIndex& row) const override;
  QModelIndex shownRow(const QModelIndex& row) const override;
  void fitColumns() override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
};

}  // namespace pelmarix::qt
