// XML property lists. Private to this folder.
#pragma once

#include <memory>
#include <string_view>

#include "plist/result.h"
#include "plist/tree.h"

namespace pelmarix::plist {

Result<std::unique_ptr<const Tree>> decodeXml(std::string_view bytes);

}  // namespace pelmarix::plist
