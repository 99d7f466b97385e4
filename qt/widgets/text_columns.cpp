#include "qt/widgets/text_columns.h"

#include <QFontMetricsF>
#include <algorithm>
#include <vector>

#include "base/utf8.h"
#include "qt/services/text_conversion.h"
#include "qt/widgets/visible_text.h"

namespace pelmarix::qt {
namespace {

// The widest that isn't more than twice as wide as those in the middle.
qreal columnWidth(std::vector<qreal>& widths, qreal alwaysUsual) {
  if (widths.empty()) return 0;
  const auto middle = widths.begin() + std::ssize(widths) / 2;
  std::nth_element(widths.begin(), middle, widths.end());
  const qreal widestUsual = std::max(2 * *middle, alwaysUsual);
  qreal widest = 0;
  for (const qreal width : widths)
    if (width <= widestUsual) widest = std::max(widest, width);
  return widest;
}

}  // namespace

QList<QTextOption::Tab> tabStops(const TextIndex& text, const QList<QTextOption::TabType>& types,
                                 const QFont& font) {
  if (types.isEmpty()) return {};
  constexpr std::size_t mostLines = 10'000;
  constexpr std::size_t mostBytes = 2048;  // of a line
  const QFontMetricsF metrics(font);
  const qreal letter = metrics.horizontalAdvance(QLatin1Char('0'));
  const qreal gap = 2 * letter;
  const qreal alwaysUsual = 20 * letter;
  const auto widthOf = [&](std::string_view field) {
    return isAscii(field) ? static_cast<qreal>(field.size()) * letter
                          : metrics.horizontalAdvance(visible(toQString(field)));
  };
  std::vector<std::vector<qreal>> widths(static_cast<std::size_t>(types.size()));
  const std::size_t lines = std::min(text.lineCount(), mostLines);
  for (std::size_t i = 0; i < lines; ++i) {
    std::string_view rest = text.part(text.line(i * text.lineCount() / lines)).substr(0, mostBytes);
    for (auto column = widths.begin(); column != widths.end(); ++column) {
      const std::size_t tab = rest.find('\t');
      if (tab == std::string_view::npos) break;
      column->push_back(widthOf(rest.substr(0, tab)));
      rest.remove_prefix(tab + 1);
    }
  }
  QList<QTextOption::Tab> stops;
  qreal left = columnWidth(widths.front(), alwaysUsual) + gap;
  for (std::size_t column = 1; column <= widths.size(); ++column) {
    const QTextOption::TabType type = types[static_cast<qsizetype>(column - 1)];
    const qreal width = column < widths.size() ? columnWidth(widths[column], alwaysUsual) : 0;
    stops += QTextOption::Tab(type == QTextOption::RightTab ? left + width : left, type);
    left += width + gap;
  }
  return stops;
}

}  // namespace pelmarix::qt
