#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "lsbom/command_line.h"

int main(int argc, char* argv[]) {
  try {
    const char* const volume = std::getenv("PELMARIX_VOLUME");
    std::setvbuf(stdout, nullptr, _IONBF, 0);  // the lister has a buffer of its own
    return pelmarix::lsbom::run({argv + (argc > 0 ? 1 : 0), argv + argc}, volume == nullptr ? "" : volume,
                                stdout, stderr);
  } catch (const std::bad_alloc&) {
    std::fputs("lsbom: out of memory\n", stderr);
    return pelmarix::lsbom::exitFailure;
  }
}
