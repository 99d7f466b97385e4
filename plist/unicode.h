// Text encodings as property lists use them. Private to this folder.
#pragma once

#include <string>
#include <string_view>

#include "base/result.h"
#include "plist/error.h"
#include "plist/tree.h"

namespace pelmarix::plist {

inline constexpr std::string_view utf8ByteOrderMark = "\xEF\xBB\xBF";

/// True for the number of a Unicode character: no surrogate, and at most 10FFFF.
bool isUnicodeCharacter(char32_t number);

/// Appends a Unicode character, one to four bytes.
void appendUtf8(char32_t character, std::string& text);

/// ISO-8859-1, where every byte is the character of its number.
std::string latin1ToUtf8(std::string_view bytes);

/// Big-endian UTF-16 of an even number of bytes. A surrogate without its partner becomes U+FFFD.
std::string lenientUtf16ToUtf8(std::string_view bytes);

/// An XML file's text in UTF-8: `bytes` themselves, with a byte-order mark and not checked yet, where that is
/// what they are; else made and kept in the tree, without a mark. The mark decides on the encoding; without
/// one, a declaration at the very start does; without either it is UTF-8.
Result<std::string_view, Error> xmlTextAsUtf8(std::string_view bytes, Tree& tree);

}  // namespace pelmarix::plist
