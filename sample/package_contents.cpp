#include "sample/package_contents.h"

namespace pelmarix::sample {

void PackageContents::folder(const std::string& path) {
  add({.path = path, .kind = BomKind::folder, .mode = 040755});
}

void PackageContents::file(const std::string& path) { add({.path = path, .checksum = posixChecksum(path)}); }

void PackageContents::program(const std::string& path) {
  add({.path = path,
       .mode = 0100755,
       .checksum = posixChecksum(path),
       .processors = {{0x1000007, 3, 0, posixChecksum("x")}, {7, 3, 0, posixChecksum("i")}}});
}

void PackageContents::link(const std::string& path, const std::string& target) {
  add({.path = path, .kind = BomKind::link, .mode = 0120755, .linkTarget = target});
}

void PackageContents::add(BomEntry entry) {
  stamp_(entry);
  for (const BomProcessor& part : entry.processors) entry.size += part.size;
  entries_.push_back(std::move(entry));
}

void addApplication(PackageContents& contents, const Application& application) {
  const std::string bundle = application.path + "/Contents";
  contents.folder(application.path);
  contents.folder(bundle);
  contents.folder(bundle + "/MacOS");
  contents.program(bundle + "/MacOS/" + application.program);
  contents.file(bundle + "/Info.plist");
  contents.folder(bundle + "/Resources");
  contents.file(bundle + "/Resources/Read\tMe.txt");
  for (const char* language : {"Base", "da", "de", "en", "es", "fr", "it", "ja", "pt_BR", "zh_CN"}) {
    const std::string folder = bundle + "/Resources/" + language + ".lproj";
    contents.folder(folder);
    for (const std::string& name : application.translations) contents.file(folder + "/" + name);
  }
  contents.folder(bundle + "/Frameworks");
  for (const std::string& name : application.frameworks) {
    const std::string framework = bundle + "/Frameworks/" + name + ".framework";
    contents.folder(framework);
    contents.folder(framework + "/Versions");
    contents.folder(framework + "/Versions/A");
    contents.program(framework + "/Versions/A/" + name);
    contents.folder(framework + "/Versions/A/Headers");
    for (int i = 1; i <= application.headersPerFramework; ++i) {
      contents.file(framework + "/Versions/A/Headers/" + name + "Part" + std::to_string(i) + ".h");
    }
    contents.link(framework + "/Versions/Current", "A");
  }
}

std::vector<BomEntry> manyBomEntries(std::size_t count) {
  // Sizes and times count up, so that each path differs from its neighbours.
  PackageContents contents([number = 0U](BomEntry& entry) mutable {
    entry.group = entry.kind == BomKind::link ? 0 : 80;
    entry.modificationTime = 1538021007 + number;  // from 2018-09-27 04:03:27 on
    for (BomProcessor& part : entry.processors) part.size = 1000 * (number % 1000);
    if (entry.kind == BomKind::file && entry.processors.empty()) entry.size = 13 * number;
    ++number;
  });
  Application application;
  application.frameworks = {"Drawing", "Exchange", "Storage"};
  application.headersPerFramework = 40;
  for (int i = 1; i <= 10; ++i) {
    application.translations.push_back("Localizable-" + std::to_string(i) + ".strings");
  }
  contents.folder(".");
  contents.folder("./Applications");
  for (std::size_t number = 1; contents.size() < count; ++number) {
    const char* const names[] = {"Night Sky", "Überblick", "Photo Studio", "毎日メモ", "Ledger"};
    application.program = names[number % 5];
    application.path = "./Applications/" + application.program + " " + std::to_string(number) + ".app";
    addApplication(contents, application);
  }
  std::vector<BomEntry> entries = contents.take();
  entries.resize(count);
  return entries;
}

}  // namespace pelmarix::sample
