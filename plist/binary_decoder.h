// Binary property lists. Private to this folder.
#pragma once

#include <string_view>

#include "base/result.h"
#include "plist/error.h"
#include "plist/tree.h"

namespace pelmarix::plist {

inline constexpr std::string_view binaryMagic = "bplist0";

/// Decodes a file that begins with binaryMagic.
Result<Tree, Error> decodeBinary(std::string_view bytes);

}  // namespace pelmarix::plist
