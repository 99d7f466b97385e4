// The contents of the elements <integer>, <real>, <date> and <data> in an XML property list. Private to this
// folder.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "plist/error.h"
#include "plist/tree.h"

namespace pelmarix::plist {

/// The value of a hexadecimal digit; 16 for any other character.
unsigned digitValue(char digit);

/// Each reads the whole text of an element into `node`, or says what is wrong with it.

/// White space, a sign, white space, decimal digits or "0x" and hexadecimal ones; from -2^63 to 2^64-1.
std::optional<Reason> readInteger(std::string_view text, Node& node);

/// White space, a sign, a decimal number with or without fraction and exponent; or "nan", "inf", "infinity",
/// the latter two with or without sign, in any case. What is too large becomes infinite.
std::optional<Reason> readReal(std::string_view text, Node& node);

/// YYYY-MM-DDThh:mm:ssZ. A year may be negative and have up to nine digits. Day, hour, minute and second are
/// not bound to their ranges: they carry over.
std::optional<Reason> readDate(std::string_view text, Node& node);

/// Base64, kept as it is; decodeBase64 reads all that passes.
std::optional<Reason> readData(std::string_view text, Node& node);

/// The bytes behind base64 text: every fourth letter completes three bytes, or fewer where "=" ends the text.
/// ASCII that is no base64 is passed over and an incomplete last group dropped, as the platform does it.
std::string decodeBase64(std::string_view text);

}  // namespace pelmarix::plist
