// The programs that lie beside the running one.
#pragma once

#include <string>
#include <system_error>

namespace pelmarix::posix {

/// This process becomes the program of that name in the folder of its own, without arguments, PELMARIX_VOLUME
/// being `volume`; empty leaves the variable as it is. Returns only when that can't be: why.
std::error_code becomeCompanion(const std::string& name, const std::string& volume);

/// True when what is written to standard error is seen by somebody who sits at a terminal.
bool isStartedFromTerminal();

}  // namespace pelmarix::posix
