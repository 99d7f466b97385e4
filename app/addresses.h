// The maker's addresses on the network. Whoever builds the program sets them: each is a variable of the
// build, PELMARIX_..._ADDRESS, with a default that leads nowhere.
#pragma once

namespace pelmarix {

/// The property list of the maker's programs with their published versions.
extern const char* const updateListAddress;

/// What a download's address must hold to be offered: the maker's host for files, 48 characters, ending in
/// "/".
extern const char* const downloadHostPrefix;

extern const char* const supportPageAddress;

/// About the updates of systems before macOS Sierra, and from it on.
extern const char* const olderSystemUpdatesPageAddress;
extern const char* const newerSystemUpdatesPageAddress;

}  // namespace pelmarix
