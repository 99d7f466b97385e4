#include <cstdio>
#include <cstdlib>
#include <new>

#include "lsbom/command_line.h"
#include "posix/volume.h"

int main(int argc, char* argv[]) {
  // Ends the program without an exception, which would need memory of its own.
  std::set_new_handler([] {
    std::fputs("lsbom: out of memory\n", stderr);
    std::_Exit(pelmarix::lsbom::exitFailure);
  });
  std::setvbuf(stdout, nullptr, _IONBF, 0);  // the lister has a buffer of its own
  return pelmarix::lsbom::run({argv + (argc > 0 ? 1 : 0), argv + argc},
                              pelmarix::posix::Volume::fromEnvironment(), stdout, stderr);
}
