// Why a list has nothing to show, for those who look at the empty place.
#pragma once

#include <string>

#include "posix/volume.h"

namespace pelmarix::qt {

/// One sentence each, with the path on this machine: that a folder is missing, that the file is missing in
/// it, that it can't be read, or else that nothing is in it. For lists that were loaded and stayed empty.
std::string whyThereIsNoHistory(const posix::Volume& volume);
std::string whyThereAreNoReceipts(const posix::Volume& volume);

}  // namespace pelmarix::qt
