#include "posix/posix_task.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/time.h>

#include "receipts/bom.h"
#include "tests/posix/moved_task.h"
#include "tests/support/fatal_stop.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/test_services.h"

namespace pelmarix::posix {
namespace {

using test::MovedTask;
using test::nowhere;
using test::TemporaryFolder;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* printReceived = PELMARIX_PRINT_RECEIVED;

struct Ended {
  std::string output;
  int status = 0;
};

Ended run(const std::string& program, const std::vector<std::string>& arguments = {},
          const std::string& companionFolder = nowhere) {
  PosixPipe pipe;
  PosixTask task(companionFolder);
  task.setLaunchPath(program);
  task.setArguments(arguments);
  task.setStandardOutput(pipe);
  task.launch();
  Ended ended;
  const auto output = pipe.readDataToEndOfFile();
  ended.output = output ? *output : output.error().message();
  task.waitUntilExit();
  ended.status = task.terminationStatus();
  return ended;
}

std::string launchFailure(const std::string& program) {
  try {
    run(program);
  } catch (const platform::TaskLaunchError& failure) {
    return failure.what();
  }
  return "launched";
}

std::string addProgram(const TemporaryFolder& folder, std::string_view name, std::string_view script) {
  std::string file = folder.addFile(name, "#!/bin/sh\n" + std::string(script));
  chmod(file.c_str(), 0755);
  return file;
}

/// The lines of what the helper program received that begin with `kind`.
std::string linesOf(const std::string& output, std::string_view kind) {
  std::string lines;
  std::size_t begin = 0;
  for (std::size_t end; (end = output.find('\n', begin)) != std::string::npos; begin = end + 1)
    if (output.compare(begin, kind.size(), kind) == 0) lines.append(output, begin, end + 1 - begin);
  return lines;
}

std::vector<std::string> openDescriptors() {
  std::vector<std::string> descriptors;
  for (int descriptor = 0; descriptor < 1024; ++descriptor)
    if (fcntl(descriptor, F_GETFD) >= 0) descriptors.push_back(std::to_string(descriptor));
  return descriptors;
}

TEST(Task, PassesExactlyTheArgumentsAfterTheProgramsPath) {
  EXPECT_EQ(
      linesOf(run(printReceived, {"-f", "-p", "fsT", "/System/Library/Receipts/a.bom"}).output, "argument"),
      std::string("argument [") + printReceived +
          "]\nargument [-f]\nargument [-p]\nargument [fsT]\n"
          "argument [/System/Library/Receipts/a.bom]\n");
}

TEST(Task, PassesAnArgumentAsItIsWhateverItHolds) {
  for (const std::string argument : {"", " two  words ", "\"double\" 'single'", "$HOME `id` *", "back\\slash",
                                     "-", "caf\xC3\xA9", "\xFF\xFE"})
    EXPECT_THAT(run(printReceived, {argument}).output,
                HasSubstr("argument [" + argument + "]\nworking folder"));
}

TEST(Task, PassesTheProgramsOwnEnvironmentAndWorkingFolder) {
  setenv("PELMARIX_TEST_VALUE", "a = \"b\"", 1);
  const std::string output = run(printReceived).output;
  unsetenv("PELMARIX_TEST_VALUE");
  EXPECT_THAT(output, HasSubstr("environment [PELMARIX_TEST_VALUE=a = \"b\"]\n"));
  EXPECT_THAT(output, HasSubstr("working folder [" + std::filesystem::current_path().native() + "]\n"));
  EXPECT_THAT(run(printReceived).output, Not(HasSubstr("PELMARIX_TEST_VALUE")));
}

TEST(Task, PassesNoDescriptorBeyondTheThreeStandardOnes) {
  // Left open, for every child to inherit, by whoever started this program.
  const int leaked = open("/dev/null", O_RDONLY);
  const int leakedFar = fcntl(leaked, F_DUPFD, 200);  // below the usual limit of a Mac
  ASSERT_GE(leakedFar, 200);
  EXPECT_EQ(linesOf(run(printReceived).output, "descriptor"), "");
  close(leakedFar);
  close(leaked);
}

TEST(Task, GivesItsOutputAlsoWhenTheProgramsOwnStandardDescriptorsAreClosed) {
  for (const auto& closed : {std::vector{1}, std::vector{0, 1}, std::vector{1, 2}, std::vector{0, 1, 2}}) {
    const std::string output = test::inChild([&] {
      for (const int descriptor : closed) close(descriptor);
      return run(printReceived).output;
    });
    std::string expected;
    for (const int descriptor : closed)
      if (descriptor != 1) expected += "descriptor " + std::to_string(descriptor) + " is closed\n";
    EXPECT_THAT(output, StartsWith("argument ["));
    EXPECT_EQ(linesOf(output, "descriptor"), expected);
  }
}

TEST(Task, StartsWithNoSignalBlockedAndTheUsualOnesNotIgnored) {
  const std::string output = test::inChild([] {
    // Whoever started the tests may ignore some, too: a shell does in the background.
    for (int number = 1; number < 32; ++number) signal(number, SIG_DFL);
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, nullptr);
    signal(SIGPIPE, SIG_IGN);
    signal(SIGCHLD, SIG_IGN);
    // As of a program started by nohup.
    signal(SIGHUP, SIG_IGN);
    return linesOf(run(printReceived).output, "signal");
  });
  EXPECT_EQ(output, "signal " + std::to_string(SIGHUP) + " is ignored\n");
}

TEST(Task, ReadsStandardInputFromTheProgramsOwn) {
  const TemporaryFolder folder;
  const std::string input = folder.addFile("input", "typed\n");
  const std::string program = addProgram(folder, "copy", "cat\n");
  const std::string output = test::inChild([&] {
    dup2(open(input.c_str(), O_RDONLY), STDIN_FILENO);
    return run(program).output;
  });
  EXPECT_EQ(output, "typed\n");
}

TEST(Task, WritesStandardErrorWhereTheProgramsOwnGoesAFloodIncluded) {
  const TemporaryFolder folder;
  const std::string program = addProgram(folder, "flood", "head -c 3000000 /dev/zero >&2\necho listing\n");
  const std::string errors = folder.addFile("errors");
  const std::string output = test::inChild([&] {
    dup2(open(errors.c_str(), O_WRONLY), STDERR_FILENO);
    return run(program).output;
  });
  EXPECT_EQ(output, "listing\n");
  EXPECT_EQ(std::filesystem::file_size(errors), 3'000'000U);
}

TEST(Task, TellsTheExitStatusOrTheSignalThatEndedTheChild) {
  const TemporaryFolder folder;
  EXPECT_EQ(run(addProgram(folder, "good", "exit 0\n")).status, 0);
  EXPECT_EQ(run(addProgram(folder, "bad", "echo text; exit 3\n")).status, 3);
  EXPECT_EQ(run(addProgram(folder, "killed", "kill -KILL $$\n")).status, SIGKILL);
  const Ended ended = run(addProgram(folder, "stopped", "echo text; kill -TERM $$\n"));
  EXPECT_EQ(ended.status, SIGTERM);
  EXPECT_EQ(ended.output, "text\n");
}

TEST(Task, TellsTheStatusInAProgramThatWasToldToIgnoreItsChildren) {
  const TemporaryFolder folder;
  const std::string good = addProgram(folder, "good", "exit 0\n");
  const std::string bad = addProgram(folder, "bad", "exit 3\n");
  const auto statuses = [&] {
    return std::to_string(run(good).status) + " " + std::to_string(run(bad).status);
  };
  EXPECT_EQ(test::inChild([&] {
              signal(SIGCHLD, SIG_IGN);
              return statuses();
            }),
            "0 3");
  EXPECT_EQ(test::inChild([&] {
              struct sigaction action = {};
              action.sa_handler = SIG_DFL;
              action.sa_flags = SA_NOCLDWAIT;
              sigaction(SIGCHLD, &action, nullptr);
              return statuses();
            }),
            "0 3");
}

TEST(Task, CountsAStatusThatIsNotToBeHadAsAFailure) {
  const TemporaryFolder folder;
  PosixTask task(nowhere);
  task.setLaunchPath(addProgram(folder, "good", "exit 0\n"));
  task.launch();
  waitpid(-1, nullptr, 0);
  task.waitUntilExit();
  EXPECT_NE(task.terminationStatus(), 0);
}

TEST(Task, GivesTheOutputWholeAndInOrder) {
  const TemporaryFolder folder;
  const Ended ended = run(addProgram(folder, "count", "seq 1 200000\n"));
  std::string expected;
  for (int line = 1; line <= 200'000; ++line) expected += std::to_string(line) + "\n";
  EXPECT_EQ(ended.output, expected);
  EXPECT_EQ(run(addProgram(folder, "silent", "exit 0\n")).output, "");
  EXPECT_EQ(run(addProgram(folder, "zero", "printf 'a\\0b'\n")).output, std::string("a\0b", 3));
}

TEST(Task, GivesAnOutputOfHundredsOfMegabytes) {
  const TemporaryFolder folder;
  const Ended ended = run(addProgram(folder, "large", "head -c 300000000 /dev/zero\n"));
  EXPECT_EQ(ended.output.size(), 300'000'000U);
  EXPECT_EQ(ended.status, 0);
}

TEST(Task, EndsReadingWhenTheChildClosesItsOutputAndThenWaitsForItsEnd) {
  const TemporaryFolder folder;
  const std::string fifo = folder.addFifo("fifo");
  PosixPipe pipe;
  PosixTask task(nowhere);
  task.setLaunchPath(
      addProgram(folder, "closes", "echo text; exec >&-; read line < '" + fifo + "'; exit 5\n"));
  task.setStandardOutput(pipe);
  task.launch();
  EXPECT_EQ(*pipe.readDataToEndOfFile(), "text\n");
  std::ofstream(fifo) << "go on\n";  // for which the child has waited
  task.waitUntilExit();
  EXPECT_EQ(task.terminationStatus(), 5);
}

TEST(Task, ReadsOnWhenSignalsInterrupt) {
  const TemporaryFolder folder;
  const std::string program =
      addProgram(folder, "slow", "for i in 1 2 3 4 5; do sleep 0.02; echo $i; done\n");
  const std::string output = test::inChild([&] {
    struct sigaction action = {};
    static volatile sig_atomic_t signals = 0;
    action.sa_handler = [](int) { signals = signals + 1; };  // without SA_RESTART
    sigaction(SIGALRM, &action, nullptr);
    const itimerval often = {{0, 1000}, {0, 1000}};
    setitimer(ITIMER_REAL, &often, nullptr);
    const Ended ended = run(program);
    return ended.output + std::to_string(ended.status) + (signals > 1 ? " interrupted" : " in peace");
  });
  EXPECT_EQ(output, "1\n2\n3\n4\n5\n0 interrupted");
}

TEST(Task, ThrowsWithTheReasonWhenTheProgramCannotBeStarted) {
  const TemporaryFolder folder;
  EXPECT_EQ(launchFailure(folder / "missing"), folder / "missing" + ": No such file or directory");
  EXPECT_EQ(launchFailure(folder.addFile("data", "text")), folder / "data" + ": Permission denied");
  EXPECT_EQ(launchFailure(folder.path()), folder.path() + ": Permission denied");
  EXPECT_EQ(launchFailure(""), ": No such file or directory");
  const std::string garbage = folder.addFile("garbage", "\x01\x02\x03");
  chmod(garbage.c_str(), 0755);
  EXPECT_EQ(launchFailure(garbage), garbage + ": Exec format error");
}

TEST(Task, SearchesNoPathAndAsksNoShell) {
  EXPECT_THAT(launchFailure("true"), HasSubstr("No such file or directory"));
  EXPECT_THAT(launchFailure("/bin/echo text"), HasSubstr("No such file or directory"));
}

TEST(Task, ThrowsWhenThereAreNoDescriptorsOrProcessesToBeHad) {
  EXPECT_EQ(test::inChild([] {
              // Sanitizers look closely at the first pipe and at the failure's words, which takes
              // descriptors.
              { const PosixPipe first; }
              static_cast<void>(std::system_category().message(EMFILE));
              rlimit usual;
              getrlimit(RLIMIT_NOFILE, &usual);
              const rlimit none = {3, usual.rlim_max};
              setrlimit(RLIMIT_NOFILE, &none);
              try {
                const PosixPipe pipe;
              } catch (const platform::TaskLaunchError& failure) {
                setrlimit(RLIMIT_NOFILE, &usual);
                return std::string(failure.what());
              }
              return std::string("a pipe");
            }),
            "pipe: Too many open files");
  EXPECT_EQ(test::withoutPrivileges([] {
              const rlimit none = {0, 0};
              setrlimit(RLIMIT_NPROC, &none);
              return launchFailure("/bin/echo");
            }),
            "/bin/echo: Resource temporarily unavailable");
}

TEST(Task, GivesAnEmptyOutputWhereItWasNeverLaunched) {
  PosixPipe pipe;
  EXPECT_EQ(*pipe.readDataToEndOfFile(), "");
}

TEST(Task, WaitsForNoOtherWhereItWasNeverLaunched) {
  PosixTask other(nowhere);
  other.setLaunchPath("/bin/sh");
  other.setArguments({"-c", "exit 3"});
  other.launch();
  static PosixTask neverLaunched(nowhere);  // all of its memory is 0: no process, or any to waitpid
  neverLaunched.waitUntilExit();
  other.waitUntilExit();
  EXPECT_EQ(other.terminationStatus(), 3);
}

TEST(Task, GivesAnEmptyOutputAfterALaunchThatFailed) {
  PosixPipe pipe;
  PosixTask task(nowhere);
  task.setLaunchPath("/nonexistent/lister");
  task.setStandardOutput(pipe);
  EXPECT_THROW(task.launch(), platform::TaskLaunchError);
  EXPECT_EQ(*pipe.readDataToEndOfFile(), "");
}

TEST(Task, TellsAnErrorOfReadingFromTheEndOfTheOutput) {
  const TemporaryFolder folder;
  const std::string outcome = test::inChild([&]() -> std::string {
    const std::vector<std::string> before = openDescriptors();
    PosixPipe pipe;
    // Something else takes the place of the end that is read from: a folder, which can't be read.
    for (const std::string& descriptor : openDescriptors())
      if (std::find(before.begin(), before.end(), descriptor) == before.end() &&
          std::stoi(descriptor) != pipe.writeEnd())
        dup2(open(folder.path().c_str(), O_RDONLY | O_DIRECTORY), std::stoi(descriptor));
    const auto output = pipe.readDataToEndOfFile();
    return output ? "read [" + *output + "]" : output.error().message();
  });
  EXPECT_EQ(outcome, std::make_error_code(std::errc::is_a_directory).message());
}

TEST(Task, LeavesNoDescriptorOpenAndNoChildBehind) {
  const TemporaryFolder folder;
  const std::string program = addProgram(folder, "good", "echo text\n");
  const auto before = openDescriptors();
  for (int round = 0; round < 20; ++round) run(program);
  EXPECT_NE(launchFailure(folder / "missing"), "launched");
  EXPECT_EQ(openDescriptors(), before);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST(Task, IsRunningFromItsLaunchToItsEnd) {
  const TemporaryFolder folder;
  const std::string fifo = folder.addFifo("fifo");
  PosixTask task(nowhere);
  EXPECT_FALSE(task.isRunning());
  task.setLaunchPath(addProgram(folder, "waits", "echo > '" + fifo + "'\nexit 5\n"));
  task.launch();
  EXPECT_TRUE(task.isRunning());
  std::ifstream(fifo).get();
  while (task.isRunning()) usleep(1000);
  EXPECT_FALSE(task.isRunning());
  task.waitUntilExit();
  EXPECT_EQ(task.terminationStatus(), 5);
  EXPECT_FALSE(task.isRunning());
}

TEST(TaskDeathTest, IsLaunchedOnce) {
  PosixTask task(nowhere);
  task.setLaunchPath("/bin/true");
  task.launch();
  EXPECT_FATAL_STOP(task.launch());
}

TEST(Task, ThatIsDestroyedEndsItsChildAndLeavesNoZombie) {
  const TemporaryFolder folder;
  const std::string fifo = folder.addFifo("fifo");
  PosixPipe pipe;
  {
    PosixTask task(nowhere);
    // Would run until somebody opens the FIFO.
    task.setLaunchPath(addProgram(folder, "waits", "echo > '" + fifo + "'\necho went on\n"));
    task.setStandardOutput(pipe);
    task.launch();
  }
  EXPECT_EQ(*pipe.readDataToEndOfFile(), "");
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST(Task, ThatIsDestroyedAfterItsChildsEndLeavesNoZombie) {
  const TemporaryFolder folder;
  PosixPipe pipe;
  {
    PosixTask task(nowhere);
    task.setLaunchPath(addProgram(folder, "good", "exit 0\n"));
    task.setStandardOutput(pipe);
    task.launch();
    siginfo_t information;
    waitid(P_ALL, 0, &information, WEXITED | WNOWAIT);
  }
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST(LocatingAProgram, FindsItAtItsOwnPathWhetherItCanBeRunOrNot) {
  const TemporaryFolder folder;
  const std::string own = folder.addFile("usr/lsbom");
  addProgram(folder, "companions/lsbom", "exit 0\n");
  EXPECT_EQ(locateProgram(own, folder / "companions"), own);
}

TEST(LocatingAProgram, FindsTheCompanionOfTheSameNameWhereNothingIs) {
  const TemporaryFolder folder;
  const std::string companion = addProgram(folder, "companions/lsbom", "exit 0\n");
  EXPECT_EQ(locateProgram(folder / "usr/lsbom", folder / "companions"), companion);
  EXPECT_EQ(locateProgram(folder.addLink("lsbom", "nowhere"), folder / "companions"), companion);
}

TEST(LocatingAProgram, LeavesThePathWhereThereIsNoCompanion) {
  const TemporaryFolder folder;
  EXPECT_EQ(locateProgram("/nonexistent/lsbom", folder.path()), "/nonexistent/lsbom");
}

TEST(Task, StartsTheCompanionWhereTheProgramIsMissing) {
  const TemporaryFolder folder;
  addProgram(folder, "lister", "echo \"$0: $*\"\n");
  EXPECT_EQ(run("/nonexistent/lister", {"-f"}, folder.path()).output, folder / "lister" + ": -f\n");
}

/// A receipt's listing through real child processes.
class Listing : public testing::Test {
 protected:
  Listing() {
    services.services.makePipe = [] { return std::make_unique<PosixPipe>(); };
    services.services.makeTask = [this] { return std::make_unique<MovedTask>(folder.path()); };
  }
  std::string listing(std::string_view script, const std::string& path = "/System/Library/Receipts/a") {
    addProgram(folder, "lsbom", script);
    return BoMItem("a", Date{}, path).listBoM();
  }
  TemporaryFolder folder;
  test::TestServices services;
};

TEST_F(Listing, RunsTheListerWithFourArguments) {
  EXPECT_EQ(listing("for a; do echo \"[$a]\"; done\n", "/System/Library/Receipts/with  two blanks"),
            "[-f]\n[-p]\n[fsT]\n[/System/Library/Receipts/with  two blanks.bom]\n");
}

TEST_F(Listing, IsWholeItsLastLineBreakIncluded) {
  const std::string lines = listing("seq 1 5000\n");
  EXPECT_THAT(lines, StartsWith("1\n2\n"));
  EXPECT_THAT(lines, testing::EndsWith("\n5000\n"));
  EXPECT_EQ(lines.size(), 9U * 2 + 90 * 3 + 900 * 4 + 4001 * 5);
}

TEST_F(Listing, HoldsNothingOfStandardError) {
  const std::string output = test::inChild([&] {
    dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
    return listing("head -c 200000 /dev/zero >&2\necho out\n");
  });
  EXPECT_EQ(output, "out\n");
}

TEST_F(Listing, IsTheFixedTextWhenTheListerFailsOrPrintsNothing) {
  EXPECT_EQ(listing("echo partly; exit 1\n"), noBomInformation);
  EXPECT_EQ(listing("exit 0\n"), noBomInformation);
  EXPECT_EQ(listing("echo partly; kill -KILL $$\n"), noBomInformation);
  EXPECT_EQ(listing("printf '\\377'; exit 1\n"), noBomInformation);
}

// A sanitizer's allocator ends the process where the real one throws.
#if defined(__linux__) && !defined(PELMARIX_SANITIZED)
TEST_F(Listing, FailsToTheCallerWhenThereIsNoMemoryForItAndEndsTheLister) {
  const std::string outcome = test::inChild([&]() -> std::string {
    const rlimit little = {std::size_t{200} << 20U, std::size_t{200} << 20U};
    if (setrlimit(RLIMIT_AS, &little) != 0) return "no limit set";
    try {
      return "listed " + std::to_string(listing("exec yes\n").size());
    } catch (const std::bad_alloc&) {
      return waitpid(-1, nullptr, 0) < 0 && errno == ECHILD ? "no memory and no child" : "no memory";
    }
  });
  EXPECT_EQ(outcome, "no memory and no child");
}
#endif

TEST_F(Listing, FailsToTheCallerWhenTheListerCannotBeStarted) {
  EXPECT_THROW(BoMItem("a", Date{}, "/a").listBoM(), platform::TaskLaunchError);
  EXPECT_TRUE(services.alerts.empty());
}

using ListingDeathTest = Listing;

TEST_F(ListingDeathTest, ThatIsNotUtf8StopsTheProgram) { EXPECT_FATAL_STOP(listing("printf '\\377'\n")); }

}  // namespace
}  // namespace pelmarix::posix
