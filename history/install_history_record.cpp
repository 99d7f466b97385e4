#include "history/install_history_record.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "plist/document.h"

namespace pelmarix {
namespace {

// Bytes of memory for each byte of the list, and beside that.
constexpr std::size_t maximumGrowth = 64;
constexpr std::size_t minimumBudget = std::size_t{1} << 20U;
// Looking through an entry's keys takes time, for which each of them counts as so much memory.
constexpr std::size_t costOfKey = 16;

std::size_t costOf(const theReceipts& record) {
  return sizeof record + record.displayName.size() + record.displayVersion.size() +
         (record.contentType ? record.contentType->size() : 0);
}

std::optional<theReceipts> decodeEntry(plist::Value entry) {
  const auto dateValue = entry.find("date");
  const auto nameValue = entry.find("displayName");
  const auto versionValue = entry.find("displayVersion");
  if (!dateValue || !nameValue || !versionValue) return std::nullopt;
  const auto date = dateValue->date();
  const auto name = nameValue->string();
  const auto version = versionValue->string();
  if (!date || !isFinite(*date) || !name || !version) return std::nullopt;

  theReceipts record{std::nullopt, *date, std::string(*name), std::string(*version)};
  if (const auto contentTypeValue = entry.find("contentType")) {
    const auto contentType = contentTypeValue->string();
    if (!contentType) return std::nullopt;
    record.contentType = *contentType;
  }
  return record;
}

// Takes `cost` off the budget; false when it isn't there.
bool spend(std::size_t cost, std::size_t& budget) {
  if (cost > budget) return false;
  budget -= cost;
  return true;
}

}  // namespace

std::optional<std::vector<theReceipts>> decodeInstallHistory(std::string_view bytes) {
  const auto document = plist::Document::decode(bytes);
  if (!document || document->root().type() != plist::Type::array) return std::nullopt;

  std::size_t budget = bytes.size() * maximumGrowth + minimumBudget;
  std::vector<theReceipts> records;
  records.reserve(std::min(document->root().count(), budget / sizeof(theReceipts)));
  for (const plist::Value entry : document->root().elements()) {
    if (!spend(entry.count() * costOfKey, budget)) return std::nullopt;
    std::optional<theReceipts> record = decodeEntry(entry);
    if (!record || !spend(costOf(*record), budget)) return std::nullopt;
    records.push_back(*std::move(record));
  }
  return records;
}

}  // namespace pelmarix
