// How a cell of a table or outline is drawn.
#pragma once

#include <QString>
#include <QStyledItemDelegate>
#include <QTextLayout>

namespace pelmarix::qt {

/// Rows that have others below them are bold. A tab at the start of a text is a visible indentation; a text
/// is drawn on one line whatever it holds. Its fields stand from left to right, whatever script each is in. A
/// cell whose text is cut off says it in its tooltip, as far as a person would read it there.
class RowDelegate final : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  /// Matches of this text are marked; empty for none.
  void setMarkedText(const QString& text) { marked_ = text; }

  /// One height for all rows of a view, tables and outlines alike.
  static int rowHeight(const QFontMetrics& metrics) { return metrics.lineSpacing() * 5 / 4; }

  QString displayText(const QVariant& value, const QLocale& locale) const override;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

 private:
  void paintText(QPainter& painter, const QStyleOptionViewItem& cell, const QRect& rect) const;
  // Without what there is no room for. Of a text that holds a match, one stays.
  QString elided(const QStyleOptionViewItem& cell, int width) const;
  QList<QTextLayout::FormatRange> matches(const QString& drawn, const QTextCharFormat& mark) const;

  QString marked_;
};

}  // namespace pelmarix::qt
