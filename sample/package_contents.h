// What packages install, made up: the paths that a sample's boms list.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "sample/bom_writer.h"

namespace pelmarix::sample {

/// Collects the paths of one package.
class PackageContents {
 public:
  /// Gives a new entry what differs from package to package: its owner, its modification time, and the size
  /// of a file, or of each processor's part of a program.
  using Stamp = std::function<void(BomEntry&)>;

  explicit PackageContents(Stamp stamp) : stamp_(std::move(stamp)) {}

  void folder(const std::string& path);
  void file(const std::string& path);
  /// For a 32-bit and a 64-bit processor.
  void program(const std::string& path);
  void link(const std::string& path, const std::string& target);

  std::size_t size() const { return entries_.size(); }
  std::vector<BomEntry> take() { return std::move(entries_); }

 private:
  void add(BomEntry entry);

  Stamp stamp_;
  std::vector<BomEntry> entries_;
};

struct Application {
  std::string path;  ///< of its bundle: "./Applications/Night Sky.app"
  std::string program;
  std::vector<std::string> translations;  ///< names of the files that there are for each language
  std::vector<std::string> frameworks;
  int headersPerFramework = 0;
};

/// Adds an application's bundle, each folder ahead of what it holds.
void addApplication(PackageContents& contents, const Application& application);

/// That many paths, as a package of many applications has them, each folder ahead of what it holds: links,
/// programs, blanks, a tab and letters beyond ASCII occur. The same count gives the same entries.
std::vector<BomEntry> manyBomEntries(std::size_t count);

}  // namespace pelmarix::sample
