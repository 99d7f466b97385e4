// The widget behind the history outline.
#pragma once

#include <QTreeView>

#include "qt/widgets/rows_view.h"

namespace pelmarix::qt {

class OutlineWidget final : public QTreeView, public RowsView {
  Q_OBJECT

 public:
  explicit OutlineWidget(QWidget* parent = nullptr);

  void keyboardSearch(const QString& typed) override { goToTyped(typed); }
  void reset() override;

 signals:
  /// With an invalid index for a double click that hit no row.
  void rowDoubleClicked(const QModelIndex& index);
  /// Whether there is a group to be expanded, and one to be collapsed. Told when groups have come, expanded
  /// or collapsed.
  void canExpandChanged(bool canExpand);
  void canCollapseChanged(bool canCollapse);

 protected:
  bool isOpen(const QModelIndex& row) const override { return isExpanded(row); }
  int indentationOfNames() const override { return 2 * indentation(); }
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override { openContextMenu(*event); }
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void initViewItemOption(QStyleOptionViewItem* option) const override;

 private:
  // By which Qt's outline would open a group.
  bool isArrowByAnotherButton(const QMouseEvent& event) const;
  void setExpandedGroups(int count);

  int expandableGroups_ = 0;
  int expandedGroups_ = 0;
};

}  // namespace pelmarix::qt
