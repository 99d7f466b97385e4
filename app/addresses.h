// The maker's addresses on the network. Whoever builds the program sets them: each is a variable of the
// build, PELMARIX_..._ADDRESS, with a default that leads nowhere.
#pragma once

namespace pelmarix {

/// The property list of the maker's programs with their published versions.
extern const char* const updateListAddress;

/// The maker's host for files, 48 characters, ending in "/". A download is offered only if its address holds
/// this, at whichever place.
extern const char* const downloadHostPrefix;

extern const char* const supportPageAddress;

/// About the updates of systems before macOS Sierra, and from it on.
extern const char* const olderSystemUpdatesPageAddress;
extern const char* const newerSystemUpdatesPageAddress;

}  // namespace pelmarix
