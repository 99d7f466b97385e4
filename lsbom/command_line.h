// The lister as a command: its options, its messages and its exit statuses.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "lsbom/listing.h"

namespace pelmarix::lsbom {

// What the arguments ask for.
struct CommandLine {
  ListOptions options;
  std::vector<std::string> files;
  std::string error;  // what is wrong with the arguments, without the usage; empty where nothing is
};

// The arguments behind the program's name.
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

inline constexpr int exitSuccess = 0;
inline constexpr int exitFailure = 1;  // a file that cannot be listed, or output that cannot be written
inline constexpr int exitUsage = 64;

// Lists the files that the arguments name, one after the other. Each is read whole and checked ahead of its
// first line. A file that cannot be listed gives a message "lsbom: FILE: ..." and the next one follows; the
// first error of the output ends everything. The volume is the folder that stands for "/", see resolvePath;
// empty for "/" itself.
int run(const std::vector<std::string>& arguments, const std::string& volume, std::FILE* output,
        std::FILE* errors);

// Where a file is: an absolute path below the volume if something of that name exists there, else the path as
// it is.
std::string resolvePath(const std::string& path, const std::string& volume);

}  // namespace pelmarix::lsbom
