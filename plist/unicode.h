// Text encodings as property lists use them. Private to this folder.
#pragma once

#include <cstddef>
#include <string_view>

#include "base/result.h"
#include "base/utf8.h"
#include "plist/error.h"
#include "plist/tree.h"

namespace pelmarix::plist {

/// More than any Unicode character's number.
inline constexpr char32_t beyondUnicode = 0x110000;

inline bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
inline bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }
inline bool isSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; }

/// Writes a Unicode scalar value and returns the end of what was written, one to four bytes.
char* putUtf8(char32_t character, char* out);

/// ISO-8859-1, where every byte is the character of its number.
std::string_view latin1ToUtf8(std::string_view bytes, Arena& arena);

/// Big-endian UTF-16 of an even number of bytes. A surrogate without its partner becomes U+FFFD.
std::string_view lenientUtf16ToUtf8(std::string_view bytes, Arena& arena);

/// An XML file's text in UTF-8, without its byte-order mark: a part of `bytes` where that is UTF-8 already
/// (then not checked yet), else made in `arena`. The byte-order mark decides; without one, a declaration at
/// the very start does; without either it is UTF-8.
Result<std::string_view, Error> xmlTextAsUtf8(std::string_view bytes, Arena& arena);

}  // namespace pelmarix::plist
