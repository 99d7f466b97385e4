#include "lsbom/listing.h"

#include <vector>

#include "lsbom/field_formats.h"

namespace pelmarix::lsbom {
namespace {

constexpr std::uint16_t typeBits = 0170000;
constexpr std::uint16_t characterDevice = 0020000;
constexpr std::uint16_t blockDevice = 0060000;

// The path of the entry that was last moved to.
class CurrentPath {
 public:
  // Takes all the memory that it will need, so that a listing that has begun doesn't end for want of some.
  CurrentPath() {
    path_.reserve(longestPath);
    components_.reserve(longestPath + 1);
  }

  // The entries must come in the order of the bom.
  void moveTo(const Entry& entry) {
    while (!components_.empty() && components_.back().id != entry.parent) components_.pop_back();
    path_.resize(components_.empty() ? 0 : components_.back().end);
    if (!components_.empty()) path_ += '/';
    path_ += entry.name;
    components_.push_back({entry.id, path_.size()});
  }

  std::string_view path() const { return path_; }

 private:
  struct Component {
    std::uint32_t id;  // of its entry
    std::size_t end;   // in the path
  };

  std::string path_;
  std::vector<Component> components_;
};

class Lister {
 public:
  Lister(const ListOptions& options, const AccountNames& names, Output& output)
      : options_(options), names_(names), output_(output) {}

  bool isChosen(const Record& record) const {
    if (!isChoosing()) return true;
    const int type = record.mode & typeBits;
    switch (record.kind) {
      case Kind::file:
        return options_.files;
      case Kind::folder:
        return options_.folders;
      case Kind::link:
        return options_.links;
      case Kind::device:
        return (options_.blockDevices && type == blockDevice) ||
               (options_.characterDevices && type == characterDevice);
      case Kind::other:
        return false;
    }
    return false;
  }

  void printLine(const Record& record, std::string_view path) {
    if (options_.pathsOnly) {
      output_.appendText(path);
    } else if (options_.columns.empty()) {
      printUsualFields(record, path);
    } else {
      printColumns(record, path);
    }
    output_.append('\n');
  }

 private:
  bool isChoosing() const {
    return options_.blockDevices || options_.characterDevices || options_.folders || options_.files ||
           options_.links;
  }

  static bool hasSize(const Record& record) { return record.kind == Kind::file || record.kind == Kind::link; }

  bool showsMode(const Record& record) const {
    return !options_.suppressModes || (record.kind != Kind::folder && record.kind != Kind::link);
  }

  ProgramPart sizeAndChecksum(const Record& record) const {
    if (options_.architecture) {
      if (const auto part = record.programPart(*options_.architecture)) return *part;
    }
    return {record.size, record.checksum};
  }

  void printUsualFields(const Record& record, std::string_view path) {
    output_.appendText(path);
    output_.append('\t');
    if (showsMode(record)) output_.appendNumber(record.mode, 8);
    output_.append('\t');
    printIds(record);
    if (!hasSize(record)) return;
    const ProgramPart part = sizeAndChecksum(record);
    output_.append('\t');
    output_.appendNumber(part.size);
    output_.append('\t');
    output_.appendNumber(part.checksum);
    if (record.kind == Kind::link) {
      output_.append('\t');
      output_.appendText(record.linkTarget);
    } else if (options_.modificationTimes) {
      output_.append('\t');
      output_.appendNumber(record.modificationTime);
    }
  }

  void printColumns(const Record& record, std::string_view path) {
    bool first = true;
    for (const char letter : options_.columns) {
      if (!first) output_.append('\t');
      first = false;
      printColumn(letter, record, path);
    }
  }

  void printColumn(char letter, const Record& record, std::string_view path) {
    switch (letter) {
      case 'f':
        output_.appendText(path);
        break;
      case 'F':
        output_.appendQuoted(path);
        break;
      case 'g':
        output_.appendNumber(record.group);
        break;
      case 'G':
        printName(names_.groups, record.group);
        break;
      case 'm':
        if (showsMode(record)) output_.appendNumber(record.mode, 8);
        break;
      case 'M':
        if (showsMode(record)) output_.append(symbolicMode(record.mode));
        break;
      case 's':
        if (hasSize(record)) output_.appendNumber(sizeAndChecksum(record).size);
        break;
      case 'S':
        if (hasSize(record)) output_.append(groupedNumber(sizeAndChecksum(record).size));
        break;
      case 't':
        output_.appendNumber(record.modificationTime);
        break;
      case 'T': {
        const auto time = classicTime(record.modificationTime);
        output_.append({time.data(), time.size()});
        break;
      }
      case 'u':
        output_.appendNumber(record.user);
        break;
      case 'U':
        printName(names_.users, record.user);
        break;
      case '/':
        printIds(record);
        break;
      default:  // '?', the one letter left
        printName(names_.users, record.user);
        output_.append('/');
        printName(names_.groups, record.group);
    }
  }

  void printIds(const Record& record) {
    output_.appendNumber(record.user);
    output_.append('/');
    output_.appendNumber(record.group);
  }

  void printName(const Accounts& accounts, std::uint32_t id) {
    if (const std::string* name = accounts.name(id)) {
      output_.appendText(*name);
    } else {
      output_.appendNumber(id);
    }
  }

  const ListOptions& options_;
  const AccountNames& names_;
  Output& output_;
};

}  // namespace

Result<void, std::error_code> list(const BillOfMaterials& bom, const ListOptions& options,
                                   const AccountNames& names, Output& output) {
  Lister lister(options, names, output);
  CurrentPath path;
  for (std::size_t i = 0; i < bom.size() && !output.hasFailed(); ++i) {
    const Entry entry = bom.entry(i);
    path.moveTo(entry);
    if (lister.isChosen(entry.record)) lister.printLine(entry.record, path.path());
  }
  return output.flush();
}

}  // namespace pelmarix::lsbom
