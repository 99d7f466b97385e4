#include "qt/window/empty_places.h"

#include "history/install_history_record.h"
#include "history/loader.h"
#include "platform/file_manager.h"
#include "receipts/bom.h"

namespace pelmarix::qt {

using platform::FileManager;

std::string whyThereIsNoHistory(const posix::Volume& volume) {
  if (std::string hindrance = volume.hindranceTo(installHistoryPath); !hindrance.empty()) return hindrance;
  const std::string file = volume.resolve(installHistoryPath);
  const auto decoded = FileManager::defaultManager().decodeFile(installHistoryPath, decodeInstallHistory);
  if (!decoded) return file + " can't be read: " + decoded.error().message() + ".";
  if (!*decoded) return file + " can't be read: it isn't an install history.";
  return "There are no entries in " + file + ".";
}

std::string whyThereAreNoReceipts(const posix::Volume& volume) {
  if (std::string hindrance = volume.hindranceTo(receiptsFolder); !hindrance.empty()) return hindrance;
  std::string folder = volume.resolve(receiptsFolder);
  folder.pop_back();  // the slash
  const auto files = FileManager::defaultManager().enumeratorAtPath(receiptsFolder);
  if (files == nullptr) return "The folder " + folder + " can't be read.";
  while (const auto file = files->nextObject())
    if (file->ends_with(".plist")) return "None of the receipts in " + folder + " can be read.";
  return "There are no receipts in " + folder + ".";
}

}  // namespace pelmarix::qt
