#include "receipts/bom_receipt_record.h"

#include "plist/document.h"

namespace pelmarix {

std::optional<theBoMReceipt> decodeBoMReceipt(std::string_view bytes) {
  const auto document = plist::Document::decode(bytes);
  if (!document) return std::nullopt;
  const auto identifier = document->root().find("PackageIdentifier");
  const auto installDate = document->root().find("InstallDate");
  if (!identifier || !installDate) return std::nullopt;
  const auto name = identifier->string();
  const auto date = installDate->date();
  if (!name || !date || !isFinite(*date)) return std::nullopt;
  return theBoMReceipt{std::string(*name), *date};
}

}  // namespace pelmarix
