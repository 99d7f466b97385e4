// Text: UTF-8 in std::string; comparison under Unicode's canonical equivalence.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace pelmarix::platform {

/// Immutable text that several holders share without copying it: a report or a listing can be hundreds of
/// megabytes. Never null where a function takes or returns one.
using SharedText = std::shared_ptr<const std::string>;

inline SharedText shareText(std::string text) { return std::make_shared<const std::string>(std::move(text)); }

/// The composed form (NFC) of a text, in which canonically equivalent spellings are the same bytes. Plain
/// ASCII is its own composed form and doesn't bother the platform.
std::string composed(std::string_view text);

/// True when both texts are the same, canonically equivalent spellings included; upper and lower case differ.
bool textEquals(std::string_view text, std::string_view other);

/// True when `text` holds `literal` anywhere, canonically equivalent spellings included; upper and lower case
/// differ. A literal whose last letter is composed with an accent that follows it in `text` is another text,
/// hence not held.
bool textContains(std::string_view text, std::string_view literal);

/// The text in a form in which all cases of a letter and all its spellings are the same bytes: what is sought
/// is compared in it. No character becomes "/", "*" or "?" in it that wasn't.
std::string folded(std::string_view text);

}  // namespace pelmarix::platform
