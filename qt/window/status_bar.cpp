#include "qt/window/status_bar.h"

#include <QApplication>
#include <QItemSelectionModel>
#include <QStyle>

#include "qt/services/text_conversion.h"
#include "qt/widgets/visible_text.h"

namespace pelmarix::qt {
namespace {

QString counted(int count, const QString& one, const QString& several) {
  return QString::number(count) + QLatin1Char(' ') + (count == 1 ? one : several);
}

int selectedRowCount(const QItemSelectionModel& rows) {
  int count = 0;
  for (const QItemSelectionRange& range : rows.selection()) count += range.height();
  return count;
}

// A row that doesn't say what it is tells what stands beside its first cell.
QString textOf(const QModelIndex& row) {
  const QString kind = row.data(Qt::ToolTipRole).toString();
  if (kind.isEmpty()) return row.data(Qt::AccessibleDescriptionRole).toString();
  return row.data().toString().trimmed() + QLatin1String(": ") + kind;
}

}  // namespace

StatusBar::StatusBar(QWidget* parent)
    : QStatusBar(parent),
      row_(new ElidedLabel(this)),
      counts_(new ElidedLabel(this)),
      volume_(new ElidedLabel(this)) {
  setSizeGripEnabled(false);
  // It takes what the others leave of the bar, and some of it in any case.
  row_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  row_->setMinimumWidth(fontMetrics().averageCharWidth() * 20);
  // In line with what stands above the bar.
  setContentsMargins(style()->pixelMetric(QStyle::PM_LayoutLeftMargin), 0,
                     style()->pixelMetric(QStyle::PM_LayoutRightMargin), 0);
  volume_->setContentsMargins(fontMetrics().averageCharWidth() * 2, 0, 0, 0);
  addWidget(row_, 1);
  addPermanentWidget(counts_);
  addPermanentWidget(volume_);
}

void StatusBar::tellOf(const std::vector<std::string>& folders, const QAbstractItemView& history,
                       const QAbstractItemView& receipts) {
  const QAbstractItemModel& groups = *history.model();
  const int groupCount = groups.rowCount();
  int entryCount = 0;
  for (int group = 0; group < groupCount; ++group) entryCount += groups.rowCount(groups.index(group, 0));
  const int receiptCount = receipts.model()->rowCount();
  counts_->setText(QStringList{counted(groupCount, tr("group"), tr("groups")),
                               counted(entryCount, tr("entry"), tr("entries")),
                               counted(receiptCount, tr("receipt"), tr("receipts"))}
                       .join(QLatin1String(", ")));
  QStringList paths;
  for (const std::string& folder : folders) paths += visibleInOneLine(toQString(folder));
  volume_->setText(paths.join(QLatin1String(", ")));
  follow(history, groupCount + entryCount);
  follow(receipts, receiptCount);
}

void StatusBar::follow(const QAbstractItemView& list, int rowCount) {
  const auto tell = [this, &list, rowCount] {
    list_ = &list;
    const QItemSelectionModel& rows = *list.selectionModel();
    const int selected = selectedRowCount(rows);
    const QString text = selected > 1 ? tr("%1 of %2 selected").arg(selected).arg(rowCount)
                                      : textOf(rows.currentIndex().siblingAtColumn(0));
    row_->setText(visibleInOneLine(text));
  };
  connect(list.selectionModel(), &QItemSelectionModel::selectionChanged, this, tell);
  connect(list.selectionModel(), &QItemSelectionModel::currentRowChanged, this, tell);
  connect(qApp, &QApplication::focusChanged, this, [this, &list, tell](QWidget* /*before*/, QWidget* now) {
    if (now == &list && list_ != &list) tell();
  });
}

void StatusBar::tellSaved(const std::string& path) {
  row_->setText(tr("Saved %1").arg(visibleInOneLine(toQString(path))));
}

}  // namespace pelmarix::qt
