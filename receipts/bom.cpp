#include "receipts/bom.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "base/csv.h"
#include "base/fatal.h"
#include "base/utf8.h"
#include "platform/alert.h"
#include "platform/file_manager.h"
#include "platform/task.h"
#include "receipts/bom_receipt_record.h"

namespace pelmarix {
namespace {

constexpr std::string_view extension = ".plist";

}  // namespace

std::vector<std::string> BoMItem::listArguments() const {
  std::vector<std::string> arguments = theBomParams;
  arguments.push_back(path + theBomExtension);
  return arguments;
}

std::string BoMItem::listBoM() const {
  const std::unique_ptr<platform::Pipe> pipe = platform::Pipe::make();
  const std::unique_ptr<platform::Task> task = platform::Task::make();
  task->setLaunchPath(theBomCmd);
  task->setArguments(listArguments());
  task->setStandardOutput(*pipe);
  task->launch();
  // Reading comes first: a lister with much to say would wait for room in a full pipe while it was waited
  // for.
  Result<std::string, std::error_code> output = pipe->readDataToEndOfFile();
  if (!output) return noBomInformation;  // the end of the task is that of a lister that still writes
  task->waitUntilExit();

  if (task->terminationStatus() != 0 || output->empty()) return noBomInformation;
  if (!isValidUtf8(*output)) fatalStop("the lister printed what is not UTF-8");
  return *std::move(output);
}

void BoM::readBoMPLists() {
  platform::FileManager& files = platform::FileManager::defaultManager();
  std::vector<std::shared_ptr<BoMItem>> items;
  if (const auto enumerator = files.enumeratorAtPath(receiptsFolder)) {
    while (const auto entry = enumerator->nextObject()) {
      if (!entry->ends_with(extension)) continue;
      std::string path = receiptsFolder;
      path += *entry;
      auto receipt = files.decodeFile(path, decodeBoMReceipt);
      if (!receipt) {
        platform::showErrorAlert(platform::lastActionErrorMessage, "Couldn't read BoM PLists.");
        continue;
      }
      if (!*receipt) continue;
      path.resize(path.size() - extension.size());
      items.push_back(std::make_shared<BoMItem>(std::move((*receipt)->PackageIdentifier),
                                                (*receipt)->InstallDate, std::move(path)));
    }
  }
  std::stable_sort(items.begin(), items.end(),
                   [](const auto& a, const auto& b) { return a->installDate > b->installDate; });
  children = std::move(items);
}

std::string BoM::csvText() const {
  std::string text;
  appendCsvRecord(text, {"Date", "Package", "Path"});
  for (const auto& item : children)
    appendCsvRecord(text, {description(item->installDate), item->name, item->path + std::string(extension)});
  return text;
}

}  // namespace pelmarix
