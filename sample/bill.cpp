#include "sample/bill.h"

#include <array>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "sample/bom_writer.h"
#include "sample/random.h"

namespace pelmarix::sample {
namespace {

/// Collects the paths of one package.
class Contents {
 public:
  Contents(std::uint32_t built, Random& random) : built_(built), random_(random) {}

  void folder(const std::string& path) { entries_.push_back(entryAt(path, BomKind::folder, 040755)); }

  void file(const std::string& path) {
    BomEntry entry = entryAt(path, BomKind::file, 0100644);
    entry.size = static_cast<std::uint32_t>(random_.below(std::size_t{1} << (4 + random_.below(18))));
    entry.checksum = posixChecksum(path);
    entries_.push_back(std::move(entry));
  }

  /// A program for a 32-bit and a 64-bit processor.
  void program(const std::string& path) {
    BomEntry entry = entryAt(path, BomKind::file, 0100755);
    for (const std::uint32_t type : {0x7U, 0x1000007U}) {
      const auto size = static_cast<std::uint32_t>(20'000 + random_.below(900'000));
      entry.processors.push_back(
          {.type = type, .subtype = 3, .size = size, .checksum = posixChecksum(path) ^ type});
      entry.size += size;
    }
    entry.checksum = posixChecksum(path);
    entries_.push_back(std::move(entry));
  }

  void link(const std::string& path, std::string target) {
    BomEntry entry = entryAt(path, BomKind::link, 0120755);
    entry.linkTarget = std::move(target);
    entries_.push_back(std::move(entry));
  }

  std::vector<BomEntry> take() { return std::move(entries_); }

 private:
  BomEntry entryAt(const std::string& path, BomKind kind, std::uint16_t mode) {
    BomEntry entry;
    entry.path = path;
    entry.kind = kind;
    entry.mode = mode;
    entry.group = path.starts_with("./Applications") ? 80 : 0;  // administrators own applications
    // Within the twenty days before.
    entry.modificationTime = built_ - static_cast<std::uint32_t>(random_.below(1'728'000));
    return entry;
  }

  std::uint32_t built_;
  Random& random_;
  std::vector<BomEntry> entries_;
};

/// An application, its framework and its translations, and a document or two beside it.
void addApplication(Contents& contents, const std::string& name, Random& random) {
  const std::string bundle = "./Applications/" + name + ".app/Contents";
  contents.folder(".");
  contents.folder("./Applications");
  contents.folder("./Applications/" + name + ".app");
  contents.folder(bundle);
  contents.file(bundle + "/Info.plist");
  contents.file(bundle + "/PkgInfo");
  contents.program(bundle + "/MacOS/" + name);
  contents.file(bundle + "/Resources/" + name + ".icns");
  constexpr auto languages =
      std::to_array<std::string_view>({"de", "en", "es", "fr", "it", "ja", "nl", "pt", "sv"});
  for (const std::string_view language : languages) {
    const std::string translation = bundle + "/Resources/" + std::string(language) + ".lproj";
    contents.folder(translation);
    contents.file(translation + "/InfoPlist.strings");
    if (random.below(2) == 0) contents.file(translation + "/Main Menu.strings");
  }
  const std::string framework = bundle + "/Frameworks/Sketching.framework";
  contents.program(framework + "/Versions/A/Sketching");
  contents.file(framework + "/Versions/A/Resources/Info.plist");
  contents.link(framework + "/Versions/Current", "A");
  contents.link(framework + "/Sketching", "Versions/Current/Sketching");
  contents.link(framework + "/Resources", "Versions/Current/Resources");
  contents.file("./Library/Documentation/" + name + "/Überblick für Einsteiger.html");
  contents.file("./Library/Documentation/" + name + "/はじめに.html");
  contents.file("./Library/Documentation/" + name + "/Columns\tand\ttabs.txt");
}

/// Data as a background update brings it: a few files in a bundle of the system.
void addData(Contents& contents, const std::string& name, Random& random) {
  const std::string bundle = "./System/Library/CoreServices/" + name + ".bundle/Contents";
  contents.folder(".");
  contents.folder(bundle);
  contents.file(bundle + "/Info.plist");
  contents.file(bundle + "/version.plist");
  contents.file(bundle + "/_CodeSignature/CodeResources");
  const std::size_t tables = 2 + random.below(12);
  for (std::size_t i = 1; i <= tables; ++i) {
    contents.file(bundle + "/Resources/Table " + std::to_string(i) + ".dat");
  }
}

void addFolders(Contents& contents, const std::string& name) {
  contents.folder(".");
  contents.folder("./Library");
  contents.folder("./Library/Application Support");
  contents.folder("./Library/Application Support/" + name);
  contents.folder("./Library/Application Support/" + name + "/Templates");
  contents.link("./Library/Application Support/" + name + "/Latest", "Templates");
}

/// "com.example.office.templates.16U1200" gives "templates".
std::string shortName(const std::string& packageIdentifier) {
  const std::size_t end = packageIdentifier.rfind('.');
  const std::size_t begin = packageIdentifier.rfind('.', end - 1) + 1;
  return packageIdentifier.substr(begin, end - begin);
}

std::vector<BomEntry> entriesFor(const Receipt& receipt, std::size_t largeBillPaths, Random& random) {
  if (receipt.billKind == BillKind::large) return manyBomEntries(largeBillPaths);
  const double installed =
      receipt.installDate.timeIntervalSinceReferenceDate + secondsFromUnixEpochToReferenceDate;
  Contents contents(static_cast<std::uint32_t>(installed) - 86400, random);
  const std::string name = shortName(receipt.packageIdentifier);
  if (receipt.billKind == BillKind::foldersOnly) {
    addFolders(contents, name);
  } else if (receipt.packageIdentifier.starts_with("com.example.")) {
    addApplication(contents, name, random);
  } else {
    addData(contents, name, random);
  }
  return contents.take();
}

}  // namespace

std::string billFile(const Receipt& receipt, std::size_t largeBillPaths) {
  if (receipt.billKind == BillKind::missing) return {};
  Random random(posixChecksum(receipt.packageIdentifier));
  BomLayout layout;
  layout.oldRecords = description(receipt.installDate) < "2018";
  layout.idStep = static_cast<std::uint32_t>(1 + random.below(3));
  std::string bytes = writeBillOfMaterials(entriesFor(receipt, largeBillPaths, random), layout);
  // What a copy that was cut off leaves behind.
  if (receipt.billKind == BillKind::broken) bytes.resize(bytes.size() / 2);
  return bytes;
}

}  // namespace pelmarix::sample
