#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

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

/// Decodes receipts many at a time: after each call of the system its own code has taken the decoder's place
/// in the processor's caches, which would make decoding them one by one half as slow again.
class ReceiptDecoder {
 public:
  /// Takes a receipt's path below the folder, and what the file holds.
  void add(std::string_view entry, std::string_view contents) {
    if (contents.size() > bytesAtOnce) {
      decodeWaiting();
      decode(entry, contents);
      return;
    }
    bytes_.append(entry).append(contents);
    waiting_.push_back({entry.size(), contents.size()});
    if (bytes_.size() > bytesAtOnce) decodeWaiting();
  }

  /// The receipts in the order they were added, without what is none.
  std::vector<std::shared_ptr<BoMItem>> items() && {
    decodeWaiting();
    return std::move(items_);
  }

 private:
  static constexpr std::size_t bytesAtOnce = 65536;
  static constexpr std::size_t folderLength = std::string_view(receiptsFolder).size();

  struct Sizes {
    std::size_t entry;
    std::size_t contents;
  };

  void decodeWaiting() {
    std::string_view bytes = bytes_;
    for (const auto [entry, contents] : waiting_) {
      decode(bytes.substr(0, entry), bytes.substr(entry, contents));
      bytes.remove_prefix(entry + contents);
    }
    waiting_.clear();
    bytes_.clear();
  }

  void decode(std::string_view entry, std::string_view contents) {
    std::optional<theBoMReceipt> receipt = decodeBoMReceipt(contents);
    if (!receipt) return;
    entry.remove_suffix(receiptExtension.size());
    path_.replace(folderLength, std::string::npos, entry);
    items_.push_back(
        std::make_shared<BoMItem>(std::move(receipt->PackageIdentifier), receipt->InstallDate, path_));
  }

  /// One behind the other, of each receipt the entry and the contents.
  std::string bytes_;
  std::vector<Sizes> waiting_;
  std::string path_ = receiptsFolder;
  std::vector<std::shared_ptr<BoMItem>> items_;
};

}  // namespace

void BoM::readBoMPLists() {
  ReceiptDecoder decoder;
  if (const auto enumerator = FileManager::defaultManager().enumeratorAtPath(receiptsFolder)) {
    while (const auto entry = enumerator->nextObject()) {
      if (!hasReceiptExtension(*entry)) continue;
      if (const auto contents = enumerator->readFile()) {
        decoder.add(*entry, *contents);
      } else {
        showErrorAlert(lastActionErrorMessage, "Couldn't read BoM PLists.");
      }
    }
  }
  children = std::move(decoder).items();
  std::stable_sort(children.begin(), children.end(),
                   [](const auto& a, const auto& b) { return a->installDate > b->installDate; });
}

}  // namespace pelmarix
