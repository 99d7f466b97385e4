#include "lsbom/command_line.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "lsbom/file_bytes.h"

namespace pelmarix::lsbom {
namespace {

constexpr std::string_view usage = "usage: lsbom [-bcdflmsx] [--arch processor] [-p letters] bom ...\n";

std::optional<std::uint32_t> processorNamed(std::string_view name) {
  static constexpr std::pair<std::string_view, std::uint32_t> processors[] = {
      {"i386", 7},          {"x86_64", 0x1000007}, {"arm", 12},
      {"arm64", 0x100000C}, {"ppc", 18},           {"ppc64", 0x1000012}};
  for (const auto& [known, number] : processors) {
    if (known == name) return number;
  }
  return {};
}

class Parser {
 public:
  explicit Parser(const std::vector<std::string>& arguments) : arguments_(arguments) {}

  CommandLine parse() {
    while (result_.error.empty() && next_ < arguments_.size()) {
      const std::string_view argument = arguments_[next_];
      if (argument.size() < 2 || argument.front() != '-') break;
      ++next_;
      if (argument == "--") break;
      if (argument.starts_with("--")) {
        parseLong(argument.substr(2));
      } else {
        parseLetters(argument.substr(1));
      }
    }
    const auto files = arguments_.begin() + static_cast<std::ptrdiff_t>(next_);
    result_.files.assign(files, arguments_.end());
    if (result_.files.empty()) fail("no bill of materials is named");
    if (result_.options.pathsOnly && !result_.options.columns.empty()) fail("-s and -p exclude each other");
    return std::move(result_);
  }

 private:
  void fail(std::string message) {
    if (result_.error.empty()) result_.error = std::move(message);
  }

  // The value of an option: what stands behind it in its argument, or the next argument.
  std::optional<std::string_view> value(std::optional<std::string_view> attached, const std::string& option) {
    if (attached) return attached;
    if (next_ < arguments_.size()) return arguments_[next_++];
    fail("option " + option + " needs a value");
    return {};
  }

  void parseLong(std::string_view option) {
    const std::size_t equals = option.find('=');
    const std::string_view name = option.substr(0, equals);
    if (name != "arch") return fail("unknown option --" + std::string(name));
    std::optional<std::string_view> attached;
    if (equals != std::string_view::npos) attached = option.substr(equals + 1);
    const auto processor = value(attached, "--arch");
    if (!processor) return;
    result_.options.processor = processorNamed(*processor);
    if (!result_.options.processor) fail("unknown processor " + std::string(*processor));
  }

  void parseLetters(std::string_view letters) {
    ListOptions& options = result_.options;
    for (; !letters.empty(); letters.remove_prefix(1)) {
      switch (letters.front()) {
        case 'b':
          options.blockDevices = true;
          break;
        case 'c':
          options.characterDevices = true;
          break;
        case 'd':
          options.folders = true;
          break;
        case 'f':
          options.files = true;
          break;
        case 'l':
          options.links = true;
          break;
        case 'm':
          options.modificationTimes = true;
          break;
        case 's':
          options.pathsOnly = true;
          break;
        case 'x':
          options.suppressModes = true;
          break;
        case 'p':
          return parseColumns(letters.substr(1));
        default:
          return fail(std::string("unknown option -") + letters.front());
      }
    }
  }

  void parseColumns(std::string_view attached) {
    const auto columns = value(attached.empty() ? std::nullopt : std::optional(attached), "-p");
    if (!columns) return;
    if (columns->empty()) return fail("-p names no column");
    for (std::size_t i = 0; i < columns->size(); ++i) {
      const char letter = (*columns)[i];
      if (columnLetters.find(letter) == std::string_view::npos)
        return fail(std::string("unknown column ") + letter);
      if (columns->find(letter) != i) return fail(std::string("column ") + letter + " is named twice");
    }
    result_.options.columns = *columns;
  }

  const std::vector<std::string>& arguments_;
  std::size_t next_ = 0;
  CommandLine result_;
};

std::string systemText(int error) { return std::generic_category().message(error); }

// The ids in a bill of materials are those of the Mac it is of, and so are the names: without a volume, this
// machine's.
Accounts readAccounts(const std::string& volume, const char* path) {
  FileBytes file;
  if (file.read(volume + path) != 0) return {};
  return Accounts(file.bytes());
}

void complain(std::FILE* errors, const std::string& message) {
  std::fputs(("lsbom: " + message + "\n").c_str(), errors);
}

// Says what is wrong with the file, or nothing.
std::string listFile(const std::string& path, const ListOptions& options, const AccountNames& names,
                     Output& output) {
  FileBytes file;
  if (const int error = file.read(path); error != 0) return systemText(error);
  BillOfMaterials bill;
  if (const Failure failure = bill.read(file.bytes())) {
    return std::string(describe(failure.fault)) + " (at byte " + std::to_string(failure.offset) + ")";
  }
  list(bill, options, names, output);
  return {};
}

}  // namespace

CommandLine parseCommandLine(const std::vector<std::string>& arguments) { return Parser(arguments).parse(); }

std::string resolvePath(const std::string& path, const std::string& volume) {
  if (volume.empty() || !path.starts_with('/')) return path;
  std::string below = volume + path;
  std::error_code unknown;
  return std::filesystem::exists(below, unknown) ? below : path;
}

int run(const std::vector<std::string>& arguments, const std::string& volume, std::FILE* output,
        std::FILE* errors) {
  const CommandLine command = parseCommandLine(arguments);
  if (!command.error.empty()) {
    complain(errors, command.error);
    std::fputs(usage.data(), errors);
    return exitUsage;
  }

  AccountNames names;
  if (command.options.columns.find_first_of("GU?") != std::string::npos) {
    names.users = readAccounts(volume, "/etc/passwd");
    names.groups = readAccounts(volume, "/etc/group");
  }

  int status = exitSuccess;
  Output buffered(output);
  for (const std::string& file : command.files) {
    const std::string problem = listFile(resolvePath(file, volume), command.options, names, buffered);
    if (!problem.empty()) {
      complain(errors, std::string(file).append(": ").append(problem));
      status = exitFailure;
    }
    if (buffered.error() != 0) {
      complain(errors, "standard output: " + systemText(buffered.error()));
      return exitFailure;
    }
  }
  return status;
}

}  // namespace pelmarix::lsbom
