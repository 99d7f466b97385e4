// XML property lists. Private to this folder.
#pragma once

#include <string_view>

#include "base/result.h"
#include "plist/error.h"
#include "plist/tree.h"

namespace pelmarix::plist {

Result<Tree, Error> decodeXml(std::string_view bytes);

}  // namespace pelmarix::plist
