// Prints what it received from the program that started it, one thing a line.
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>

extern char** environ;  // not every system's headers declare it

int main(int argc, char** argv) {
  constexpr int standardDescriptors = 3;
  constexpr int descriptorsLookedAt = 1024;
  constexpr int signalsLookedAt = 32;

  for (int index = 0; index < argc; ++index) std::printf("argument [%s]\n", argv[index]);
  std::printf("working folder [%s]\n", std::filesystem::current_path().c_str());
  for (int descriptor = 0; descriptor < descriptorsLookedAt; ++descriptor) {
    const bool isOpen = fcntl(descriptor, F_GETFD) >= 0;
    if (isOpen != (descriptor < standardDescriptors))
      std::printf("descriptor %d is %s\n", descriptor, isOpen ? "open" : "closed");
  }
  sigset_t blocked;
  sigprocmask(SIG_BLOCK, nullptr, &blocked);
  for (int number = 1; number < signalsLookedAt; ++number) {
    struct sigaction action = {};
    if (sigismember(&blocked, number) == 1) std::printf("signal %d is blocked\n", number);
    if (sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN)
      std::printf("signal %d is ignored\n", number);
  }
  for (char** variable = environ; *variable != nullptr; ++variable)
    std::printf("environment [%s]\n", *variable);
  return 0;
}
