// XML property lists. Private to this folder.
#pragma once

#include <string_view>

#include "base/result.h"
#include "plist/error.h"
#include "plist/tree.h"

namespace pelmarix::plist {

/// Decodes the file into the empty tree.
Result<void, Error> decodeXml(std::string_view bytes, Tree& tree);

}  // namespace pelmarix::plist
