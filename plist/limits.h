// Private to this folder.
#pragma once

#include <cstddef>

namespace pelmarix::plist {

/// Containers nested deeper are refused, as the platform refuses them: whoever walks the values may then
/// recurse.
inline constexpr std::size_t maximumDepth = 512;

}  // namespace pelmarix::plist
