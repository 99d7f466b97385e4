#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <numeric>
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

/// A receipt by its place among the others.
struct Place {
  /// The smaller the later its date is, equal for equal dates.
  std::uint64_t order;
  std::size_t item;
};

std::uint64_t orderNewestFirst(Date date) {
  constexpr std::uint64_t sign = std::uint64_t{1} << 63;
  // Adding makes zero of minus zero, which is the same date.
  const auto bits = std::bit_cast<std::uint64_t>(date.timeIntervalSinceReferenceDate + 0.0);
  // The bits of a floating-point number, without its sign, grow with its magnitude.
  return (bits & sign) != 0 ? bits : ~bits & ~sign;
}

/// Sorts by radix, byte after byte from the lowest, and so keeps the order of equal dates. Comparing takes
/// twice as long for thousands of receipts: processors can't guess how dates in no order compare.
void sortByOrder(std::vector<Place>& places) {
  std::vector<Place> sorted(places.size());
  for (unsigned shift = 0; shift < 64; shift += 8) {
    const auto byteOf = [shift](const Place& place) { return place.order >> shift & 0xFF; };
    std::array<std::size_t, 257> starts = {};
    for (const Place& place : places) ++starts[byteOf(place) + 1];
    std::partial_sum(starts.begin(), starts.end(), starts.begin());
    for (const Place& place : places) sorted[starts[byteOf(place)]++] = place;
    places.swap(sorted);
  }
}

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

  /// The receipts newest first, those of one date in the order they were added; without what is none.
  std::vector<std::shared_ptr<BoMItem>> newestFirst() && {
    decodeWaiting();
    sortByOrder(places_);
    std::vector<std::shared_ptr<BoMItem>> sorted;
    sorted.reserve(places_.size());
    for (const Place& place : places_) sorted.push_back(std::move(items_[place.item]));
    return sorted;
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
    std::optional<theBoMReceipt> receipt = decodeBoMReceipt(contents, document_);
    if (!receipt) return;
    entry.remove_suffix(receiptExtension.size());
    path_.replace(folderLength, std::string::npos, entry);
    places_.push_back({orderNewestFirst(receipt->InstallDate), items_.size()});
    items_.push_back(
        std::make_shared<BoMItem>(std::move(receipt->PackageIdentifier), receipt->InstallDate, path_));
  }

  /// One behind the other, of each receipt the entry and the contents.
  std::string bytes_;
  std::vector<Sizes> waiting_;
  std::string path_ = receiptsFolder;
  plist::Document document_;
  std::vector<std::shared_ptr<BoMItem>> items_;
  std::vector<Place> places_;
};

}  // namespace

void BoM::readBoMPLists() {
  ReceiptDecoder decoder;
  if (const auto enumerator = platform::FileManager::defaultManager().enumeratorAtPath(receiptsFolder)) {
    while (const auto entry = enumerator->nextObject()) {
      if (!hasReceiptExtension(*entry)) continue;
      if (const auto contents = enumerator->readFile()) {
        decoder.add(*entry, *contents);
      } else {
        platform::showErrorAlert(platform::lastActionErrorMessage, "Couldn't read BoM PLists.");
      }
    }
  }
  children = std::move(decoder).newestFirst();
}

}  // namespace pelmarix
