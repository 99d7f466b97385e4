#include "sample/receipts.h"

#include <array>
#include <cmath>
#include <string_view>
#include <utility>

#include "sample/lifetime.h"
#include "sample/property_list.h"
#include "sample/random.h"

namespace pelmarix::sample {
namespace {

struct Package {
  std::string_view identifier;
  std::string_view versionPrefix;
};

constexpr auto packages = std::to_array<Package>({
    {"com.apple.pkg.XProtectPlistConfigData", "1.0.0.0."},
    {"com.apple.pkg.MRTConfigData", "1.0.0.0."},
    {"com.apple.pkg.update.os.Patch", "10.0."},
    {"com.apple.pkg.GatekeeperConfigData", "1.0.0.0."},
    {"com.apple.pkg.CoreServicesAppConfigData", "1.0."},
    {"com.example.office.templates", "16."},
    {"com.example.harbour-mail", "3."},
    {"com.apple.pkg.Safari", "13."},
    {"com.example.printers.laser", "4."},
    {"com.apple.pkg.SpeechRecognition", "2."},
    {"com.example.draw-and-paint", "7."},
    {"com.example.backup-helper", "2.5."},
});

ReceiptBom bomFor(std::size_t placeFromNewest) {
  if (placeFromNewest == 2) return ReceiptBom::large;
  if (placeFromNewest == 11) return ReceiptBom::broken;
  if (placeFromNewest % 50 == 7) return ReceiptBom::foldersOnly;
  if (placeFromNewest % 10 == 4) return ReceiptBom::missing;
  return ReceiptBom::usual;
}

}  // namespace

std::vector<Receipt> receipts(std::size_t count) {
  Random random(20210301);
  const double begin = secondsAt(delivered);
  const double end = secondsAt(copied);
  std::vector<Receipt> all;
  all.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t placeFromNewest = count - 1 - i;
    const Package& package = packages[random.below(packages.size())];
    const std::string number = std::to_string(1000 + i);
    const double moment =
        begin + (end - begin) * (static_cast<double>(i) + random.fraction()) / static_cast<double>(count);

    Receipt receipt;
    receipt.packageIdentifier = std::string(package.identifier) + ".16U" + number;
    receipt.packageVersion = std::string(package.versionPrefix) + number;
    receipt.form = random.below(5) < 2 ? ReceiptForm::xml : ReceiptForm::binary;
    receipt.bom = bomFor(placeFromNewest);
    receipt.stem = receipt.packageIdentifier;
    if (placeFromNewest % 25 == 3) receipt.stem = "Scanner Software (Größe " + number + ")";
    if (placeFromNewest % 20 == 9) receipt.stem = "Archive/" + receipt.stem;
    // Packages that are installed together carry the same moment.
    if (i % 7 == 6) {
      receipt.form = all.back().form;
      receipt.installDate = all.back().installDate;
    } else {
      receipt.installDate.timeIntervalSinceReferenceDate =
          receipt.form == ReceiptForm::xml ? std::floor(moment) : moment;
    }
    all.push_back(std::move(receipt));
  }
  return all;
}

std::string propertyListFile(const Receipt& receipt) {
  const PropertyList root = {Dictionary{
      {"InstallDate", {receipt.installDate}},
      {"InstallPrefixPath", {std::string()}},
      {"InstallProcessName", {std::string("softwareupdated")}},
      {"PackageFileName", {receipt.packageIdentifier + ".pkg"}},
      {"PackageIdentifier", {receipt.packageIdentifier}},
      {"PackageVersion", {receipt.packageVersion}},
  }};
  return receipt.form == ReceiptForm::xml ? xmlForm(root) : binaryForm(root);
}

}  // namespace pelmarix::sample
