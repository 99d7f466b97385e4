// Every call of the system that posix/ makes fails once, wherever it is made, with each error that it is
// likely to give. The tables say what comes of it; afterwards no descriptor is open and no child is left.
#include <gmock/gmock.h>
#include <sys/wait.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <regex>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#include "history/loader.h"
#include "lsbom/command_line.h"
#include "platform/save_panel.h"
#include "posix/companion.h"
#include "posix/posix_file_manager.h"
#include "receipts/bom.h"
#include "sample/bom_writer.h"
#include "tests/lsbom/support.h"
#include "tests/posix/fault_injection.h"
#include "tests/posix/moved_task.h"
#include "tests/support/property_list_text.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/test_services.h"
#include "tests/ui/main_window_fixture.h"

namespace pelmarix::posix {
namespace {

using test::FaultInjection;

struct Errors {
  std::vector<int> likely;
  /// After these the call is repeated, or has done all the same what was asked for.
  std::vector<int> harmless;
};

/// By the name of the call, which ends at the first blank: behind it stands which errors these are, where
/// others have other outcomes.
const std::map<std::string_view, Errors> errors = {
    {"access", {{EACCES, EIO, ELOOP, ENOENT, ENOMEM, ENOTDIR, ESTALE}, {}}},
    {"close", {{EDQUOT, EIO, ENOSPC}, {EINTR}}},
    {"closedir", {{EIO}, {EINTR}}},
    {"execv", {{E2BIG, EACCES, EIO, ELOOP, ENOENT, ENOEXEC, ENOMEM, ENOTDIR, ETXTBSY}, {}}},
    {"fdopendir", {{EBADF, ENOMEM, ENOTDIR}, {}}},
    {"fstat", {{EIO, ENOMEM, ESTALE}, {}}},
    {"ftruncate", {{EFBIG, EINVAL, EIO, EPERM, EROFS, ETXTBSY}, {EINTR}}},
    {"getcwd", {{EACCES, ENOENT, ENOMEM}, {}}},
    {"isatty", {{EBADF, EIO, ENOTTY}, {}}},
    {"kill", {{ESRCH}, {}}},
    {"openat",
     {{EACCES, EDQUOT, EIO, EISDIR, ELOOP, EMFILE, ENFILE, ENODEV, ENOENT, ENOMEM, ENOSPC, ENOTDIR, ENXIO,
       EOVERFLOW, EPERM, EROFS, ESTALE, ETIMEDOUT, ETXTBSY},
      {EINTR}}},
    {"openat of a long path", {{ENAMETOOLONG}, {}}},
    {"pipe2", {{EMFILE, ENFILE, ENOMEM}, {}}},
    {"posix_spawn",
     {{E2BIG, EACCES, EAGAIN, EIO, ELOOP, EMFILE, ENFILE, ENOENT, ENOEXEC, ENOMEM, ENOTDIR, EPERM, ETXTBSY},
      {}}},
    {"posix_spawn_file_actions_addclosefrom_np", {{EBADF, ENOMEM}, {}}},
    {"posix_spawn_file_actions_adddup2", {{EBADF, ENOMEM}, {}}},
    {"posix_spawn_file_actions_addopen", {{EBADF, ENOMEM}, {}}},
    {"posix_spawn_file_actions_init", {{ENOMEM}, {}}},
    {"posix_spawnattr_init", {{ENOMEM}, {}}},
    {"posix_spawnattr_setflags", {{EINVAL}, {}}},
    {"posix_spawnattr_setsigdefault", {{EINVAL}, {}}},
    {"posix_spawnattr_setsigmask", {{EINVAL}, {}}},
    {"read", {{EAGAIN, EIO, EISDIR, ENOMEM, ESTALE, ETIMEDOUT}, {EINTR, test::oneByteOnly}}},
    {"readdir", {{EIO, ENOENT, EOVERFLOW, ESTALE}, {}}},
    {"readlink", {{EACCES, EIO, ENOENT, ENOMEM}, {}}},
    {"setenv", {{ENOMEM}, {}}},
    {"sigaction", {{EINVAL}, {}}},
    {"stat", {{EACCES, EIO, ELOOP, ENOMEM, ESTALE}, {}}},
    {"stat finding nothing", {{ENOENT}, {}}},
    {"waitid", {{ECHILD}, {EINTR, EINVAL}}},
    {"waitpid", {{ECHILD}, {EINTR}}},
    {"write", {{EAGAIN, EDQUOT, EFBIG, EIO, ENOSPC, EPERM, EPIPE, ESTALE}, {EINTR, test::oneByteOnly}}},
};

/// What the user's doings are about.
struct Machine {
  Machine() {
    data.addFile("Library/Receipts/InstallHistory.plist", test::installHistory({{"macOS Mojave", "10.14"}}));
    // Each entry of the folder leads to one receipt, whatever the order of the entries.
    for (const std::string name : {"a", "b", "sub/deep/c"})
      system.addFile("System/Library/Receipts/" + name + ".plist",
                     test::receipt(name, "2019-03-26T10:11:12Z"));
    system.addFile("etc/passwd", "root:*:0:\n");
    system.addFile("etc/group", "wheel:*:0:\n");
    system.addFile("pelmarix/a.bom", sample::writeBillOfMaterials({{.path = "./file"}}));
    addProgram("lsbom", "echo listing");
    addProgram("waiting/lsbom", "exec sleep 1000");
  }
  void addProgram(const std::string& name, const std::string& script) const {
    chmod(programs.addFile(name, "#!/bin/sh\n" + script + "\n").c_str(), 0755);
  }

  test::TemporaryFolder system;
  test::TemporaryFolder data;
  test::TemporaryFolder programs;
  test::TemporaryFolder documents;
  Volume volume{system.path() + ":" + data.path()};
  Volume dataAlone{data.path()};
};

std::string counted(std::size_t number, const std::string& what) {
  return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

class Reading {
 public:
  explicit Reading(const Machine& machine) : files_(machine.volume) {
    services_.services.fileManager = &files_;
  }
  std::string history() const { return with(counted(readInstallHistory().size(), "group")); }
  std::string scan() const {
    BoM receipts;
    receipts.readBoMPLists();
    return with(counted(receipts.children.size(), "receipt"));
  }

 private:
  std::string with(const std::string& found) const {
    return found + ", " + counted(services_.alerts.size(), "alert");
  }
  PosixFileManager files_;
  test::TestServices services_;
};

std::string listing(const Machine& machine) try {
  test::TestServices services;
  services.services.makePipe = [] { return std::make_unique<PosixPipe>(); };
  services.services.makeTask = [&] {
    return std::make_unique<test::MovedTask>(test::nowhere, machine.programs.path());
  };
  return BoMItem("a", Date{}, "/a").listBoM();
} catch (const platform::TaskLaunchError& failure) {
  return std::string("not started: ") + failure.what();
}

// As the search has it, whose event loop the rest is.
std::string searching(const std::string& programs, bool isAbandoned) try {
  PosixPipe pipe;
  PosixTask task(programs);
  task.setLaunchPath(std::string(test::nowhere) + "/lsbom");
  task.setStandardOutput(pipe);
  task.discardStandardError();
  task.launch();
  if (isAbandoned) return "abandoned";
  std::string output;
  char bytes[100];
  for (;;) {
    const auto count = pipe.readAvailableData(bytes, sizeof bytes);
    if (!count) return "not heard";
    if (*count == 0) break;
    output.append(bytes, *count);
  }
  static_cast<void>(task.isRunning());  // it may be, for a moment
  task.waitUntilExit();
  return output + (task.terminationStatus() == 0 ? "success" : "failure");
} catch (const platform::TaskLaunchError& failure) {
  return std::string("not started: ") + failure.what();
}

std::string saving(const Machine& machine) {
  test::TestServices services;
  PosixFileManager files{Volume()};
  services.services.fileManager = &files;
  test::PlainSavePanel panel;
  panel.chosenPath = machine.documents / "report.text";
  platform::writeToChosenFile(panel, {"new", " text"});
  return services.alerts.empty() ? counted(services.savedFiles.size(), "file") + " saved"
                                 : "not saved: " + services.alerts.front().informativeText;
}

std::string lister(const Machine& machine) {
  const lsbom::TemporaryFile output, complaints;
  const int status =
      lsbom::run({"-f", "-p", "fUG", "/pelmarix/a.bom"}, machine.volume, output.get(), complaints.get());
  return std::to_string(status) + ": " + output.content() + complaints.content();
}

std::string choosingFolders(const Machine& machine) {
  const auto value = Volume::valueForFolders({machine.system.path(), machine.data.path()});
  return value ? *value : value.error().sentence;
}

std::string lookingForTheHistory(const Machine& machine) {
  const std::string hindrance = machine.dataAlone.hindranceTo(installHistoryPath);
  return hindrance.empty() ? "nothing" : hindrance;
}

struct Doing {
  std::string name;
  std::function<std::string(const Machine&)> run;
  /// For each call that is made, named as in the table of errors, all that comes of it where it fails with
  /// one of those errors, at one place or another.
  std::map<std::string_view, std::set<std::string>> outcomes;
  /// What is left, put in order again for the next time.
  std::function<std::string(const Machine&)> leftover = [](const Machine&) { return ""; };

  friend void PrintTo(const Doing& doing, std::ostream* out) { *out << doing.name; }
};

Doing launching(const std::string& name, const std::function<std::string(const Machine&)>& run,
                const std::string& outcome, std::map<std::string_view, std::set<std::string>> more) {
  more.insert({{"close", {outcome}},
               {"pipe2", {"not started: pipe: REASON"}},
               {"posix_spawn", {"not started: PROGRAMS/lsbom: REASON"}},
               {"posix_spawn_file_actions_addclosefrom_np", {"not started: descriptors: REASON"}},
               {"posix_spawn_file_actions_adddup2", {"not started: pipe: REASON"}},
               {"posix_spawn_file_actions_init", {"not started: file actions: REASON"}},
               {"posix_spawnattr_init", {"not started: attributes: REASON"}},
               {"posix_spawnattr_setflags", {"not started: attributes: REASON"}},
               {"posix_spawnattr_setsigdefault", {"not started: signals: REASON"}},
               {"posix_spawnattr_setsigmask", {"not started: signals: REASON"}},
               {"sigaction", {outcome}},
               // The lister is looked for where it isn't, and then where it is.
               {"stat", {outcome, "not started: /dev/null/nowhere/lsbom: Not a directory"}},
               {"stat finding nothing", {outcome, "not started: /dev/null/nowhere/lsbom: Not a directory"}}});
  return {name, run, more};
}

const std::vector<Doing> doings = {
    {"readingTheHistory",
     [](const Machine& machine) { return Reading(machine).history(); },
     {{"access", {"1 group, 0 alerts", "0 groups, 1 alert"}},
      {"close", {"1 group, 0 alerts"}},
      {"fstat", {"0 groups, 1 alert"}},
      {"openat", {"0 groups, 1 alert"}},
      {"openat of a long path", {"1 group, 0 alerts"}},
      {"read", {"0 groups, 1 alert"}}}},
    {"readingAtAPathThatIsTakenInSteps",
     [](const Machine& machine) {
       std::string path = "/";
       while (path.size() < std::size_t{3} * PATH_MAX) path += "./";
       const auto contents = PosixFileManager(machine.volume).readFile(path + "etc/passwd");
       return contents ? *contents : contents.error().message();
     },
     {{"access", {"root:*:0:\n"}},
      {"close", {"root:*:0:\n"}},
      {"fstat", {"REASON"}},
      {"openat", {"REASON"}},
      {"openat of a long path", {"root:*:0:\n", "REASON"}},  // but not a step of it
      {"read", {"REASON"}}}},
    {"scanningTheReceipts",
     [](const Machine& machine) { return Reading(machine).scan(); },
     {{"access", {"3 receipts, 0 alerts"}},
      {"close", {"3 receipts, 0 alerts"}},
      {"closedir", {"3 receipts, 0 alerts"}},
      {"fdopendir", {"0 receipts, 0 alerts", "2 receipts, 0 alerts"}},
      {"fstat", {"2 receipts, 1 alert"}},
      {"openat", {"0 receipts, 0 alerts", "2 receipts, 0 alerts", "2 receipts, 1 alert"}},
      {"openat of a long path", {"3 receipts, 0 alerts"}},
      {"read", {"2 receipts, 1 alert"}},
      {"readdir",
       {"0 receipts, 0 alerts", "1 receipt, 0 alerts", "2 receipts, 0 alerts", "3 receipts, 0 alerts"}}}},
    launching("listing", listing, "listing\n",
              {{"read", {noBomInformation}}, {"waitpid", {noBomInformation}}}),
    launching("searching", [](const Machine& machine) { return searching(machine.programs.path(), false); },
              "listing\nsuccess",
              {{"posix_spawn_file_actions_addopen", {"not started: descriptors: REASON"}},
               {"read", {"not heard"}},
               {"waitid", {"listing\nfailure"}},
               {"waitpid", {"listing\nfailure"}}}),
    launching("abandoningASearch",
              [](const Machine& machine) { return searching(machine.programs / "waiting", true); },
              "abandoned",
              {{"kill", {"abandoned"}},
               {"posix_spawn", {"not started: PROGRAMS/waiting/lsbom: REASON"}},
               {"posix_spawn_file_actions_addopen", {"not started: descriptors: REASON"}},
               {"waitpid", {"abandoned"}}}),
    {"saving",
     saving,
     {{"close", {"not saved: REASON, new text"}},
      {"fstat", {"not saved: REASON, old text that is longer"}},
      {"ftruncate", {"not saved: REASON, old text that is longer"}},
      {"openat", {"not saved: REASON, old text that is longer"}},
      {"openat of a long path", {"1 file saved, new text"}},
      {"write", {"not saved: REASON, ", "not saved: REASON, new"}}},
     [](const Machine& machine) {
       const std::string text = test::contentsOf(machine.documents / "report.text");
       machine.documents.addFile("report.text", "old text that is longer");
       return ", " + text;
     }},
    {"listingByTheLister",
     lister,
     {{"close", {"0: ./file\troot\twheel\n"}},
      {"fstat", {"0: ./file\t0\twheel\n", "0: ./file\troot\t0\n", "1: lsbom: /pelmarix/a.bom: REASON\n"}},
      {"openat", {"0: ./file\t0\twheel\n", "0: ./file\troot\t0\n", "1: lsbom: /pelmarix/a.bom: REASON\n"}},
      {"openat of a long path", {"0: ./file\troot\twheel\n"}},
      {"read", {"0: ./file\t0\twheel\n", "0: ./file\troot\t0\n", "1: lsbom: /pelmarix/a.bom: REASON\n"}},
      {"access", {"0: ./file\troot\twheel\n"}},
      {"stat", {"0: ./file\troot\twheel\n"}},
      {"stat finding nothing", {"1: lsbom: /pelmarix/a.bom: REASON\n"}}}},
    {"choosingFolders",
     choosingFolders,
     {{"stat", {"SYSTEM can't be opened: REASON.", "DATA can't be opened: REASON."}},
      {"stat finding nothing",
       {"SYSTEM can't be opened: REASON.", "SYSTEM doesn't exist.", "DATA can't be opened: REASON.",
        "DATA doesn't exist."}}}},
    {"lookingForTheHistory",
     lookingForTheHistory,
     {{"stat",
       {"DATA can't be opened: REASON.", "DATA/Library/Receipts can't be opened: REASON.", "nothing"}},
      {"stat finding nothing",
       {"DATA can't be opened: REASON.", "DATA doesn't exist.",
        "DATA/Library/Receipts can't be opened: REASON.", "DATA/Library/Receipts doesn't exist.",
        "There is no InstallHistory.plist in DATA/Library/Receipts.",
        "There is no folder DATA/Library/Receipts."}}}},
    {"startingInAWorkingFolder",
     [](const Machine&) {
       return Volume("relative").folders().front().starts_with('/') ? "absolute" : "relative";
     },
     {{"getcwd", {"relative"}}, {"stat", {"absolute"}}, {"stat finding nothing", {"absolute"}}}},
    {"becomingTheCompanion",
     [](const Machine&) { return becomeCompanion("no such program", "/volume").message(); },
     {{"execv", {"REASON"}}, {"readlink", {"REASON"}}, {"setenv", {"REASON"}}},
     [](const Machine&) {
       unsetenv("PELMARIX_VOLUME");
       return "";
     }},
    {"lookingForTheTerminal",
     [](const Machine&) { return isStartedFromTerminal() ? "terminal" : "none"; },
     {{"isatty", {"none"}}}},
};

std::size_t openDescriptors() {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

bool hasChild() { return waitpid(-1, nullptr, WNOHANG) >= 0 || errno != ECHILD; }

void replaceAll(std::string& text, const std::string& part, const std::string& other) {
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += other.size())
    text.replace(at, part.size(), other);
}

class Faults : public testing::TestWithParam<Doing> {
 protected:
  struct Outcome {
    std::string text;
    bool hasFailed;
    std::map<std::string_view, int> calls;
  };
  Outcome run(std::string_view call, int place, int error) const {
    SCOPED_TRACE(std::string(call) + " at its place " + std::to_string(place) + ", error " +
                 std::to_string(error));
    const std::size_t open = openDescriptors();
    Outcome outcome;
    {
      const FaultInjection fault(call, place, error);
      outcome.text = GetParam().run(machine_);
      outcome.hasFailed = fault.hasFailed();
      outcome.calls = fault.calls();
    }
    outcome.text += GetParam().leftover(machine_);
    EXPECT_EQ(openDescriptors(), open);
    EXPECT_FALSE(hasChild());
    if (error > 0) replaceAll(outcome.text, std::system_category().message(error), "REASON");
    replaceAll(outcome.text, machine_.programs.path(), "PROGRAMS");
    replaceAll(outcome.text, machine_.system.path(), "SYSTEM");
    replaceAll(outcome.text, machine_.data.path(), "DATA");
    return outcome;
  }
  Outcome runWithoutFault() const { return run("nothing", 0, 0); }

  /// Where the call fails at one place after the other, until it isn't made so often.
  std::vector<std::string> outcomesOf(std::string_view call, int error) const {
    std::vector<std::string> outcomes;
    for (int place = 1;; ++place) {
      const Outcome outcome = run(call, place, error);
      if (!outcome.hasFailed) return outcomes;
      outcomes.push_back(outcome.text);
    }
  }

  Machine machine_;
};

TEST_P(Faults, haveTheOutcomesOfTheTable) {
  GetParam().leftover(machine_);
  const Outcome usual = runWithoutFault();
  for (const auto& [call, count] : usual.calls)
    EXPECT_TRUE(GetParam().outcomes.contains(call)) << call << " is called and not in the table";
  for (const auto& [row, expected] : GetParam().outcomes) {
    const std::string_view call = row.substr(0, row.find(' '));
    std::size_t places = 0;
    for (const int error : errors.at(row).likely) {
      const std::vector<std::string> outcomes = outcomesOf(call, error);
      EXPECT_EQ(std::set<std::string>(outcomes.begin(), outcomes.end()), expected)
          << row << ", error " << error;
      places = outcomes.size();
    }
    for (const int error : errors.at(row).harmless)
      EXPECT_THAT(outcomesOf(call, error), testing::Each(usual.text)) << row << ", error " << error;
    std::cout << row << ": " << counted(places, "place") << ", "
              << counted(errors.at(row).likely.size(), "error") << " and " << errors.at(row).harmless.size()
              << " harmless: " << testing::PrintToString(expected) << "\n";
  }
  EXPECT_EQ(runWithoutFault().text, usual.text);
}
INSTANTIATE_TEST_SUITE_P(While, Faults, testing::ValuesIn(doings),
                         [](const testing::TestParamInfo<Doing>& doing) { return doing.param.name; });

/// The calls by which the C++ library does what posix/ asks of it.
const std::map<std::string_view, std::string_view> callOfFilesystem = {
    {"current_path", "getcwd"}, {"read_symlink", "readlink"}, {"status", "stat"}};

/// What needs nothing of the system that it may not get.
const std::set<std::string_view> neverFailing = {
    "dirfd",     "environ",    "getenv", "posix_spawn_file_actions_destroy", "posix_spawnattr_destroy",
    "sigaddset", "sigemptyset"};

/// What posix/ calls that it doesn't have itself, in the C library's names.
std::set<std::string> callsOfPosix() {
  const std::unique_ptr<FILE, int (*)(FILE*)> names(
      popen(PELMARIX_NM " --undefined-only --demangle " PELMARIX_POSIX_LIBRARY, "r"), pclose);
  std::set<std::string> calls;
  char line[10000];
  while (std::fgets(line, sizeof line, names.get()) != nullptr) {
    static const std::regex ofFilesystem(R"(.* U std::.*\bfilesystem::_*(\w+)(\[.*\])?\(.*\n)");
    static const std::regex ofLibrary(R"( *U ((?!llvm_)[a-z]\w*)(@.*)?\n)");
    static const std::regex checkedOfLibrary(R"( *U __(\w+_chk|open\w*_2)\n)");
    static const std::regex ofMemory("(mem|str)[a-z]+|bcmp");
    std::cmatch match;
    if (std::regex_match(line, match, ofFilesystem))
      calls.emplace(callOfFilesystem.contains(match.str(1)) ? callOfFilesystem.at(match.str(1))
                                                            : match.str(1));
    else if ((std::regex_match(line, match, ofLibrary) || std::regex_match(line, match, checkedOfLibrary)) &&
             !std::regex_match(match.str(1), ofMemory))
      calls.insert(match.str(1));
  }
  return calls;
}

TEST(FaultsOfCalls, areAllThatPosixMakes) {
  std::set<std::string_view> tried;
  for (const Doing& doing : doings)
    for (const auto& [row, outcomes] : doing.outcomes) tried.insert(row.substr(0, row.find(' ')));
  const std::set<std::string> calls = callsOfPosix();
  EXPECT_TRUE(calls.contains("read") && calls.contains("stat"));
  for (const std::string& call : calls)
    EXPECT_TRUE(tried.contains(call) || neverFailing.contains(call)) << call << " is called and never fails";
  for (const auto& [row, kinds] : errors)
    EXPECT_TRUE(tried.contains(row.substr(0, row.find(' ')))) << row << " is never called";
}

}  // namespace
}  // namespace pelmarix::posix
