// Where one can go in a text: to the next character, word, line.
#pragma once

#include "qt/widgets/text_index.h"

namespace pelmarix::qt {

enum class TextUnit { character, word, line };

/// The place where the next character (as a person sees it) or word begins. From a line's end that is the
/// next line's begin; the text's end is the last place.
std::size_t nextPlace(const TextIndex& text, std::size_t place, TextUnit unit);
std::size_t previousPlace(const TextIndex& text, std::size_t place, TextUnit unit);

/// The word, or what is between two, that is at a place or ends there with its line; the line with its line
/// feed; nothing between two characters.
TextRange unitAround(const TextIndex& text, std::size_t place, TextUnit unit);

}  // namespace pelmarix::qt
