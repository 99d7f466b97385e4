// Whose checked calls would be defined a second time here.
#undef _FORTIFY_SOURCE

#include "tests/posix/fault_injection.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <stdarg.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace pelmarix::test {
namespace {

FaultInjection* current = nullptr;

}  // namespace

FaultInjection::FaultInjection(std::string_view call, int place, int error)
    : call_(call), place_(place), error_(error) {
  current = this;
}

FaultInjection::~FaultInjection() { current = nullptr; }

int FaultInjection::errorOf(std::string_view call) {
  if (current == nullptr) return 0;
  return ++current->calls_[call] == current->place_ && call == current->call_ ? current->error_ : 0;
}

}  // namespace pelmarix::test

using pelmarix::test::FaultInjection;

namespace {

// The C library's own call of this name.
template <typename Call>
Call* systems(Call*, const char* name) {
  return reinterpret_cast<Call*>(dlsym(RTLD_NEXT, name));
}

template <typename Result>
Result failure(int error, Result result) {
  errno = error;
  return result;
}

// Of a call that says -1 when it fails.
template <typename Call, typename... Arguments>
auto failOr(Call* call, const char* name, Arguments... arguments) -> decltype(call(arguments...)) {
  if (const int error = FaultInjection::errorOf(name); error != 0) return failure(error, -1);
  return systems(call, name)(arguments...);
}

// Of a call that says null when it fails.
template <typename Call, typename... Arguments>
auto nullOr(Call* call, const char* name, Arguments... arguments) -> decltype(call(arguments...)) {
  if (const int error = FaultInjection::errorOf(name); error != 0) return failure(error, nullptr);
  return systems(call, name)(arguments...);
}

// Of a call that gives the error itself.
template <typename Call, typename... Arguments>
int errorOr(Call* call, const char* name, Arguments... arguments) {
  const int error = FaultInjection::errorOf(name);
  return error != 0 ? error : systems(call, name)(arguments...);
}

// Of a call after which nothing is open whether it fails or not.
template <typename Call, typename Argument>
int closeAnd(Call* call, const char* name, Argument argument) {
  const int error = FaultInjection::errorOf(name);
  const int result = systems(call, name)(argument);
  return error != 0 ? failure(error, -1) : result;
}

template <typename Call, typename Bytes>
ssize_t move(Call* call, const char* name, int file, Bytes* bytes, std::size_t size) {
  const int error = FaultInjection::errorOf(name);
  if (error == pelmarix::test::oneByteOnly) return systems(call, name)(file, bytes, size == 0 ? 0 : 1);
  return error != 0 ? failure(error, -1) : systems(call, name)(file, bytes, size);
}

void takeStatus(pid_t child) { systems(waitpid, "waitpid")(child, nullptr, 0); }

}  // namespace

extern "C" {

int access(const char* path, int mode) noexcept { return failOr(access, "access", path, mode); }
int execv(const char* path, char* const* arguments) noexcept {
  return failOr(execv, "execv", path, arguments);
}
int fstat(int file, struct stat* status) noexcept { return failOr(fstat, "fstat", file, status); }
int ftruncate(int file, off_t size) noexcept { return failOr(ftruncate, "ftruncate", file, size); }
int pipe2(int* ends, int flags) noexcept { return failOr(pipe2, "pipe2", ends, flags); }
int setenv(const char* name, const char* value, int replace) noexcept {
  return failOr(setenv, "setenv", name, value, replace);
}
int sigaction(int number, const struct sigaction* action, struct sigaction* before) noexcept {
  return failOr(sigaction, "sigaction", number, action, before);
}
int stat(const char* path, struct stat* status) noexcept { return failOr(stat, "stat", path, status); }
ssize_t readlink(const char* path, char* bytes, std::size_t size) noexcept {
  return failOr(readlink, "readlink", path, bytes, size);
}

int openat(int folder, const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
  va_end(more);
  return failOr(openat, "openat", folder, path, flags, mode);
}

int isatty(int file) noexcept {
  const int error = FaultInjection::errorOf("isatty");
  return error != 0 ? failure(error, 0) : systems(isatty, "isatty")(file);
}

DIR* fdopendir(int folder) { return nullOr(fdopendir, "fdopendir", folder); }
dirent* readdir(DIR* folder) { return nullOr(readdir, "readdir", folder); }
char* getcwd(char* bytes, std::size_t size) noexcept { return nullOr(getcwd, "getcwd", bytes, size); }

int close(int file) { return closeAnd(close, "close", file); }
int closedir(DIR* folder) { return closeAnd(closedir, "closedir", folder); }

ssize_t read(int file, void* bytes, std::size_t size) { return move(read, "read", file, bytes, size); }
ssize_t write(int file, const void* bytes, std::size_t size) {
  return move(write, "write", file, bytes, size);
}

int posix_spawn(pid_t* child, const char* path, const posix_spawn_file_actions_t* actions,
                const posix_spawnattr_t* attributes, char* const* arguments, char* const* environment) {
  return errorOr(posix_spawn, "posix_spawn", child, path, actions, attributes, arguments, environment);
}
int posix_spawn_file_actions_init(posix_spawn_file_actions_t* actions) noexcept {
  return errorOr(posix_spawn_file_actions_init, "posix_spawn_file_actions_init", actions);
}
int posix_spawn_file_actions_addclosefrom_np(posix_spawn_file_actions_t* actions, int from) noexcept {
  return errorOr(posix_spawn_file_actions_addclosefrom_np, "posix_spawn_file_actions_addclosefrom_np",
                 actions, from);
}
int posix_spawn_file_actions_adddup2(posix_spawn_file_actions_t* actions, int from, int to) noexcept {
  return errorOr(posix_spawn_file_actions_adddup2, "posix_spawn_file_actions_adddup2", actions, from, to);
}
int posix_spawn_file_actions_addopen(posix_spawn_file_actions_t* actions, int file, const char* path,
                                     int flags, mode_t mode) noexcept {
  return errorOr(posix_spawn_file_actions_addopen, "posix_spawn_file_actions_addopen", actions, file, path,
                 flags, mode);
}
int posix_spawnattr_init(posix_spawnattr_t* attributes) noexcept {
  return errorOr(posix_spawnattr_init, "posix_spawnattr_init", attributes);
}
int posix_spawnattr_setflags(posix_spawnattr_t* attributes, short flags) noexcept {
  return errorOr(posix_spawnattr_setflags, "posix_spawnattr_setflags", attributes, flags);
}
int posix_spawnattr_setsigdefault(posix_spawnattr_t* attributes, const sigset_t* signals) noexcept {
  return errorOr(posix_spawnattr_setsigdefault, "posix_spawnattr_setsigdefault", attributes, signals);
}
int posix_spawnattr_setsigmask(posix_spawnattr_t* attributes, const sigset_t* signals) noexcept {
  return errorOr(posix_spawnattr_setsigmask, "posix_spawnattr_setsigmask", attributes, signals);
}

int kill(pid_t child, int number) noexcept {
  const int error = FaultInjection::errorOf("kill");
  const int result = systems(kill, "kill")(child, number);
  if (error == 0) return result;
  takeStatus(child);
  return failure(error, -1);
}

pid_t waitpid(pid_t child, int* status, int options) {
  const int error = FaultInjection::errorOf("waitpid");
  if (error == ECHILD) takeStatus(child);
  return error != 0 ? failure(error, -1) : systems(waitpid, "waitpid")(child, status, options);
}

int waitid(idtype_t kind, id_t child, siginfo_t* information, int options) {
  const int error = FaultInjection::errorOf("waitid");
  if (error == ECHILD) takeStatus(static_cast<pid_t>(child));
  return error != 0 ? failure(error, -1) : systems(waitid, "waitid")(kind, child, information, options);
}

}  // extern "C"
