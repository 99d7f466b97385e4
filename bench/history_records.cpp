#include "bench/history_records.h"

#include "plist/document.h"

namespace pelmarix::bench {
namespace {

std::optional<Record> decodeRecord(plist::Value entry) {
  const auto date = entry.find("date");
  const auto name = entry.find("displayName");
  const auto version = entry.find("displayVersion");
  if (!date || !name || !version) return std::nullopt;
  const auto when = date->date();
  const auto nameText = name->string();
  const auto versionText = version->string();
  if (!when || !isFinite(*when) || !nameText || !versionText) return std::nullopt;

  Record record{std::nullopt, *when, std::string(*nameText), std::string(*versionText)};
  if (const auto contentType = entry.find("contentType")) {
    const auto text = contentType->string();
    if (!text) return std::nullopt;
    record.contentType.emplace(*text);
  }
  return record;
}

}  // namespace

std::vector<Record> decodeRecords(std::string_view bytes) {
  const auto document = plist::Document::decode(bytes);
  if (!document) return {};
  std::vector<Record> records;
  records.reserve(document->root().count());
  for (const plist::Value entry : document->root().elements()) {
    auto record = decodeRecord(entry);
    if (!record) return {};
    records.push_back(*std::move(record));
  }
  return records;
}

}  // namespace pelmarix::bench
