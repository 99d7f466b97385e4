// Decoded values as text, for tests to compare with a literal.
#pragma once

#include <string>
#include <string_view>

#include "plist/document.h"

namespace pelmarix::plist {

/// One line for the value and all below it: `null`, `true`, `-7`, `real 1.5`, `date 0.25`, `uid 3`, `data
/// 00ff`,
/// `"text"`, `[1, 2]`, `set[1]`, `{"key": 1}`. Not for values that hold the same container again and again.
std::string describe(Value value);

/// Decodes and describes; a refusal is `refused: ` and its sentence.
std::string decoded(std::string_view bytes);

/// The reason for which the bytes are refused. Fails the test where they aren't.
Reason refusal(std::string_view bytes);

}  // namespace pelmarix::plist
