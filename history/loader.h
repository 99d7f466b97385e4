// Reads the system's install history, classifies its entries and cuts them into groups.
#pragma once

#include <memory>
#include <vector>

#include "history/history.h"

namespace pelmarix {

inline constexpr const char* installHistoryPath = "/Library/Receipts/InstallHistory.plist";

/// The group of all entries where no system install was recognised.
inline constexpr const char* nameWithoutSystemInstall = "Listing 0";

/// The groups of the install history, in the file's order, which is taken to be oldest first: one for each
/// system install or upgrade, beginning with it, or a single group "Listing 0" when there is none. Entries
/// before the first system install are left out, and so are all those that no class takes. No entries make no
/// group. A file that is missing, can't be read or holds one entry that doesn't decode gives one error alert,
/// which blocks until it is dismissed, and an empty list.
std::vector<std::shared_ptr<History>> readInstallHistory();

}  // namespace pelmarix
