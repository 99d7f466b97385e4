#include "history/install_history_record.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "base/budget.h"
#include "plist/document.h"

namespace pelmarix {
namespace {

// Bytes of memory for each byte of the list, beside that, and at most.
constexpr std::size_t maximumGrowth = 64;
constexpr std::size_t minimumBudget = std::size_t{16} << 20U;
constexpr std::size_t maximumBudget = std::size_t{384} << 20U;
// What an entry takes as record, as item and as line of the report, beside its texts; and how often those are
// held then: by group, item and line, by the report as it grows, and by the screen, in two bytes a character.
constexpr std::size_t costOfEntry = 400;
constexpr std::size_t copiesOfText = 10;

std::optional<theReceipts> decodeEntry(plist::Value entry, Budget& budget) {
  if (!budget.spend(entry.count() * costOfKey)) return std::nullopt;
  const auto dateValue = entry.find("date");
  const auto nameValue = entry.find("displayName");
  const auto versionValue = entry.find("displayVersion");
  if (!dateValue || !nameValue || !versionValue) return std::nullopt;
  const auto date = dateValue->date();
  const auto name = nameValue->string();
  const auto version = versionValue->string();
  if (!date || !isFinite(*date) || !name || !version) return std::nullopt;

  std::optional<std::string_view> contentType;
  if (const auto contentTypeValue = entry.find("contentType")) {
    contentType = contentTypeValue->string();
    if (!contentType) return std::nullopt;
  }
  const std::size_t textSize = name->size() + version->size() + contentType.value_or("").size();
  if (!budget.spend(costOfEntry + copiesOfText * textSize)) return std::nullopt;
  return theReceipts{contentType ? std::optional<std::string>(*contentType) : std::nullopt, *date,
                     std::string(*name), std::string(*version)};
}

}  // namespace

std::optional<std::vector<theReceipts>> decodeInstallHistory(std::string_view bytes) {
  const auto document = plist::Document::decode(bytes);
  if (!document || document->root().type() != plist::Type::array) return std::nullopt;

  Budget budget(std::min(bytes.size() * maximumGrowth + minimumBudget, maximumBudget));
  std::vector<theReceipts> records;
  for (const plist::Value entry : document->root().elements()) {
    std::optional<theReceipts> record = decodeEntry(entry, budget);
    if (!record) return std::nullopt;
    // Not before there is an entry: a count alone may be that of twenty million places of one number.
    if (records.empty()) records.reserve(std::min(document->root().count(), budget.left() / costOfEntry + 1));
    records.push_back(*std::move(record));
  }
  return records;
}

}  // namespace pelmarix
