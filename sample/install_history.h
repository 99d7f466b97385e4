// The install history of a Mac that never was: delivered with OS X El Capitan in 2015, kept up to date
// through Sierra, High Sierra and Mojave, and on macOS Catalina when the file was copied in 2021. For seven
// months of Mojave's time it got no security data; then configuration data came in a burst.
//
// All five kinds of entries that Pelmarix tells apart occur (system installs, security updates, security
// data, critical updates, configuration data), and many that it leaves out: applications, printer software,
// voices.
#pragma once

#include <cstddef>

#include "sample/property_list.h"

namespace pelmarix::sample {

/// An install history of that many entries, oldest first, as the system writes it. System releases, security
/// and critical updates are as many as there were (all of them from some hundred entries on, else as many as
/// fit, the oldest first); recurring data and applications fill up the rest.
PropertyList installHistory(std::size_t entries);

}  // namespace pelmarix::sample
