// The lister as a command: its options, its messages and its exit statuses.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "base/result.h"
#include "lsbom/listing.h"
#include "posix/volume.h"

namespace pelmarix::lsbom {

/// What the arguments ask for.
struct CommandLine {
  ListOptions options;
  std::vector<std::string> files;
};

/// What is wrong with the arguments.
struct UsageError {
  std::string message;
};

/// Takes the arguments behind the program's name.
Result<CommandLine, UsageError> parseCommandLine(const std::vector<std::string>& arguments);

/// What run gives.
inline constexpr int exitSuccess = 0;
inline constexpr int exitFailure = 1;  ///< a file that cannot be listed, or output that cannot be written
inline constexpr int exitUsage = 64;

/// Lists the files that the arguments name, one after the other. Each is read whole and checked ahead of its
/// first line. A file that cannot be listed gives a message "lsbom: FILE: ..." and the next one follows; the
/// first error of the output ends everything.
///
/// An absolute path is looked for below the volume, and taken as it is where that has nothing of the name.
/// Names of users and groups are the volume's own.
int run(const std::vector<std::string>& arguments, const posix::Volume& volume, std::FILE* output,
        std::FILE* errors);

}  // namespace pelmarix::lsbom
