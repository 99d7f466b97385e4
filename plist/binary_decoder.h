// Binary property lists. Private to this folder.
#pragma once

#include <memory>
#include <string_view>

#include "plist/result.h"
#include "plist/tree.h"

namespace pelmarix::plist {

inline constexpr std::string_view binaryMagic = "bplist0";

/// Decodes a file that begins with binaryMagic.
Result<std::unique_ptr<const Tree>> decodeBinary(std::string_view bytes);

}  // namespace pelmarix::plist
