#include "sample/sample_volume.h"

#include <fstream>
#include <ios>
#include <string_view>
#include <system_error>

#include "sample/install_history.h"
#include "sample/property_list.h"
#include "sample/receipt_bom.h"
#include "sample/receipts.h"

namespace pelmarix::sample {
namespace {

namespace fs = std::filesystem;

// Tells a sample from a folder that is somebody's own. It is written first, so that a sample that was never
// finished can be replaced too.
constexpr std::string_view markerName = "This is a sample.txt";
constexpr std::string_view markerText =
    "pelmarix-sample made this folder. Nothing in it was ever installed anywhere.\n"
    "When it makes the sample anew, it replaces Library and System.\n";

void writeFile(const fs::path& path, std::string_view bytes) {
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) throw fs::filesystem_error("cannot write", path, std::make_error_code(std::errc::io_error));
}

PropertyList systemVersion() {
  return {Dictionary{
      {"ProductBuildVersion", {std::string("19H15")}},
      {"ProductName", {std::string("Mac OS X")}},
      {"ProductUserVisibleVersion", {std::string("10.15.7")}},
      {"ProductVersion", {std::string("10.15.7")}},
      {"iOSSupportVersion", {std::string("13.6")}},
  }};
}

// Leaves nothing of a sample that was made there before.
void clear(const fs::path& folder) {
  fs::create_directories(folder);
  writeFile(folder / markerName, markerText);
  fs::remove_all(folder / "Library");
  fs::remove_all(folder / "System");
}

void writeSystem(const fs::path& volume, const Sizes& sizes) {
  fs::create_directories(volume / "Library");  // where a Mac shows that of the data volume
  fs::create_directories(volume / "System/Library/CoreServices");
  writeFile(volume / "System/Library/CoreServices/SystemVersion.plist", xmlForm(systemVersion()));
  const fs::path receiptsFolder = volume / "System/Library/Receipts";
  fs::create_directories(receiptsFolder / "Archive");
  for (const Receipt& receipt : receipts(sizes.receipts)) {
    writeFile(receiptsFolder / (receipt.stem + ".plist"), propertyListFile(receipt));
    const std::string bom = bomFile(receipt, sizes.largeBomPaths);
    if (!bom.empty()) writeFile(receiptsFolder / (receipt.stem + ".bom"), bom);
  }
}

void writeData(const fs::path& volume, const Sizes& sizes) {
  fs::create_directories(volume / "Library/Receipts");
  fs::create_directories(volume /
                         "System/Library/Caches");  // of the system's folders those that it writes to
  writeFile(volume / "Library/Receipts/InstallHistory.plist", xmlForm(installHistory(sizes.entries)));
}

Result<void, std::string> make(const fs::path& system, const fs::path& data, const Sizes& sizes) {
  try {
    for (const fs::path& folder : {system, data}) {
      if (fs::exists(folder) && !fs::is_directory(folder)) return folder.string() + " is not a folder";
      if (fs::exists(folder) && !fs::is_empty(folder) && !fs::exists(folder / markerName))
        return folder.string() + " holds something that is no sample; it was left as it is";
    }
    for (const fs::path& folder : {system, data}) clear(folder);
    writeSystem(system, sizes);
    writeData(data, sizes);
  } catch (const fs::filesystem_error& error) {
    return std::string(error.what());
  }
  return {};
}

}  // namespace

Result<void, std::string> makeVolume(const fs::path& folder, const Sizes& sizes) {
  return make(folder, folder, sizes);
}

Result<void, std::string> makeTwoVolumes(const fs::path& folder, const Sizes& sizes) {
  return make(folder / "Macintosh HD", folder / "Macintosh HD - Data", sizes);
}

}  // namespace pelmarix::sample
