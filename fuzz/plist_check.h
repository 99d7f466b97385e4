// What must hold of any bytes that are decoded as a property list.
#pragma once

#include <string_view>

namespace pelmarix::plist {

/// Decodes, walks the values, and ends the process where a promise of the decoder is broken: the bound on the
/// heap, the depth, the validity of text, the position of an error.
void check(std::string_view bytes);

}  // namespace pelmarix::plist
