// What a find bar searches: a list or a text on screen.
#pragma once

#include <QString>
#include <cstddef>

namespace pelmarix::qt {

enum class SearchDirection { forward, backward };

enum class SearchStart {
  atSelection,    ///< what is selected is found again where it still matches: the text is being typed
  pastSelection,  ///< on to the next match
  atEdge,         ///< all of it, from its beginning or, backward, from its end
  upToSelection,  ///< from there on what the first two leave: up to what is selected
};

struct MatchCount {
  std::size_t matches = 0;
  std::size_t selected = 0;  ///< which of them is selected, counted from 1; 0 when none is
};

class Searchable {
 public:
  virtual ~Searchable() = default;
  /// Marks every match on screen; an empty text marks nothing. Upper and lower case don't matter.
  virtual void markMatches(const QString& text) = 0;
  /// Selects the next match and brings it into view. False when there is none on this side of the end.
  virtual bool selectMatchAhead(const QString& text, SearchStart start, SearchDirection direction) = 0;
  /// The same, going round at the end.
  bool selectMatch(const QString& text, SearchStart start, SearchDirection direction) {
    return selectMatchAhead(text, start, direction) ||
           selectMatchAhead(text, SearchStart::upToSelection, direction);
  }
  /// The matches in a text; of a list, the rows that match.
  virtual MatchCount countMatches(const QString& text) const = 0;
  /// What a screen reader is to say of the match that is selected: of a list its row, of a text its line.
  virtual QString selectedMatchInWords() const = 0;
};

}  // namespace pelmarix::qt
