#include "sample/volume.h"

#include <fstream>
#include <ios>
#include <string_view>

#include "sample/bill.h"
#include "sample/install_history.h"
#include "sample/property_list.h"
#include "sample/receipts.h"

namespace pelmarix::sample {
namespace {

namespace fs = std::filesystem;

/// Tells a sample from a folder that is somebody's own. It is written first, so that a sample that was never
/// finished can be replaced too.
constexpr std::string_view markerName = "This is a sample.txt";
constexpr std::string_view markerText =
    "pelmarix-sample made this folder. Nothing in it was ever installed anywhere.\n"
    "When it makes the sample anew, it replaces Library and System.\n";

void writeFile(const fs::path& path, std::string_view bytes) {
  std::ofstream file;
  file.exceptions(std::ios::badbit | std::ios::failbit);
  file.open(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
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

void writeReceipts(const fs::path& folder, const Sizes& sizes) {
  fs::create_directories(folder / "Archive");
  for (const Receipt& receipt : receipts(sizes.receipts)) {
    writeFile(folder / (receipt.stem + ".plist"), propertyListFile(receipt));
    const std::string bill = billFile(receipt, sizes.largeBillPaths);
    if (!bill.empty()) writeFile(folder / (receipt.stem + ".bom"), bill);
  }
}

void writeVolume(const fs::path& folder, const Sizes& sizes) {
  fs::create_directories(folder);
  writeFile(folder / markerName, markerText);
  fs::remove_all(folder / "Library");
  fs::remove_all(folder / "System");
  fs::create_directories(folder / "Library/Receipts");
  fs::create_directories(folder / "System/Library/CoreServices");
  writeFile(folder / "Library/Receipts/InstallHistory.plist", xmlForm(installHistory(sizes.entries)));
  writeFile(folder / "System/Library/CoreServices/SystemVersion.plist", xmlForm(systemVersion()));
  writeReceipts(folder / "System/Library/Receipts", sizes);
}

}  // namespace

std::string makeVolume(const fs::path& folder, const Sizes& sizes) {
  try {
    if (fs::exists(folder) && !fs::is_directory(folder)) return folder.string() + " is not a folder";
    if (fs::exists(folder) && !fs::is_empty(folder) && !fs::exists(folder / markerName)) {
      return folder.string() + " holds something that is no sample; it was left as it is";
    }
    writeVolume(folder, sizes);
  } catch (const std::ios_base::failure&) {
    return "a file in " + folder.string() + " couldn't be written";
  } catch (const fs::filesystem_error& error) {
    return error.what();
  }
  return {};
}

}  // namespace pelmarix::sample
