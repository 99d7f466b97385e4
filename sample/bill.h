// What lies beside a receipt of the sample: its bill of materials.
#pragma once

#include <cstddef>
#include <string>

#include "sample/receipts.h"

namespace pelmarix::sample {

/// The bytes of the receipt's bill of materials; empty for a receipt that has none. A large one lists
/// `largeBillPaths` paths. Packages from before 2018 have the short records of that time.
std::string billFile(const Receipt& receipt, std::size_t largeBillPaths);

}  // namespace pelmarix::sample
