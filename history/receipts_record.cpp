#include "history/receipts_record.h"

#include <algorithm>
#include <cstddef>

#include "plist/document.h"

namespace pelmarix {
namespace {

/// The values under the keys of one entry; of a key that is repeated, the last one.
struct Fields {
  std::optional<plist::Value> contentType, date, displayName, displayVersion;
};

Fields fieldsOf(plist::Value entry) {
  Fields fields;
  for (const auto& [key, value] : entry.entries()) {
    if (key == "contentType")
      fields.contentType = value;
    else if (key == "date")
      fields.date = value;
    else if (key == "displayName")
      fields.displayName = value;
    else if (key == "displayVersion")
      fields.displayVersion = value;
  }
  return fields;
}

std::optional<theReceipts> decodeEntry(plist::Value entry) {
  const Fields fields = fieldsOf(entry);
  if (!fields.date || !fields.displayName || !fields.displayVersion) return std::nullopt;
  const auto date = fields.date->date();
  const auto name = fields.displayName->string();
  const auto version = fields.displayVersion->string();
  if (!date || !isFinite(*date) || !name || !version) return std::nullopt;

  theReceipts record{std::nullopt, *date, std::string(*name), std::string(*version)};
  if (fields.contentType) {
    const auto contentType = fields.contentType->string();
    if (!contentType) return std::nullopt;
    record.contentType = *contentType;
  }
  return record;
}

std::size_t memoryOf(const theReceipts& record) {
  return sizeof record + record.displayName.size() + record.displayVersion.size() +
         (record.contentType ? record.contentType->size() : 0);
}

}  // namespace

std::optional<std::vector<theReceipts>> decodeReceipts(std::string_view bytes) {
  const plist::Result<plist::Document> document = plist::Document::decode(bytes);
  if (!document || document->root().type() != plist::Type::array) return std::nullopt;

  std::size_t budget = bytes.size() * maximumGrowth + minimumBudget;
  std::vector<theReceipts> records;
  records.reserve(std::min(document->root().count(), budget / sizeof(theReceipts)));
  for (const plist::Value entry : document->root().elements()) {
    std::optional<theReceipts> record = decodeEntry(entry);
    if (!record || memoryOf(*record) > budget) return std::nullopt;
    budget -= memoryOf(*record);
    records.push_back(std::move(*record));
  }
  return records;
}

}  // namespace pelmarix
