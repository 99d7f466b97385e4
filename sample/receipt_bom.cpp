#include "sample/receipt_bom.h"

#include <cstdint>
#include <vector>

#include "sample/bom_writer.h"
#include "sample/package_contents.h"
#include "sample/random.h"

namespace pelmarix::sample {
namespace {

// An application, and documents beside it.
void addApplicationWithDocuments(PackageContents& contents, const std::string& name) {
  const Application application{.path = "./Applications/" + name + ".app",
                                .program = name,
                                .translations = {"InfoPlist.strings", "Main Menu.strings"},
                                .frameworks = {"Sketching"},
                                .headersPerFramework = 3};
  contents.folder(".");
  contents.folder("./Applications");
  addApplication(contents, application);
  contents.link(application.path + "/Contents/Frameworks/Sketching.framework/Sketching",
                "Versions/Current/Sketching");
  const std::string documents = "./Library/Documentation/" + name;
  contents.file(documents + "/Überblick für Einsteiger.html");
  contents.file(documents + "/はじめに.html");
  contents.file(documents + "/Columns\tand\ttabs.txt");
}

// Data as a background update brings it: a few files in a bundle of the system.
void addData(PackageContents& contents, const std::string& name, Random& random) {
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

void addFolders(PackageContents& contents, const std::string& name) {
  const std::string support = "./Library/Application Support";
  contents.folder(".");
  contents.folder("./Library");
  contents.folder(support);
  contents.folder(support + "/" + name);
  contents.folder(support + "/" + name + "/Templates");
  contents.link(support + "/" + name + "/Latest", "Templates");
}

// "com.example.office.templates.16U1200" gives "templates".
std::string shortName(const std::string& packageIdentifier) {
  const std::size_t end = packageIdentifier.rfind('.');
  const std::size_t begin = packageIdentifier.rfind('.', end - 1) + 1;
  return packageIdentifier.substr(begin, end - begin);
}

std::vector<BomEntry> entriesFor(const Receipt& receipt, Random& random) {
  const auto installed = static_cast<std::uint32_t>(receipt.installDate.timeIntervalSinceReferenceDate +
                                                    secondsFromUnixEpochToReferenceDate);
  PackageContents contents([installed, &random](BomEntry& entry) {
    const auto below = [&random](std::size_t bound) {
      return static_cast<std::uint32_t>(random.below(bound));
    };
    entry.group = entry.path.starts_with("./Applications") ? 80 : 0;  // administrators own applications
    entry.modificationTime = installed - 86400 - below(1'728'000);    // 1 to 21 days before
    for (BomProcessor& part : entry.processors) part.size = 20'000 + below(900'000);
    if (entry.kind == BomKind::file && entry.processors.empty()) {
      entry.size = below(std::size_t{1} << (4 + below(18)));
    }
  });
  const std::string name = shortName(receipt.packageIdentifier);
  if (receipt.bom == ReceiptBom::foldersOnly) {
    addFolders(contents, name);
  } else if (receipt.packageIdentifier.starts_with("com.example.")) {
    addApplicationWithDocuments(contents, name);
  } else {
    addData(contents, name, random);
  }
  return contents.take();
}

}  // namespace

std::string bomFile(const Receipt& receipt, std::size_t largeBomPaths) {
  if (receipt.bom == ReceiptBom::missing) return {};
  Random random(posixChecksum(receipt.packageIdentifier));
  BomLayout layout;
  layout.oldRecords = description(receipt.installDate) < "2018";
  layout.idStep = static_cast<std::uint32_t>(1 + random.below(3));
  const std::vector<BomEntry> entries =
      receipt.bom == ReceiptBom::large ? manyBomEntries(largeBomPaths) : entriesFor(receipt, random);
  std::string bytes = writeBillOfMaterials(entries, layout);
  // What a copy that was cut off leaves behind.
  if (receipt.bom == ReceiptBom::broken) bytes.resize(bytes.size() / 2);
  return bytes;
}

}  // namespace pelmarix::sample
