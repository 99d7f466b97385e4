// The cells that a table or outline makes: what the delegate writes into them is what the model answers.
#pragma once

#include <QVariant>
#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/table_view.h"
#include "qt/services/text_conversion.h"

namespace pelmarix::qt {

/// One cell for each identifier, used again for every row: a model reads a cell as soon as it was made.
class CellTemplates {
 public:
  explicit CellTemplates(const std::vector<std::string>& identifiers);

  /// With an empty text; null when no template has the identifier.
  platform::View* makeView(const std::string& identifier);

  /// What the cell says; an invalid value for a view that is none of the cells.
  QVariant textOf(const platform::View* view) const;

 private:
  struct Field final : platform::TextField {
    void setStringValue(const std::string& value) override { text = toQString(value); }
    void sizeToFit() override {}  // the view's delegate lays out each text anew in the space there is

    QString text;
  };

  struct Cell {
    explicit Cell(std::string identifierOfCell) : identifier(std::move(identifierOfCell)) {}

    std::string identifier;
    Field field;
    platform::TableCellView view{&field};
  };

  std::deque<Cell> cells_;  // of which no one moves: each view points to its field
};

/// A column as the interface file describes it.
struct ColumnTemplate {
  std::string identifier;
  QString title;
};

/// The columns of a table or outline, made once from their templates.
class Columns {
 public:
  explicit Columns(const std::vector<ColumnTemplate>& templates);

  int count() const { return static_cast<int>(pointers_.size()); }
  const platform::TableColumn* at(int position) const {
    return pointers_[static_cast<std::size_t>(position)];
  }
  const std::vector<platform::TableColumn*>& all() const { return pointers_; }
  /// What a model answers for its headers.
  QVariant headerData(int section, Qt::Orientation orientation, int role) const;

 private:
  std::vector<QString> titles_;
  std::vector<std::unique_ptr<platform::TableColumn>> columns_;
  std::vector<platform::TableColumn*> pointers_;
};

}  // namespace pelmarix::qt
