// What a find bar searches: a list or a text on screen.
#pragma once

#include <QString>
#include <cstddef>

namespace pelmarix::qt {

enum class SearchDirection { forward, backward };

enum class SearchStart {
  atSelection,    ///< what is selected is found again where it still matches: the text is being typed
  pastSelection,  ///< on to the next match
};

class Searchable {
 public:
  virtual ~Searchable() = default;
  /// Marks every match on screen; an empty text marks nothing. Upper and lower case don't matter.
  virtual void markMatches(const QString& text) = 0;
  /// Selects the next match and brings it into view, going round at the end. False when there is none.
  virtual bool selectMatch(const QString& text, SearchStart start, SearchDirection direction) = 0;
  /// How many matches there are in a text; of a list, how many rows match.
  virtual std::size_t countMatches(const QString& text) const = 0;
};

}  // namespace pelmarix::qt
