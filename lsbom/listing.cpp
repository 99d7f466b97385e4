#include "lsbom/listing.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "lsbom/parallel.h"
#include "lsbom/text.h"

namespace pelmarix::lsbom {
namespace {

constexpr std::uint16_t typeBits = 0170000;
constexpr std::uint16_t characterDevice = 0020000;
constexpr std::uint16_t blockDevice = 0060000;

// So many entries are made into text at once.
constexpr std::size_t entriesPerText = 1024;

// The path of the entry that was last moved to.
class PathText {
 public:
  // The first entry needs what stands above it.
  PathText(const BillOfMaterials& bill, const Entry& first) {
    std::vector<Entry> above;
    for (std::uint32_t id = first.parent; id != 0; id = above.back().parent) {
      above.push_back(bill.entryWithId(id));
    }
    for (auto entry = above.rbegin(); entry != above.rend(); ++entry) moveTo(*entry);
  }

  // The next entry stands below the last one or below something above that.
  void moveTo(const Entry& entry) {
    while (!parts_.empty() && parts_.back().id != entry.parent) parts_.pop_back();
    text_.resize(parts_.empty() ? 0 : parts_.back().end);
    if (!parts_.empty()) text_ += '/';
    text_ += entry.name;
    parts_.push_back({entry.id, text_.size()});
  }

  std::string_view text() const { return text_; }

 private:
  // A component: the id of the entry it is of, and where it ends.
  struct Part {
    std::uint32_t id;
    std::size_t end;
  };

  std::string text_;
  std::vector<Part> parts_;
};

class Lister {
 public:
  Lister(const ListOptions& options, const AccountNames& names, Text& text)
      : options_(options), names_(names), text_(text) {}

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
      text_.append(path);
    } else if (options_.columns.empty()) {
      printUsualFields(entry.record, path);
    } else {
      printColumns(entry, path);
    }
    text_.append('\n');
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
    text_.append(path);
    text_.append('\t');
    if (showsMode(record)) text_.appendNumber(record.mode, 8);
    text_.append('\t');
    printIds(record);
    if (!hasSize(record)) return;
    const ProgramPart part = sizeAndChecksum(record);
    text_.append('\t');
    text_.appendNumber(part.size);
    text_.append('\t');
    text_.appendNumber(part.checksum);
    if (record.kind == Kind::link) {
      text_.append('\t');
      text_.append(record.linkTarget);
    } else if (options_.modificationTimes) {
      text_.append('\t');
      text_.appendNumber(record.modificationTime);
    }
  }

  void printColumns(const Entry& entry, std::string_view path) {
    bool first = true;
    for (const char letter : options_.columns) {
      if (!first) text_.append('\t');
      first = false;
      printColumn(letter, entry.record, path);
    }
  }

  void printColumn(char letter, const Record& record, std::string_view path) {
    switch (letter) {
      case 'f':
        text_.append(path);
        break;
      case 'F':
        text_.append(quoted(path));
        break;
      case 'g':
        text_.appendNumber(record.group);
        break;
      case 'G':
        printName(names_.groups, record.group);
        break;
      case 'm':
        if (showsMode(record)) text_.appendNumber(record.mode, 8);
        break;
      case 'M':
        if (showsMode(record)) {
          const auto mode = symbolicMode(record.mode);
          text_.append({mode.data(), mode.size()});
        }
        break;
      case 's':
        if (hasSize(record)) text_.appendNumber(sizeAndChecksum(record).size);
        break;
      case 'S':
        if (hasSize(record)) text_.append(groupedNumber(sizeAndChecksum(record).size));
        break;
      case 't':
        text_.appendNumber(record.modificationTime);
        break;
      case 'T':
        text_.append(time_(record.modificationTime));
        break;
      case 'u':
        text_.appendNumber(record.user);
        break;
      case 'U':
        printName(names_.users, record.user);
        break;
      case '/':
        printIds(record);
        break;
      default:  // '?', the one letter left
        printName(names_.users, record.user);
        text_.append('/');
        printName(names_.groups, record.group);
    }
  }

  void printIds(const Record& record) {
    text_.appendNumber(record.user);
    text_.append('/');
    text_.appendNumber(record.group);
  }

  void printName(const Accounts& accounts, std::uint32_t id) {
    if (const std::string* name = accounts.name(id)) {
      text_.append(*name);
    } else {
      text_.appendNumber(id);
    }
  }

  const ListOptions& options_;
  const AccountNames& names_;
  Text& text_;
  TimeText time_;
};

}  // namespace

void list(const BillOfMaterials& bill, const ListOptions& options, const AccountNames& names,
          Output& output) {
  inParallel(bill.size(), entriesPerText, [&](std::size_t begin, std::size_t end) {
    Text text(output, begin / entriesPerText);
    Lister lister(options, names, text);
    PathText path(bill, bill.entry(begin));
    for (std::size_t i = begin; i < end && output.error() == 0; ++i) {
      const Entry entry = bill.entry(i);
      path.moveTo(entry);
      if (lister.isChosen(entry.record)) lister.printLine(entry, path.text());
    }
  });
  output.finish();
}

}  // namespace pelmarix::lsbom
