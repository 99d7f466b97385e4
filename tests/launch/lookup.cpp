// The system's look-up of names, which a test can stop: with PELMARIX_TEST_LOOKUP_BLOCKS set it never comes
// back, as when no name server answers.
#include <dlfcn.h>
#include <netdb.h>
#include <unistd.h>

#include <cstdlib>

extern "C" int getaddrinfo(const char* node, const char* service, const addrinfo* hints, addrinfo** result) {
  while (std::getenv("PELMARIX_TEST_LOOKUP_BLOCKS") != nullptr) pause();
  static const auto systems = reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
  return systems(node, service, hints, result);
}
