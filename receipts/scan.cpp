#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/alert.h"
#include "platform/file_manager.h"
#include "receipts/bom.h"
#include "receipts/bom_receipt_record.h"

namespace pelmarix {
namespace {

constexpr std::string_view receiptExtension = ".plist";

/// True when the text behind the last "." of the path's last component is "plist", so for a file named
/// ".plist" too.
bool hasReceiptExtension(std::string_view path) { return path.ends_with(receiptExtension); }

}  // namespace

void BoM::readBoMPLists() {
  platform::FileManager& files = platform::FileManager::defaultManager();
  std::vector<std::shared_ptr<BoMItem>> items;
  if (const auto enumerator = files.enumeratorAtPath(receiptsFolder)) {
    while (const auto entry = enumerator->nextObject()) {
      if (!hasReceiptExtension(*entry)) continue;
      std::string path = receiptsFolder;
      path += *entry;
      const auto contents = files.readFile(path);
      if (!contents) {
        platform::showErrorAlert(platform::lastActionErrorMessage, "Couldn't read BoM PLists.");
        continue;
      }
      std::optional<theBoMReceipt> receipt = decodeBoMReceipt(*contents);
      if (!receipt) continue;
      path.resize(path.size() - receiptExtension.size());
      items.push_back(std::make_shared<BoMItem>(std::move(receipt->PackageIdentifier), receipt->InstallDate,
                                                std::move(path)));
    }
  }
  std::stable_sort(items.begin(), items.end(),
                   [](const auto& a, const auto& b) { return a->installDate > b->installDate; });
  children = std::move(items);
}

}  // namespace pelmarix
