#include "history/receipts_record.h"

#include <algorithm>
#include <cstddef>

#include "plist/document.h"

namespace pelmarix {
namespace {

// Against the budget, which is in bytes of memory, each key of an entry counts for the time that looking at
// it takes.
constexpr std::size_t costOfKey = 16;

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

std::size_t costOf(const theReceipts& record) {
  return sizeof record + record.displayName.size() + record.displayVersion.size() +
         (record.contentType ? record.contentType->size() : 0);
}

std::size_t costOfKeys(plist::Value entry) { return entry.count() * costOfKey; }

/// Takes `cost` off the budget; false when it isn't there.
bool spend(std::size_t cost, std::size_t& budget) {
  if (cost > budget) return false;
  budget -= cost;
  return true;
}

}  // namespace

std::optional<std::vector<theReceipts>> decodeReceipts(std::string_view bytes) {
  const Result<plist::Document, plist::Error> document = plist::Document::decode(bytes);
  if (!document || document->root().type() != plist::Type::array) return std::nullopt;

  std::size_t budget = bytes.size() * maximumGrowth + minimumBudget;
  std::vector<theReceipts> records;
  records.reserve(std::min(document->root().count(), budget / sizeof(theReceipts)));
  for (const plist::Value entry : document->root().elements()) {
    if (!spend(costOfKeys(entry), budget)) return std::nullopt;
    std::optional<theReceipts> record = decodeEntry(entry);
    if (!record || !spend(costOf(*record), budget)) return std::nullopt;
    records.push_back(std::move(*record));
  }
  return records;
}

}  // namespace pelmarix
