// The contents of the elements <integer>, <real>, <date> and <data> in an XML property list. Private to this
// folder.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pelmarix::plist {

/// The bytes behind base64 text: every fourth letter completes three bytes, or fewer where "=" ends the text.
/// ASCII that is no base64 is passed over and an incomplete last group dropped, as the platform does it.
std::string decodeBase64(std::string_view text);

}  // namespace pelmarix::plist
