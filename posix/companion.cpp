#include "posix/companion.h"

#include <stdlib.h>
#include <unistd.h>

#include <filesystem>

#include "posix/file_descriptor.h"

namespace pelmarix::posix {

std::error_code becomeCompanion(const std::string& name, const std::string& volume) {
  std::error_code error;
  const auto ownProgram = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) return error;
  if (!volume.empty() && setenv("PELMARIX_VOLUME", volume.c_str(), 1) != 0) return lastSystemError();
  std::string program = ownProgram.parent_path() / name;
  char* const arguments[] = {program.data(), nullptr};
  execv(program.c_str(), arguments);
  return lastSystemError();
}

bool isStartedFromTerminal() { return isatty(STDERR_FILENO) == 1; }

}  // namespace pelmarix::posix
