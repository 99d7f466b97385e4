// The columns of a table or outline, with the cells that are made in them.
#pragma once

#include <QVariant>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "platform/table_view.h"
#include "qt/services/text_conversion.h"

namespace pelmarix::qt {

/// All that an interface file says about a column.
struct ColumnDescription {
  std::string identifier;
  QString title;
  std::vector<std::string> cellIdentifiers;
  QString usualText;     ///< says how wide it is; empty for the column of names, which takes the rest
  int usualLength = 48;  ///< of names, in characters
};

/// Made once from their descriptions. There is one cell for each identifier, used again for every row: a
/// model reads a cell as soon as the delegate has written into it.
class Columns {
 public:
  explicit Columns(const std::vector<ColumnDescription>& descriptions);
  Columns(const Columns&) = delete;  // it holds pointers into itself
  Columns& operator=(const Columns&) = delete;

  int count() const { return static_cast<int>(columns_.size()); }
  const platform::TableColumn* at(int position) const {
    return pointers_[static_cast<std::size_t>(position)];
  }
  const std::vector<platform::TableColumn*>& all() const { return pointers_; }
  /// What a model answers for its headers.
  QVariant headerData(int section, Qt::Orientation orientation, int role) const;

  /// A cell with an empty text; null when no column has cells of that identifier.
  platform::View* makeCell(const std::string& identifier);
  /// What a cell says; an invalid value for a view that is none of the cells.
  QVariant textOf(const platform::View* view) const;

 private:
  struct Cell final : platform::TextField {
    explicit Cell(std::string identifierOfCell) : identifier(std::move(identifierOfCell)) {}
    void setStringValue(const std::string& value) override { text = toQString(value); }
    void sizeToFit() override {}  // the view lays out each text anew in the space there is

    std::string identifier;
    QString text;
    platform::TableCellView view{this};
  };

  std::vector<QString> titles_;
  // Deques, which leave their elements where they are: pointers to them are given away.
  std::deque<platform::TableColumn> columns_;
  std::deque<Cell> cells_;
  std::vector<platform::TableColumn*> pointers_;
};

}  // namespace pelmarix::qt
