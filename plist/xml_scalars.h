// The contents of the elements <integer>, <real>, <date> and <data> in an XML property list. Private to this
// folder.
#pragma once

#include <string>
#include <string_view>

#include "base/result.h"
#include "plist/error.h"
#include "plist/tree.h"

namespace pelmarix::plist {

/// White space, a sign, white space, decimal digits or "0x" and hexadecimal ones; from -2^63 to 2^64-1.
Result<Node, Reason> readInteger(std::string_view text);

/// White space, a sign, a decimal number with or without fraction and exponent; or "nan", "inf", "infinity",
/// the latter two with or without sign, in any case. What is too large becomes infinite.
Result<Node, Reason> readReal(std::string_view text);

/// YYYY-MM-DDThh:mm:ssZ. A year may be negative and have up to nine digits. Day, hour, minute and second are
/// not bound to their ranges: they carry over.
Result<Node, Reason> readDate(std::string_view text);

/// The bytes that stand behind base64: every fourth letter completes three, or fewer where "=" ends the text.
/// ASCII that is no base64 is passed over and an incomplete last group dropped, as the platform does it.
Result<std::string, Reason> readData(std::string_view text);

}  // namespace pelmarix::plist
