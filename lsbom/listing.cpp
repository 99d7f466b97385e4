#include "lsbom/listing.h"

#include <string_view>
#include <vector>

#include "lsbom/text.h"

namespace pelmarix::lsbom {
namespace {

constexpr std::uint16_t typeBits = 0170000;
constexpr std::uint16_t characterDevice = 0020000;
constexpr std::uint16_t blockDevice = 0060000;

// The path of the entry that was last moved to.
class PathText {
 public:
  void moveTo(const Entry& entry) {
    text_.resize(entry.depth == 0 ? 0 : ends_[entry.depth - 1]);
    if (entry.depth > 0) text_ += '/';
    text_ += entry.name;
    ends_.resize(entry.depth);
    ends_.push_back(text_.size());
  }

  std::string_view text() const { return text_; }

 private:
  std::string text_;
  std::vector<std::size_t> ends_;  // of the path's components, by depth
};

class Lister {
 public:
  Lister(const ListOptions& options, const AccountNames& names, Output& output)
      : options_(options), names_(names), output_(output) {}

  bool isChosen(const Record& record) const {
    switch (record.kind) {
      case Kind::file:
        return options_.files || !isChoosing();
      case Kind::folder:
        return options_.folders || !isChoosing();
      case Kind::link:
        return options_.links || !isChoosing();
      case Kind::device:
        return (options_.blockDevices && (record.mode & typeBits) == blockDevice) ||
               (options_.characterDevices && (record.mode & typeBits) == characterDevice) || !isChoosing();
      case Kind::other:
        break;
    }
    return !isChoosing();
  }

  void printLine(const Entry& entry, std::string_view path) {
    if (options_.pathsOnly) {
      output_.append(path);
    } else if (options_.columns.empty()) {
      printUsualFields(entry.record, path);
    } else {
      printColumns(entry, path);
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
    if (options_.processor) {
      if (const auto part = record.programPart(*options_.processor)) return *part;
    }
    return {record.size, record.checksum};
  }

  void printUsualFields(const Record& record, std::string_view path) {
    output_.append(path);
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
      output_.append(record.linkTarget);
    } else if (options_.modificationTimes) {
      output_.append('\t');
      output_.appendNumber(record.modificationTime);
    }
  }

  void printColumns(const Entry& entry, std::string_view path) {
    bool first = true;
    for (const char letter : options_.columns) {
      if (!first) output_.append('\t');
      first = false;
      printColumn(letter, entry.record, path);
    }
  }

  void printColumn(char letter, const Record& record, std::string_view path) {
    switch (letter) {
      case 'f':
        output_.append(path);
        break;
      case 'F':
        output_.append(quoted(path));
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
        if (showsMode(record)) {
          const auto mode = symbolicMode(record.mode);
          output_.append({mode.data(), mode.size()});
        }
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
      case 'T':
        output_.append(time_(record.modificationTime));
        break;
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
      output_.append(*name);
    } else {
      output_.appendNumber(id);
    }
  }

  const ListOptions& options_;
  const AccountNames& names_;
  Output& output_;
  TimeText time_;
};

}  // namespace

void list(const BillOfMaterials& bill, const ListOptions& options, const AccountNames& names,
          Output& output) {
  Lister lister(options, names, output);
  PathText path;
  for (std::size_t i = 0; i < bill.size() && output.error() == 0; ++i) {
    const Entry entry = bill.entry(i);
    path.moveTo(entry);
    if (lister.isChosen(entry.record)) lister.printLine(entry, path.text());
  }
}

}  // namespace pelmarix::lsbom
