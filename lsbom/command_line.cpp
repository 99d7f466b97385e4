#include "lsbom/command_line.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>

#include "lsbom/bom_file.h"
#include "posix/regular_file.h"

namespace pelmarix::lsbom {
namespace {

constexpr std::string_view usage = "usage: lsbom [-bcdflmsx] [--arch architecture] [-p letters] bom ...\n";

constexpr std::pair<char, bool ListOptions::*> switches[] = {
    {'b', &ListOptions::blockDevices}, {'c', &ListOptions::characterDevices},
    {'d', &ListOptions::folders},      {'f', &ListOptions::files},
    {'l', &ListOptions::links},        {'m', &ListOptions::modificationTimes},
    {'s', &ListOptions::pathsOnly},    {'x', &ListOptions::suppressModes}};

constexpr std::pair<std::string_view, std::uint32_t> architectures[] = {
    {"i386", 7}, {"x86_64", 0x1000007}, {"arm", 12}, {"arm64", 0x100000C}, {"ppc", 18}, {"ppc64", 0x1000012}};

class Parser {
 public:
  explicit Parser(const std::vector<std::string>& arguments) : arguments_(arguments) {}

  Result<CommandLine, UsageError> parse() {
    while (next_ < arguments_.size()) {
      const std::string_view argument = arguments_[next_];
      if (argument.size() < 2 || argument.front() != '-') break;
      ++next_;
      if (argument == "--") break;
      const auto parsed =
          argument.starts_with("--") ? parseLong(argument.substr(2)) : parseLetters(argument.substr(1));
      if (!parsed) return parsed.error();
    }
    result_.files.assign(arguments_.begin() + static_cast<std::ptrdiff_t>(next_), arguments_.end());
    if (result_.files.empty()) return UsageError{"no bill of materials is named"};
    if (result_.options.pathsOnly && !result_.options.columns.empty())
      return UsageError{"-s and -p exclude each other"};
    return std::move(result_);
  }

 private:
  Result<void, UsageError> parseLong(std::string_view option) {
    const std::size_t equals = option.find('=');
    const std::string_view name = option.substr(0, equals);
    if (name != "arch") return UsageError{"unknown option --" + std::string(name)};
    if (equals != std::string_view::npos) return parseArchitecture(option.substr(equals + 1));
    if (next_ == arguments_.size()) return UsageError{"option --arch needs a value"};
    return parseArchitecture(arguments_[next_++]);
  }

  Result<void, UsageError> parseArchitecture(std::string_view name) {
    for (const auto& [known, number] : architectures) {
      if (known != name) continue;
      result_.options.architecture = number;
      return {};
    }
    return UsageError{"unknown architecture " + std::string(name)};
  }

  // Letters may stand behind one "-"; what follows "p" are the columns, which may be the next argument.
  Result<void, UsageError> parseLetters(std::string_view letters) {
    for (; !letters.empty() && letters.front() != 'p'; letters.remove_prefix(1)) {
      const auto* const found =
          std::find_if(std::begin(switches), std::end(switches),
                       [&](const auto& known) { return known.first == letters.front(); });
      if (found == std::end(switches)) return UsageError{std::string("unknown option -") + letters.front()};
      result_.options.*found->second = true;
    }
    if (letters.empty()) return {};
    if (letters.size() > 1) return parseColumns(letters.substr(1));
    if (next_ == arguments_.size()) return UsageError{"option -p needs a value"};
    return parseColumns(arguments_[next_++]);
  }

  Result<void, UsageError> parseColumns(std::string_view columns) {
    if (columns.empty()) return UsageError{"-p names no column"};
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const char letter = columns[i];
      if (columnLetters.find(letter) == std::string_view::npos)
        return UsageError{std::string("unknown column ") + letter};
      if (columns.find(letter) != i) return UsageError{std::string("column ") + letter + " is named twice"};
    }
    result_.options.columns = columns;
    return {};
  }

  const std::vector<std::string>& arguments_;
  std::size_t next_ = 0;
  CommandLine result_;
};

// The ids in a bill of materials are those of the Mac it is of, and so are the names: without a volume, this
// machine's. There may be no such file.
Accounts readAccounts(const posix::Volume& volume, const std::string& path) {
  auto file = posix::RegularFile::open(volume.resolve(path));
  if (!file) return {};
  const auto lines = file->readToEnd();
  return lines ? Accounts(*lines) : Accounts();
}

std::string resolvePath(const std::string& path, const posix::Volume& volume) {
  if (!path.starts_with('/')) return path;
  std::string below = volume.resolve(path);
  // Where it can't be told whether the Mac has it, this machine's file is still none of the Mac's.
  std::error_code unknown;
  return std::filesystem::exists(below, unknown) || unknown ? below : path;
}

struct OpenBom {
  BomFile file;
  BillOfMaterials content;  // with views into the file
};

// Fails with a message.
Result<OpenBom, std::string> openBom(const std::string& path) {
  auto file = BomFile::read(path);
  if (!file) return file.error().message();
  auto content = BillOfMaterials::read(file->bytes());
  if (!content) {
    const Failure failure = content.error();
    return std::string(describe(failure.fault)) + " (at byte " + std::to_string(failure.offset) + ")";
  }
  return OpenBom{*std::move(file), *std::move(content)};
}

void complain(std::FILE* errors, const std::string& message) {
  std::fputs(("lsbom: " + message + "\n").c_str(), errors);
}

}  // namespace

Result<CommandLine, UsageError> parseCommandLine(const std::vector<std::string>& arguments) {
  return Parser(arguments).parse();
}

int run(const std::vector<std::string>& arguments, const posix::Volume& volume, std::FILE* output,
        std::FILE* errors) {
  const auto command = parseCommandLine(arguments);
  if (!command) {
    complain(errors, command.error().message);
    std::fputs(usage.data(), errors);
    return exitUsage;
  }

  AccountNames names;
  if (command->options.columns.find_first_of("GU?") != std::string::npos) {
    names.users = readAccounts(volume, "/etc/passwd");
    names.groups = readAccounts(volume, "/etc/group");
  }

  int status = exitSuccess;
  Output buffered(output);
  for (const std::string& path : command->files) {
    const auto bom = openBom(resolvePath(path, volume));
    if (!bom) {
      complain(errors, path + ": " + bom.error());
      status = exitFailure;
    } else if (const auto listed = list(bom->content, command->options, names, buffered); !listed) {
      complain(errors, "standard output: " + listed.error().message());
      return exitFailure;
    }
  }
  return status;
}

}  // namespace pelmarix::lsbom
