#include "posix/posix_task.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "base/fatal.h"

extern char** environ;  // not every system's headers declare it

namespace pelmarix::posix {
namespace {

bool makePipe(int (&ends)[2]) {
#ifdef __APPLE__
  // No other thread starts programs that could inherit the ends in between.
  if (pipe(ends) != 0) return false;
  for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
  return true;
#else
  return pipe2(ends, O_CLOEXEC) == 0;
#endif
}

void check(int errorNumber, const std::string& what) {
  if (errorNumber != 0)
    throw platform::TaskLaunchError(what + ": " + std::system_category().message(errorNumber));
}

// What a child is to be given beside its program and arguments.
class SpawnSettings {
 public:
  SpawnSettings() {
    check(posix_spawn_file_actions_init(&fileActions), "file actions");
    const int failure = posix_spawnattr_init(&attributes);
    if (failure != 0) posix_spawn_file_actions_destroy(&fileActions);
    check(failure, "attributes");
  }
  ~SpawnSettings() {
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&fileActions);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;

  posix_spawn_file_actions_t fileActions;
  posix_spawnattr_t attributes;
  short flags = 0;
};

// Nothing but the three standard descriptors: whoever started this program may have left it others open that
// the child would keep open too.
void passStandardDescriptorsOnly(SpawnSettings& settings, const PosixPipe* standardOutput,
                                 bool hasStandardError) {
  if (standardOutput != nullptr)
    check(posix_spawn_file_actions_adddup2(&settings.fileActions, standardOutput->writeEnd(), STDOUT_FILENO),
          "pipe");
  if (!hasStandardError)
    check(posix_spawn_file_actions_addopen(&settings.fileActions, STDERR_FILENO, "/dev/null", O_WRONLY, 0),
          "descriptors");
#ifdef __APPLE__
  settings.flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    // Where this program was started with one closed, its number can be an end of the pipe now.
    const bool isRedirected = (descriptor == STDOUT_FILENO && standardOutput != nullptr) ||
                              (descriptor == STDERR_FILENO && !hasStandardError);
    if (isRedirected || fcntl(descriptor, F_GETFD) == 0)
      check(posix_spawn_file_actions_addinherit_np(&settings.fileActions, descriptor), "descriptors");
  }
#else
  check(posix_spawn_file_actions_addclosefrom_np(&settings.fileActions, STDERR_FILENO + 1), "descriptors");
#endif
}

// Qt has this program ignore SIGPIPE once it uses the network; programs that write to a pipe count on it.
void passUsualSignals(SpawnSettings& settings) {
  settings.flags |= POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
  sigset_t signals;
  sigemptyset(&signals);
  check(posix_spawnattr_setsigmask(&settings.attributes, &signals), "signals");
  sigaddset(&signals, SIGPIPE);
  check(posix_spawnattr_setsigdefault(&settings.attributes, &signals), "signals");
}

void stopIgnoringChildren() {
  struct sigaction action = {};
  if (sigaction(SIGCHLD, nullptr, &action) != 0) return;
  if (action.sa_handler == SIG_IGN) action.sa_handler = SIG_DFL;
  action.sa_flags &= ~SA_NOCLDWAIT;
  sigaction(SIGCHLD, &action, nullptr);
}

// Waits for the child's end. Nothing when something else has taken its status.
std::optional<int> waitFor(pid_t child) {
  int status{};
  for (;;) {
    if (waitpid(child, &status, 0) == child) return status;
    if (errno != EINTR) return std::nullopt;
  }
}

}  // namespace

PosixPipe::PosixPipe() {
  int ends[2];
  check(makePipe(ends) ? 0 : errno, "pipe");
  readEnd_ = FileDescriptor(ends[0]);
  writeEnd_ = FileDescriptor(ends[1]);
}

Result<std::string, std::error_code> PosixPipe::readDataToEndOfFile() {
  // An end of our own would keep the pipe from ending, were the child never launched.
  closeWriteEnd();
  std::array<char, std::size_t{64} << 10U> bytes;  // what a pipe holds
  std::string data;
  for (;;) {
    const auto count = readSome(readEnd_, bytes.data(), bytes.size());
    if (!count) return count.error();
    if (*count == 0) return data;
    data.append(bytes.data(), *count);
  }
}

std::string locateProgram(const std::string& path, const std::string& companionFolder) {
  struct stat status = {};
  if (stat(path.c_str(), &status) == 0) return path;
  const std::string companion = companionFolder + "/" + path.substr(path.rfind('/') + 1);
  return stat(companion.c_str(), &status) == 0 ? companion : path;
}

PosixTask::~PosixTask() {
  if (!child_) return;
  // Its end is waited for, so the child can't be one of the same number that came later.
  kill(*child_, SIGKILL);
  waitFor(*child_);
}

void PosixTask::setStandardOutput(platform::Pipe& pipe) {
  standardOutput_ = &required(dynamic_cast<PosixPipe*>(&pipe), "a pipe of another toolkit");
}

void PosixTask::launch() {
  if (child_) fatalStop("a task was launched twice");
  stopIgnoringChildren();

  SpawnSettings settings;
  passStandardDescriptorsOnly(settings, standardOutput_, hasStandardError_);
  passUsualSignals(settings);
  check(posix_spawnattr_setflags(&settings.attributes, settings.flags), "attributes");

  std::string program = locateProgram(launchPath_, companionFolder_);
  std::vector<char*> argv = {program.data()};
  for (std::string& argument : arguments_) argv.push_back(argument.data());
  argv.push_back(nullptr);

  pid_t child{};
  const int failure =
      posix_spawn(&child, program.c_str(), &settings.fileActions, &settings.attributes, argv.data(), environ);
  if (standardOutput_ != nullptr) standardOutput_->closeWriteEnd();
  check(failure, program);
  child_ = child;
}

bool PosixTask::isRunning() const {
  if (!child_) return false;
  siginfo_t ended = {};
  // Leaves the status where it is, for waitUntilExit.
  return waitid(P_PID, static_cast<id_t>(*child_), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
         ended.si_pid == 0;
}

void PosixTask::waitUntilExit() {
  if (!child_) return;
  // A status that was taken away counts as a failure: nothing is known of the child's success.
  if (const auto status = waitFor(*child_))
    terminationStatus_ = WIFEXITED(*status) ? WEXITSTATUS(*status) : WTERMSIG(*status);
  child_.reset();
}

}  // namespace pelmarix::posix
