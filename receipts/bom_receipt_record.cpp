#include "receipts/bom_receipt_record.h"

#include <cstddef>

#include "plist/document.h"

namespace pelmarix {
namespace {

// In bytes. Receipts stay in memory as long as the program runs, however many there are.
constexpr std::size_t longestIdentifier = std::size_t{1} << 20U;

}  // namespace

std::optional<theBoMReceipt> decodeBoMReceipt(std::string_view bytes) {
  const auto document = plist::Document::decode(bytes);
  if (!document) return std::nullopt;
  const auto identifier = document->root().find("PackageIdentifier");
  const auto installDate = document->root().find("InstallDate");
  if (!identifier || !installDate) return std::nullopt;
  const auto name = identifier->string();
  const auto date = installDate->date();
  if (!name || name->size() > longestIdentifier || !date || !isFinite(*date)) return std::nullopt;
  return theBoMReceipt{std::string(*name), *date};
}

}  // namespace pelmarix
