// Unpacking what a server packed.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace pelmarix::qt {

/// What a gzip file holds, all its members together. Nothing when the file is damaged or cut, or when it
/// holds more than `maximumSize` bytes.
std::optional<std::string> unpackGzip(std::string_view packed, std::size_t maximumSize);

}  // namespace pelmarix::qt
