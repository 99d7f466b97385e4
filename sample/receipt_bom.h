// The bom that lies beside a receipt of the sample.
#pragma once

#include <cstddef>
#include <string>

#include "sample/receipts.h"

namespace pelmarix::sample {

/// The bytes of the receipt's bom; empty for a receipt that has none. A large one lists `largeBomPaths`
/// paths. Packages from before 2018 have the short records of that time.
std::string bomFile(const Receipt& receipt, std::size_t largeBomPaths);

}  // namespace pelmarix::sample
