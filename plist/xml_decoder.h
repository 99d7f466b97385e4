// XML property lists. Private to this folder.
#pragma once

#include <optional>
#include <string_view>

#include "plist/error.h"
#include "plist/tree.h"

namespace pelmarix::plist {

/// Decodes the file into the empty tree; nothing where that succeeds.
std::optional<Error> decodeXml(std::string_view bytes, Tree& tree);

}  // namespace pelmarix::plist
